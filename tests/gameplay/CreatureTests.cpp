#include "gameplay/PlayerWorld.h"

#include "gameplay/creatures/ActBlobSounds.h"
#include "gameplay/creatures/ActFollowPlayer.h"
#include "gameplay/creatures/ActWatchPlayer.h"
#include "gameplay/creatures/DummyObjectComponent.h"
#include "gameplay/creatures/StandingRoom.h"

#include "ai/steering/SteeringComponent.h"
#include "engine/levels/PersistentStateComponent.h"
#include "object/python/PythonCalls.h"
#include "object/python/PythonIntegration.h"
#include "physics/bodies/WallPhysics.h"
#include "physics/grid/SquareGrid.h"
#include "platform/sound/SoundComponent.h"
#include "support/AllocationCount.h"

#include <boost/python.hpp>
#include <gtest/gtest.h>

namespace
{

/// A creature in the player's map.
class Creature : public testing::Test
{
protected:
    Creature() : entity(world.level.entity("creature", world.map)), at(*place(Vec4(0, 0, 6, 1))) {}

    TransformComponent *place(Vec4 position) { return world.level.transform(entity, position).lookup().ptr; }
    template <class Act>
    Act &act(const Handle<Entity> &actor)
    {
        const Handle<Act> made = construct<Act>(defaultAllocationCategory);
        made.lookup()->setParent(actor).ignoreError();
        return *made.lookup();
    }
    DummyObjectComponent &walker()
    {
        auto &dummy = *world.level.component<DummyObjectComponent>(entity, "dummy").lookup();
        dummy.onLoadComplete();
        return dummy;
    }
    static float distance(const Vec4 &a, const Vec4 &b) { return std::hypot(a.x - b.x, a.z - b.z); }

    PlayerWorld world;
    Handle<Entity> entity;
    TransformComponent &at;
};

} // namespace

TEST_F(Creature, BlobIsHeardOnceFromItsFirstTickOn)
{
    auto &sounds = act<ActBlobSounds>(entity);
    EXPECT_EQ(sounds.update(0.1), AS_InvalidHandle) << "it has no voice yet";
    EXPECT_EQ(sounds.getElapsedTime(), 0.0);
    auto &voice = *world.level.component<SoundComponent>(entity, "sound").lookup();
    EXPECT_EQ(sounds.update(0.1), AS_InProgress);
    EXPECT_EQ(voice.getListener(), world.entity);
    voice.setListener(Handle<Entity>());
    EXPECT_EQ(sounds.update(0.1), AS_InProgress);
    EXPECT_EQ(sounds.getElapsedTime(), 0.1);
    EXPECT_FALSE(voice.getListener().isValid()) << "later ticks do nothing";
}

TEST_F(Creature, HeadTurnsToThePlayerWithinItsRadiusAndItsNeckKeepsTheTurn)
{
    const Handle<Entity> head = world.level.entity("head", entity);
    TransformComponent &turned = *world.level.transform(head, Vec4(0, 1.5f, 6, 1)).lookup();
    auto &steering = *world.level.component<SteeringComponent>(head, "steering").lookup();
    auto &neck = *world.level.component<TransformOffsetComponent>(head, "parentFollower").lookup();
    world.level.component<RigidBody>(head, "physics");
    steering.setAlignMaxRotSpeed(20);
    steering.setLookAhead(5);
    auto &watch = act<ActWatchPlayer>(head);
    const auto facing = [&] { return turned.getOrientation().generateRotation().getColumn(2); };

    EXPECT_EQ(watch.update(0.5), AS_InProgress);
    EXPECT_EQ(watch.getWatchRadius(), 5.f);
    EXPECT_NEAR(facing().z, 1.f, 1e-4f) << "6 m are too far";
    steering.setLookAhead(0);
    watch.calculateWatchRadius();
    EXPECT_EQ(watch.getWatchRadius(), 12.f);
    watch.update(0.5);
    EXPECT_LT(facing().z, -0.95f);
    EXPECT_LT(neck.getOrientationOffset().generateRotation().getColumn(2).z, -0.95f);
}

TEST_F(Creature, WalkerGoesFromPointToPointAndItsPrintsFade)
{
    at.setPosition(Vec4(0, 0, 0, 1));
    auto &dummy = walker();
    dummy.setNumDummyPoints(2);
    dummy.setCurrDummyPointIndex(1);
    dummy.setCurrDummyPoint(Vec4(0, 0, 4, 1));
    dummy.setWalkSpeed(2);
    dummy.setFootstepLength(0.5f);
    dummy.setFootstepFadeTime(1);
    world.frames(64);
    EXPECT_EQ(at.getPosition().z, 0.f) << "it was not told to walk";
    dummy.setFollowPoints(true);
    world.frames(64);
    EXPECT_NEAR(at.getPosition().z, 2.f, 0.1f);
    EXPECT_EQ(dummy.getFootstepCount(), 3u);
    EXPECT_EQ(dummy.getCurrFootfall(), DummyObjectComponent::RIGHT_FOOT);
    EXPECT_NEAR(dummy.getFootstepStrength(0), 0.25f, 0.05f);
    EXPECT_GT(dummy.getFootstepStrength(2), dummy.getFootstepStrength(1));
    EXPECT_NEAR(dummy.getRightStationaryFoot().x - dummy.getLeftStationaryFoot().x, 0.22f, 1e-4f);
    world.frames(64);
    EXPECT_EQ(dummy.getCurrFollowIndex(), 0u) << "it is on its way back";
    dummy.stopWalking();
    const float stopped = at.getPosition().z;
    world.frames(70);
    EXPECT_EQ(at.getPosition().z, stopped);
    EXPECT_EQ(dummy.getFootstepCount(), 0u);
    dummy.setNumDummyPoints(5000);
    EXPECT_EQ(dummy.getNumDummyPoints(), 2u) << "that many are refused";
}

TEST_F(Creature, WalkingAndLeavingPrintsTakesNoMemory)
{
    auto &dummy = walker();
    dummy.setNumDummyPoints(2);
    dummy.setCurrDummyPoint(Vec4(0, 0, 400, 1));
    dummy.setFollowPoints(true);
    world.frames(400);
    EXPECT_EQ(allocationsOf(
                  [&]
                  {
                      dummy.doFrame();
                      at.setPosition(at.getPosition() + Vec4(0, 0, 0.4f, 0));
                  },
                  60),
              0u);
    EXPECT_GT(dummy.getFootstepCount(), 0u);
}

TEST_F(Creature, PointsGoToScriptsAndComeBackAfterTheMapIsLoadedAgain)
{
    namespace python = boost::python;
    initPython();
    auto &dummy = walker();
    python::list points;
    points.append(python::make_tuple(1, 2, 3));
    points.append(Vec4(4, 5, 6, 1));
    dummy.setSavedPoints(PythonObject(points));
    EXPECT_EQ(python::len(python::object(dummy.getSavedPoints())), 2);
    dummy.setCurrDummyPointIndex(9);
    EXPECT_EQ(dummy.getCurrDummyPoint(), Vec4(4, 5, 6, 1));
    points.append("none");
    EXPECT_THROW(dummy.setSavedPoints(PythonObject(points)), python::error_already_set);
    EXPECT_TRUE(PyErr_ExceptionMatches(PyExc_ValueError));
    PyErr_Clear();
    EXPECT_EQ(dummy.getNumDummyPoints(), 2u);

    auto &kept = *PersistentStateComponent::makeFor(world.level.level).lookup();
    dummy.markPointsForSaving();
    dummy.setNumDummyPoints(0);
    kept.persistState(world.map);
    EXPECT_EQ(dummy.getNumDummyPoints(), 2u);
}

TEST_F(Creature, StandingRoomIsWhereWalkersStillGetByAndNotInADoorway)
{
    const auto wall = [&](Vec4 at, Vec4 size)
    {
        const Handle<Entity> made = world.level.entity("wall", world.map);
        world.level.transform(made, at);
        auto volume = world.level.component<BoundingVolume>(made, "boundingVolume").lookup();
        volume->setHitBox(size);
        volume->setVolumeType(BoundingVolume::BV_WALL);
        world.level.component<WallPhysics>(made, "physics");
    };
    const Handle<Entity> plan = world.level.entity(".MapData_mainPathGrid", world.map);
    world.level.transform(plan).lookup()->setScale(Vec4(40, 1, 40, 0));
    world.level.component<SquareGrid>(plan, "grid").lookup()->updateSize();
    for (const float side : {-1.f, 1.f})
        wall(Vec4(side * 4.6f, 1.5f, 8, 1), Vec4(8, 3, 0.2f, 0)); // a doorway of 1.2 m between them
    wall(Vec4(-5, 1.5f, -6, 1), Vec4(0.2f, 3, 6, 0));
    wall(Vec4(-3.4f, 1.5f, -6, 1), Vec4(0.2f, 3, 6, 0)); // a passage of 1.4 m
    at.setPosition(Vec4(10, 0.5f, -10, 1));
    world.frames(2);
    const auto isFree = [&](float x, float z) { return hasStandingRoom(entity, Vec4(x, 0.5f, z, 1), 0.22f); };
    EXPECT_TRUE(isFree(6, 0)) << "in the open";
    EXPECT_TRUE(isFree(4, 7.6f)) << "at a wall";
    EXPECT_FALSE(isFree(4, 7.9f)) << "in a wall";
    for (const float z : {7.2f, 7.8f, 8.f, 8.3f})
        EXPECT_FALSE(isFree(0.1f, z)) << "in the doorway, z " << z;
    EXPECT_FALSE(isFree(-4.2f, -6)) << "in the passage";
    EXPECT_FALSE(hasStandingRoom(Handle<Entity>(), Vec4(6, 0.5f, 0, 1), 0.22f));
    EXPECT_FALSE(isFree(NAN, 0));
}
