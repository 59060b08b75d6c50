#include "PhysicsWorld.h"
#include "TouchNote.h"

#include "engine/levels/PersistentStateComponent.h"
#include "physics/bodies/BulletPhysics.h"
#include "physics/doors/DoorPhysics.h"
#include "physics/triggers/EventTriggerVolume.h"
#include "physics/triggers/ForceVolumeComponent.h"
#include "physics/doors/SlidingDoorPhysics.h"
#include "support/AllocationCount.h"
#include "support/Probe.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

namespace
{

/// A lift of 2 x 4 x 2 m at the middle of the map, whose force falls off from its middle at height 4 on.
struct Lift
{
    Lift() : force(add("lift")) {}

    ForceVolumeComponent *add(const char *name)
    {
        entity = world.level.entity(name, world.map);
        world.level.transform(entity, Vec4(3, 4, -2, 1));
        BoundingVolume &volume = *world.level.component<BoundingVolume>(entity, "boundingVolume").lookup();
        volume.setHitBox(Vec4(2, 4, 2, 0));
        ForceVolumeComponent *const made = world.level.component<ForceVolumeComponent>(entity, "dummy").lookup().ptr;
        made->onLoadComplete();
        return made;
    }
    void run(int frames)
    {
        for (int i = 0; i < frames; ++i)
            world.level.frame();
    }

    TestBox crate(Vec4 place, BoundingVolume::VolumeType type = BoundingVolume::BV_BOX)
    {
        return world.box(type, place, Vec4(0.2f, 0.2f, 0.2f, 0));
    }

    PhysicsWorld world;
    Handle<Entity> entity;
    ForceVolumeComponent *force;
};

const Vec4 LOW(3, 2.5f, -2, 1);

} // namespace

TEST(Bullets, LiveForTheirTimeAndNotBelowTheGround)
{
    PhysicsWorld world;
    const auto shoot = [&](float height, float lifetime, float fall)
    {
        const Handle<Entity> shot = world.level.entity("shot", world.map);
        world.level.transform(shot, Vec4(0, height, 0, 1));
        world.level.component<BoundingVolume>(shot, "boundingVolume");
        const auto bullet = world.level.component<BulletPhysics>(shot, "physics").lookup();
        bullet->onLoadComplete();
        bullet->setLifetime(lifetime);
        bullet->setVelocity(0, -fall, 0);
        return shot;
    };
    const Handle<Entity> shots[] = {shoot(5, 0, 0),     shoot(5, NAN, 0),   shoot(-1, 9, 0),
                                    shoot(0.5f, 9, 20), shoot(5, 0.04f, 0), shoot(5, 9, 0)};
    const int lives[] = {1, 1, 1, 2, 3, 99};
    for (int frame = 1; frame < 5; ++frame)
    {
        world.level.frame();
        for (int i = 0; i < 6; ++i)
            EXPECT_EQ(static_cast<bool>(shots[i].lookup()), frame < lives[i]) << i << " in frame " << frame;
    }
}

TEST(ForceVolumes, LiftAnyMassToTheSameHeightAndLetItHover)
{
    Lift lift;
    for (const float mass : {0.5f, 2.f, 6.f})
    {
        const TestBox crate = lift.crate(LOW);
        crate.body->setMass(mass);
        lift.run(1200);
        EXPECT_NEAR(crate.transform->getPosition().y, 4.77f, 0.02f) << "where the force is gravity's";
        EXPECT_LT(std::fabs(crate.body->getVelocity().y), 1e-3f) << "and still";
        crate.entity.lookup()->murder();
    }
}

TEST(ForceVolumes, PushBoxesBallsAndThePlayerButNoWallsDoorsOrShadows)
{
    Lift lift;
    lift.force->setForceDirection(Vec4(0, 5, 0, 0));
    lift.force->setForceOrientation(Quaternion::fromAxisAngle(Vec4(0, 0, 1, 0), PI / 2)); // up turns to -x
    lift.force->setMaxForceOffset(9);
    lift.force->setMaxAngularVelocity(2);
    for (const auto type : {BoundingVolume::BV_SPHERE, BoundingVolume::BV_BOX, BoundingVolume::BV_PLAYER,
                            BoundingVolume::BV_WALL, BoundingVolume::BV_DOOR, BoundingVolume::BV_SHADOW})
    {
        const bool isPushed = type <= BoundingVolume::BV_BOX || type == BoundingVolume::BV_PLAYER;
        const TestBox box = lift.crate(Vec4(3.9f, 4, -2, 1), type);
        lift.run(10);
        EXPECT_EQ(box.body->getVelocity().x < -1, isPushed) << type;
        EXPECT_EQ(box.body->getAngularVelocity() != Vec4(), isPushed && type != BoundingVolume::BV_PLAYER)
            << "the player's view does not turn";
        box.entity.lookup()->murder();
        lift.run(1);
    }
}

TEST(ForceVolumes, GiveBackDampingAndSpinOnLeavingAndWhenTheyDieHoweverManyThereAre)
{
    Lift lift;
    const Handle<Entity> first = lift.entity;
    ForceVolumeComponent *const both[] = {lift.force, lift.add("second")};
    for (ForceVolumeComponent *const volume : both)
        volume->setMaxAngularVelocity(3);
    const TestBox leaver = lift.crate(LOW), follower = lift.crate(LOW + Vec4(0.6f, 0, 0, 0));
    const TestBox top = lift.crate(LOW - Vec4(0.6f, 0, 0, 0));
    for (const TestBox &box : {leaver, follower, top})
    {
        box.body->setDamping(0.8f);
        box.body->setAngularVelocity(Vec4(0, 0.5f, 0, 0));
    }
    top.body->setAngularVelocity(Vec4(0, 6, 0, 0));
    top.body->setAngularDamping(0.4f);
    lift.run(30);
    EXPECT_FLOAT_EQ(leaver.body->getDamping(), 0.08f) << "multiplied once";
    EXPECT_LT(leaver.body->getAngularVelocity().y * follower.body->getAngularVelocity().y, 0) << "opposite ways";
    leaver.transform->setPosition(Vec4(9, 3, 0, 1));
    top.transform->setPosition(Vec4(-3, 3, 0, 1));
    lift.run(2);
    EXPECT_EQ(leaver.body->getDamping(), 0.8f);
    EXPECT_EQ(lift.force->getProjectileCount(), 3) << "still spin";
    lift.run(300);
    EXPECT_NEAR(leaver.body->getAngularVelocity().y, 0.5f, 1e-4f);
    EXPECT_LT(std::fabs(top.body->getAngularVelocity().y), 0.1f) << "comes to rest as tops do";
    for (ForceVolumeComponent *const volume : both)
        EXPECT_EQ(volume->getProjectileCount(), 1);

    first.lookup()->murder();
    lift.run(2);
    EXPECT_FLOAT_EQ(follower.body->getDamping(), 0.08f) << "by the other one now";
    follower.body->setDamping(0.9f); // as the player's own code does in every frame
    lift.run(1);
    EXPECT_FLOAT_EQ(follower.body->getDamping(), 0.09f);
    lift.entity.lookup()->murder();
    lift.run(1);
    EXPECT_EQ(follower.body->getDamping(), 0.9f);
    EXPECT_NEAR(follower.body->getAngularVelocity().y, 0.5f, 1e-4f);
}

TEST(ForceVolumes, OutliveWhatDiesInsideAndBadInputAndAllocateNothing)
{
    Lift lift;
    std::vector<TestBox> balls;
    for (int i = 0; i < 40; ++i)
        balls.push_back(
            lift.crate(LOW + Vec4(0.2f * static_cast<float>(i % 8 - 4), 0.2f * static_cast<float>(i / 8), 0, 0),
                       BoundingVolume::BV_SPHERE));
    lift.run(60);
    EXPECT_EQ(lift.force->getProjectileCount(), 40);
    EXPECT_EQ(heapAllocationsOf([&] { lift.run(20); }), 0u);
    for (int i = 0; i < 30; ++i)
        balls[static_cast<std::size_t>(i)].entity.lookup()->murder();
    lift.run(2);
    EXPECT_EQ(lift.force->getProjectileCount(), 10);
    balls.back().transform->setPosition(Vec4(NAN, 3, 0, 1));
    lift.run(3);
    EXPECT_EQ(lift.force->getProjectileCount(), 9);
}

TEST(Designs, ThatCannotWorkAreNamedAndStandStill)
{
    Lift lift;
    TestLevel &level = lift.world.level;
    const Handle<Entity> bare = level.entity("bare", lift.world.map), rail = level.entity("rail", lift.world.map);
    const Vec4 placed(1, 1, 1, 1);
    const auto transform = level.transform(bare, placed).lookup();
    DoorPhysics &door = *level.component<DoorPhysics>(bare, "physics").lookup();
    SlidingDoorPhysics &slider = *level.component<SlidingDoorPhysics>(rail, "physics").lookup();
    ForceVolumeComponent &idle = *level.component<ForceVolumeComponent>(bare, "trigger").lookup();
    const struct
    {
        std::function<void()> design;
        const char *text;
    } designs[] = {
        {[&] { door.setPrevAngle(NAN); }, "prevAngle cannot be nan"},
        {[&] { door.setPivotPosition(Vec4(NAN, 0, 0, 0)); }, "pivotPosition cannot be"},
        {[&] { door.setClosingVelocity(0); }, "a closing velocity of 0 shuts no"},
        {[&] { door.setPivot(Vec4()), door.onLoadComplete(); }, "a door turns about the vertical alone"},
        {[&] { slider.setOpenVelocity(Vec4()), slider.onLoadComplete(); }, "openVelocity of length 0 slides nowhere"},
        {[&] { lift.force->setForceMagnitude(NAN); }, "forceMagnitude cannot"},
        {[&] { lift.force->setForceDirection(Vec4(0, INFINITY, 0, 0)); }, "forceDirection cannot"},
        {[&] { lift.force->setForceOrientation(Quaternion(NAN, 0, 0, 0)); }, "forceOrientation cannot"},
        {[&] { lift.force->setForceDirection(Vec4()), lift.force->onLoadComplete(); }, "of length 0 pushes nowhere"},
        {[&] { idle.onLoadComplete(); }, "nothing runs a force volume under this"},
    };
    for (const auto &[design, text] : designs)
    {
        design();
        EXPECT_EQ(countLogLines(text), 1u) << text;
    }
    EXPECT_EQ(countLogLines("this door will not move"), 2u);
    door.openDoor(bare);
    slider.interact(bare);
    door.doFrame(0.1);
    slider.doFrame(0.1);
    EXPECT_EQ(transform->getPosition(), placed);
}

TEST(EventTriggers, CallWithTheirEntitiesInEveryFrameOfATouch)
{
    PhysicsWorld world;
    TestLevel &level = world.level;
    const TestBox threshold = world.box(BoundingVolume::BV_WALL, Vec4(0, 1, 0, 1));
    threshold.entity.lookup()->setName(SCS("threshold"));
    threshold.volume->setTrigger(true);
    PersistentStateComponent &state =
        *level.component<PersistentStateComponent>(level.entity("PersistentState"), "persist").lookup();
    const Handle<Entity> lamp = level.entity("lamp", level.entity("hall"));
    EventTriggerVolume &event = *level.component<EventTriggerVolume>(threshold.entity, "scriptedSequence").lookup();
    const Handle<TouchNote> note = construct<TouchNote>(defaultAllocationCategory);
    note.lookup()->setParent(level.level);
    int calls = 0;
    note.lookup()->whenTouched = [&](Handle<Entity> one, Handle<PhysicsComponent> two)
    {
        EXPECT_EQ(one, lamp);
        EXPECT_EQ(two, getHandle(threshold.body));
        if (++calls == 3)
            event.setEventFunc(ReflectorPtr());
    };
    event.setEventFunc(note.lookup()->bind(SCS("noteTouch")));
    event.setEventEntityNames(SCS(" hall/lamp , threshold/physics"));
    event.setEventEntityNames(SCS("a,b,c,d,e,f"));
    EXPECT_EQ(countLogLines("an event is called with at most 5 entities"), 1u);

    world.box(BoundingVolume::BV_BOX, Vec4(0, 1.5f, 0, 1)); // is nobody
    level.frame();
    EXPECT_EQ(calls, 0);
    event.fireEvent(); // a script's
    EventTriggerVolume &inner =
        *level
             .component<EventTriggerVolume>(level.entity("inner", level.entity("porch", world.map)), "scriptedSequence")
             .lookup();
    inner.setEventFunc(event.getEventFunc());
    inner.setEventEntityNames(event.getEventEntityNames());
    inner.fireEvent();
    EXPECT_EQ(state.getCallCount(), 2) << "recorded, whoever calls";
    calls = 0;
    world.box(BoundingVolume::BV_PLAYER, Vec4(0, 1, 0.8f, 1)).body->setAcceleration(0, 20, 0);
    for (const int expected : {0, 1, 2, 3, 3})
    {
        EXPECT_EQ(calls, expected) << "from the frame of the touch on, until it takes itself off";
        level.frame();
    }
    EXPECT_EQ(state.getCallCount(), 2) << "once";
    inner.setEventFunc(ReflectorPtr());
    event.setEventFunc(note.lookup()->bind(SCS("noteTouch")));
    state.persistState(world.map);
    EXPECT_EQ(calls, 4) << "a map that is loaded again has had its event";
    event.setEventFunc(spawn("thing", level.level).lookup()->bind(SCS("addFour")));
    level.frame();
    EXPECT_FALSE(event.getEventFunc()) << "one that fails is dropped";
}
