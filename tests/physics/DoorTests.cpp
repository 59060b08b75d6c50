#include "PhysicsWorld.h"
#include "SoundNote.h"

#include "engine/time/BSTimeSource.h"
#include "engine/transforms/ParentFollowerComponent.h"
#include "engine/levels/PersistentStateComponent.h"
#include "engine/time/TimeSystem.h"
#include "physics/doors/DoorPhysics.h"
#include "physics/doors/SlidingDoorPhysics.h"
#include "support/AllocationCount.h"

#include <gmock/gmock.h>

#include <cmath>

using testing::ElementsAre;

namespace
{

constexpr float QUARTER_TURN = 1.5707964f;
const Vec4 MIDDLE(3, 1, -2, 1), HINGE(2.5f, 1, -2, 1);
const Vec4 TO_HINGE(-0.5f, 0, 0, 0);
const Handle<Object> NOBODY;

float wayOf(const DoorPhysics &door)
{
    return std::fabs(door.getPrevAngle());
}

float wayOf(const SlidingDoorPhysics &door)
{
    return door.getCurrentOffset();
}

/// A doorway at the middle of the map: a leaf of 1 m, and somebody to open it.
template <class Physics>
struct Doorway
{
    explicit Doorway(int framesASecond = 60) : rate(framesASecond)
    {
        const Handle<BSTimeSource> source = construct<BSTimeSource>(defaultAllocationCategory);
        source.lookup()->setFrameRate(rate);
        getSystemDeref<TimeSystem>().setSource(source);
        hang();
    }

    void hang()
    {
        leaf = world.level.entity("leaf", world.map);
        transform = world.level.transform(leaf, MIDDLE).lookup().ptr;
        BoundingVolume &volume = *world.level.component<BoundingVolume>(leaf, "boundingVolume").lookup();
        volume.setHitBox(Vec4(1, 2, 0.1f, 0));
        volume.setVolumeType(BoundingVolume::BV_DOOR);
        door = world.level.component<Physics>(leaf, "physics").lookup().ptr;
        if constexpr (std::is_same_v<Physics, DoorPhysics>)
            door->setPivotPosition(TO_HINGE);
    }

    TestBox person(float x, float z)
    {
        TestBox made = world.box(BoundingVolume::BV_PLAYER, Vec4(x, 1, z, 1), Vec4(0.5f, 1.8f, 0.5f, 0));
        made.body->setAcceleration(0, 20, 0); // hangs in the air
        return made;
    }

    void run(int frames)
    {
        for (int i = 0; i < frames; ++i)
            world.level.frame();
    }

    /// Runs until the leaf is some way from closed and says how long that took; it must be eased at both ends.
    float secondsTo(float way)
    {
        float reached = 0, first = -1, last = 0, fastest = 0, seconds = 0;
        for (; seconds < 5 && reached < way; seconds += 1.f / static_cast<float>(rate))
        {
            run(1);
            last = wayOf(*door) - reached;
            EXPECT_GE(last, 0.f) << "never back";
            first = first < 0 ? last : first;
            fastest = std::max(fastest, last);
            reached = wayOf(*door);
        }
        EXPECT_EQ(reached, way);
        EXPECT_TRUE(rate < 10 || std::max(first, last) < fastest * 0.3f);
        return seconds;
    }

    Vec4 hinge() const { return transform->getPosition() + transform->getOrientation().generateRotation() * TO_HINGE; }
    /// Whether the leaf stands where it was placed, to the last bit.
    bool isAsPlaced() const
    {
        const Vec4 moved = transform->getPosition() - MIDDLE;
        return moved.x == 0 && moved.y == 0 && moved.z == 0 && transform->getOrientation() == placed;
    }

    int rate;
    PhysicsWorld world;
    Handle<Entity> leaf;
    Quaternion placed;
    TransformComponent *transform;
    Physics *door;
};

typedef Doorway<DoorPhysics> Hinged;
typedef Doorway<SlidingDoorPhysics> Sliding;

/// What leaves must not press against each other: a crate in a leaf's way, and who keeps it there.
struct Jam
{
    Vec4 crate;
    std::vector<Vec4> behind;                 ///< further crates
    std::vector<std::pair<Vec4, Vec4>> walls; ///< places and extents
    float waiting;                            ///< where it keeps the leaf
};

template <class Physics>
void expectToWaitIn(const Jam &jam)
{
    Doorway<Physics> doorway;
    const Vec4 size(0.5f, 0.5f, 0.5f, 0);
    for (const float x : {-6.f, 12.f}) // a floor with a seam on the crate's way
        doorway.world.box(BoundingVolume::BV_WALL, Vec4(x - 0.1f, -0.5f, -2, 1), Vec4(18, 1, 20, 0));
    std::vector<TestBox> crates = {doorway.world.box(BoundingVolume::BV_BOX, jam.crate, size)}, walls;
    for (const Vec4 &place : jam.behind)
        crates.push_back(doorway.world.box(BoundingVolume::BV_BOX, place, size));
    for (const auto &[place, extents] : jam.walls)
        walls.push_back(doorway.world.box(BoundingVolume::BV_WALL, place, extents));
    for (const TestBox &crate : crates)
        crate.body->setDamping(0.1f);
    doorway.door->onLoadComplete();
    doorway.run(30);
    doorway.door->interact(NOBODY);
    doorway.run(240);
    EXPECT_NEAR(wayOf(*doorway.door), jam.waiting, 0.07f); // crates sink into each other a little
    const float waiting = wayOf(*doorway.door);
    const Vec4 stood = crates.back().transform->getPosition();
    doorway.run(240);
    EXPECT_NEAR(wayOf(*doorway.door), waiting, 0.004f) << "neither shakes nor creeps";
    EXPECT_LT((crates.back().transform->getPosition() - stood).magnitude(), 0.01f) << "is not pressed into the wall";
    for (const TestBox &wall : walls)
        wall.entity.lookup()->murder();
    doorway.run(240);
    EXPECT_GE(wayOf(*doorway.door), 1.f) << "pushes on what can be pushed";
    EXPECT_GT((crates.front().transform->getPosition() - jam.crate).magnitude(), 0.2f);
}

} // namespace

TEST(Doors, SwingAwayFromWhoeverOpensThemToTheSameAngleAtAnyFrameRate)
{
    for (const int rate : {30, -30, 60, 144, 2, -2}) // negative from the south
    {
        SCOPED_TRACE(rate);
        const float side = rate < 0 ? -1.f : 1.f;
        Hinged doorway(std::abs(rate));
        doorway.door->onLoadComplete();
        doorway.door->setAngularDamping(rate == 144 ? 0.f : 1.f); // holds nobody back who swings it
        const Handle<Object> person = getHandle(doorway.person(3.2f, -2 + side).body);
        doorway.door->openDoor(person);
        EXPECT_NEAR(doorway.secondsTo(QUARTER_TURN), 1.16f, doorway.rate > 2 ? 0.1f : 0.5f);
        EXPECT_EQ(doorway.hinge(), HINGE);
        EXPECT_LT((doorway.transform->getPosition().z + 2) * side, -0.49f) << "away";
        doorway.run(doorway.rate);
        EXPECT_EQ(wayOf(*doorway.door), QUARTER_TURN) << "and stays";
        EXPECT_EQ(doorway.door->getAngularVelocity(), Vec4());
        doorway.door->interact(person);
        doorway.run(2 * doorway.rate + 4);
        EXPECT_FALSE(doorway.door->getOpen());
        EXPECT_EQ(doorway.door->getPrevAngle(), 0.f) << "stops at closed";
        EXPECT_TRUE(doorway.isAsPlaced());
    }
}

TEST(Doors, AreWhereTheyWereAfterThousandsOfSwings)
{
    Hinged doorway(6);
    doorway.door->onLoadComplete();
    Vec4 openPlace;
    for (int swing = 0; swing < 200; ++swing)
    {
        doorway.door->openDoor(NOBODY);
        const bool isCalledBack = swing % 3 == 2;
        const std::size_t taken = allocationsOf([&] { doorway.run(isCalledBack ? 3 : 10); });
        if (swing == 0)
            openPlace = doorway.transform->getPosition();
        else
            ASSERT_EQ(taken, 0u);
        const Vec4 moved = doorway.transform->getPosition() - openPlace;
        ASSERT_TRUE(isCalledBack || (moved.x == 0 && moved.z == 0)) << swing;
        doorway.door->closeDoor(NOBODY);
        doorway.run(10);
        ASSERT_TRUE(doorway.isAsPlaced()) << swing;
    }
}

TEST(Doors, PushedByATorqueStopAtTheirLimitsAndStayWhereTheyComeToRest)
{
    Hinged doorway;
    doorway.door->onLoadComplete();
    doorway.door->setAngularDamping(0.1f);
    const auto push = [&](float torque, int frames)
    {
        for (int i = 0; i < frames; ++i)
        {
            doorway.door->addTorque(Vec4(5, torque, 5, 0));
            doorway.run(1);
            EXPECT_LE(wayOf(*doorway.door), QUARTER_TURN);
        }
    };
    push(4, 10);
    doorway.run(300);
    EXPECT_NEAR(doorway.door->getPrevAngle(), 0.3f, 0.1f) << "stays ajar";
    EXPECT_EQ(doorway.door->getAngularVelocity(), Vec4()) << "does not creep";
    push(NAN, 2);
    push(40, 100);
    push(-40, 100);
    EXPECT_LT(doorway.door->getPrevAngle(), -1.4f) << "through the frame to the other side";
    doorway.door->closeDoor(NOBODY);
    push(2000, 1);
    EXPECT_LE(doorway.door->getPrevAngle(), 0.f) << "does not swing through";
    doorway.run(120);
    EXPECT_TRUE(doorway.isAsPlaced());
}

TEST(Doors, WaitForAPlayerInTheirWay)
{
    for (const int rate : {60, 2, 512})
    {
        Hinged doorway(rate);
        doorway.door->onLoadComplete();
        doorway.door->setOpen(true);
        const TestBox person = doorway.person(3.2f, -2.2f);
        doorway.run(2);
        const Vec4 stood = person.transform->getPosition();
        doorway.door->closeDoor(NOBODY);
        doorway.run(2 * rate + 4);
        const float waiting = doorway.door->getPrevAngle();
        EXPECT_GT(waiting, 0.2f) << rate;
        doorway.run(4 * rate);
        EXPECT_NEAR(doorway.door->getPrevAngle(), waiting, 0.002f) << "neither shakes nor creeps";
        EXPECT_LT((person.transform->getPosition() - stood).magnitude(), 0.01f) << "is not pushed";
        person.transform->setPosition(Vec4(3.2f, 1, 2, 1));
        doorway.run(2 * rate + 4);
        EXPECT_TRUE(doorway.isAsPlaced()) << "goes on";
    }
}

TEST(Doors, WaitForACrateThatHasNowhereToGoAndPushOthers)
{
    const std::pair<Vec4, Vec4> side(Vec4(2.2f, 1, -3, 1), Vec4(0.2f, 2, 2, 0));
    expectToWaitIn<DoorPhysics>(
        {Vec4(2.6f, 0.25f, -2.9f, 1), {}, {side, {Vec4(3, 1, -3.3f, 1), Vec4(2, 2, 0.2f, 0)}}, 1.1f});
    const auto end = [](float x) { return std::make_pair(Vec4(x + 0.1f, 1, -2, 1), Vec4(0.2f, 2, 2, 0)); };
    expectToWaitIn<SlidingDoorPhysics>({Vec4(3.9f, 0.25f, -2, 1), {}, {end(4.5f)}, 0.5f});
    expectToWaitIn<SlidingDoorPhysics>({Vec4(3.9f, 0.25f, -2, 1), {Vec4(4.5f, 0.25f, -2, 1)}, {end(5)}, 0.5f});
}

TEST(Doors, CloseAsPlacedAjarAndMovedWithTheirHinge)
{
    Hinged doorway;
    doorway.transform->setOrientation(Quaternion::fromAxisAngle(Vec4(0, 1, 0, 0), 0.5f));
    doorway.door->setPivot(Vec4(3, -2, 0, 0)); // angles count the other way
    doorway.door->setClosedAngle(0.5f);
    doorway.door->onLoadComplete();
    doorway.door->onLoadComplete(); // once more than needed
    EXPECT_EQ(doorway.door->getPrevAngle(), -0.5f);
    doorway.transform->setPosition(Vec4(3, 1, 3, 1));
    const Vec4 hinge = doorway.hinge();
    doorway.door->closeDoor(NOBODY);
    doorway.run(120);
    EXPECT_EQ(doorway.transform->getOrientation(), Quaternion());
    EXPECT_LT((doorway.hinge() - hinge).magnitude(), 1e-5f);
    doorway.door->setPrevAngle(9);
    EXPECT_EQ(doorway.door->getPrevAngle(), QUARTER_TURN) << "never beyond";
    doorway.door->setPivotPosition(Vec4());
    const Vec4 placed = hinge - Quaternion::fromAxisAngle(Vec4(0, 1, 0, 0), 0.5f).generateRotation() * TO_HINGE;
    EXPECT_LT((doorway.transform->getPosition() - placed).magnitude(), 1e-5f) << "turned about its middle";

    Hinged one, two;
    one.door->setOpen(true);
    for (Hinged *const placedAjar : {&one, &two})
        placedAjar->door->setClosedAngle(0.5f);
    two.door->setOpen(true);
    for (Hinged *const placedAjar : {&one, &two})
    {
        placedAjar->door->onLoadComplete();
        EXPECT_EQ(placedAjar->door->getPrevAngle(), -QUARTER_TURN) << "in whatever order it is told";
    }
}

TEST(Doors, AreFoundAsTheyWereLeftWhenTheirMapIsLoadedAgain)
{
    Hinged doorway;
    TestLevel &level = doorway.world.level;
    PersistentStateComponent &state =
        *level.component<PersistentStateComponent>(level.entity("PersistentState"), "persist").lookup();
    const Handle<Object> person = getHandle(doorway.person(3.2f, -3).body);
    doorway.door->onLoadComplete();
    for (const bool open : {true, false})
    {
        doorway.door->interact(person);
        doorway.run(5); // and the map is gone before the leaf is there
        doorway.leaf.lookup()->murder();
        doorway.run(1);
        doorway.hang();
        state.persistState(doorway.world.map);
        doorway.door->onLoadComplete();
        EXPECT_EQ(doorway.door->getOpen(), open);
        const Vec4 expected = open ? HINGE + Vec4(0, 0, 0.5f, 0) : MIDDLE; // on the side it was opened to
        EXPECT_LT((doorway.transform->getPosition() - expected).magnitude(), 1e-5f);
    }
    EXPECT_EQ(state.getCallCount(), 2);
}

TEST(Doors, LockedOnesRefuseEachTimeAndSayItAloud)
{
    Hinged doorway;
    doorway.door->onLoadComplete();
    SoundNote &sound = *doorway.world.level.component<SoundNote>(doorway.leaf, "sound").lookup();
    doorway.door->setLocked(true);
    for (int i = 0; i < 3; ++i)
        doorway.door->interact(NOBODY);
    doorway.run(30);
    EXPECT_EQ(countLogLines("asks for the sound \"DoorLocked\""), 3u);
    EXPECT_TRUE(doorway.isAsPlaced());
    doorway.door->setLocked(false);
    doorway.door->openDoor(NOBODY);
    doorway.door->openDoor(NOBODY); // is open
    doorway.door->setLocked(true);
    doorway.door->interact(NOBODY); // a lock keeps nobody from closing it
    EXPECT_FALSE(doorway.door->getOpen());
    EXPECT_THAT(sound.sounds, ElementsAre("DoorLocked", "DoorLocked", "DoorLocked", "DoorOpen", "DoorOpen"));
}

TEST(Doors, SlidingOnesEaseToBothEndsAndWaitForAPlayerAtAnyFrameRate)
{
    for (const int rate : {30, 144, 2})
    {
        SCOPED_TRACE(rate);
        Sliding doorway(rate);
        doorway.placed = Quaternion::fromAxisAngle(Vec4(0, 1, 0, 0), QUARTER_TURN);
        doorway.transform->setOrientation(doorway.placed);
        doorway.door->setDirection(SlidingDoorPhysics::Left);
        doorway.door->onLoadComplete();
        doorway.door->openDoor(NOBODY, rate == 30);
        EXPECT_NEAR(doorway.secondsTo(1), 1.3f, rate > 2 ? 0.1f : 0.5f);
        const float way = rate == 30 ? -1 : 1; // its own x is -z now
        EXPECT_LT((doorway.transform->getPosition() - MIDDLE - Vec4(0, 0, way, 0)).magnitude(), 1e-6f);
        const TestBox person = doorway.person(3, -2 - way * 0.1f);
        doorway.run(2);
        doorway.door->interact(NOBODY);
        doorway.run(2 * rate + 9);
        EXPECT_NEAR(doorway.door->getCurrentOffset(), 0.66f, 0.05f) << "at his elbow";
        person.entity.lookup()->murder();
        doorway.run(2 * rate + 9);
        EXPECT_TRUE(doorway.isAsPlaced());
    }
}

TEST(Doors, SlidingOnesMoveInFrontOfTheirParent)
{
    for (const bool loadedOpen : {false, true})
    {
        Sliding doorway;
        const Handle<Entity> carriage = doorway.world.level.entity("carriage", doorway.world.map);
        const auto place = doorway.world.level.transform(carriage, Vec4(7, 1, 0, 1)).lookup();
        if (loadedOpen) // and turned: its own x is -z, once the follower has run
            place->setOrientation(Quaternion::fromAxisAngle(Vec4(0, 1, 0, 0), QUARTER_TURN));
        doorway.leaf.lookup()->setParent(carriage);
        doorway.world.level.component<ParentFollowerComponent>(doorway.leaf, "parentFollower");
        doorway.door->setOpen(loadedOpen);
        doorway.door->onLoadComplete();
        doorway.door->openDoor(NOBODY, false);
        doorway.run(120);
        const Vec4 slid = loadedOpen ? Vec4(0, 0, -1, 0) : Vec4(1, 0, 0, 0);
        EXPECT_LT((doorway.transform->getPosition() - Vec4(7, 1, 0, 1) - slid).magnitude(), 1e-6f);
    }
}
