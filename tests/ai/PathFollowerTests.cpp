#include "WalkWorld.h"

#include "ai/steering/SteeringComponent.h"
#include "support/AllocationCount.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

float distanceTo(const PathFollower &follower, float x, float z)
{
    const Vec4 place = WalkWorld::placeOf(follower);
    return std::hypot(place.x - x, place.z - z);
}

/// Has a walker go as the creatures of the levels do.
void makeSteer(WalkWorld &world, const PathFollower &follower)
{
    SteeringComponent &steering =
        *world.level.component<SteeringComponent>(handle_cast<Entity>(follower.getParent()), "steering").lookup();
    steering.setMaxSpeed(1.5f);
    steering.setMaxAccel(6);
    steering.setTimeToTarget(0.25f);
    steering.setSepThreshold(1.1f);
    steering.setSepWeight(1.5f);
}

} // namespace

TEST(PathFollower, GoesStraightWhereItCanAndFacesItsWay)
{
    WalkWorld world(12, 12);
    PathFollower &follower = world.walker(-4, -4);
    follower.goTo(Vec4(4, 0, 2, 1));
    EXPECT_TRUE(follower.getUnderWay());
    world.frames(60);
    const Vec4 place = WalkWorld::placeOf(follower);
    EXPECT_NEAR((place.z + 4) / (place.x + 4), 6.f / 8.f, 0.02f) << "no zigzag from cell to cell";
    const Vec4 front = componentOf<TransformComponent>(follower.getParent(), ComponentKeys::transform)
                           ->getOrientation()
                           .generateRotation()
                           .getColumn(2);
    EXPECT_NEAR(front.x, 0.8f, 0.02f);
    EXPECT_NEAR(front.z, 0.6f, 0.02f);
    EXPECT_STREQ(follower.tell().toCString(), "on its way to (4, 2), straight ahead");
    world.settle(follower);
    EXPECT_TRUE(follower.getArrived());
    world.frames(60);
    EXPECT_LT(distanceTo(follower, 4, 2), 0.35f);
}

TEST(PathFollower, GoesAroundWallsWithoutTouchingThem)
{
    WalkWorld world(16, 16);
    world.wall(-2, 2, -4, 4);
    world.wall(-8, -3, 2, 2.2f);
    PathFollower &follower = world.walker(-5, 0);
    follower.goTo(Vec4(5, 0, 0, 1));
    float length = 0, nearest = 10;
    Vec4 last = WalkWorld::placeOf(follower);
    for (int frame = 0; follower.getUnderWay() && frame < 4000; ++frame)
    {
        world.frames(1);
        const Vec4 place = WalkWorld::placeOf(follower);
        length += (place - last).magnitude();
        last = place;
        nearest = std::min(
            nearest, std::hypot(std::max(std::fabs(place.x) - 2.f, 0.f), std::max(std::fabs(place.z) - 4.f, 0.f)));
    }
    EXPECT_TRUE(follower.getArrived());
    EXPECT_GT(nearest, 0.25f);
    EXPECT_LT(length, 15.5f) << "the shortest is 14";
}

TEST(PathFollower, OpensDoorsOnItsWayAndClosesThemBehindItself)
{
    for (const bool slides : {false, true})
    {
        WalkWorld world(10, 10);
        world.divide(0.5f);
        if (slides)
            world.door<SlidingDoorPhysics>("door", 0.5f).setLocked(true);
        else
            world.door<DoorPhysics>("door", 0.5f).setLocked(true);
        world.frames(3);
        const Handle<Object> physics = world.map.lookup()->getDescendantByPath(SCS("door/physics"));
        const auto isOpen = [&]
        {
            const auto swinging = handle_cast<DoorPhysics>(physics).lookup();
            return swinging ? swinging->getOpen() : handle_cast<SlidingDoorPhysics>(physics).lookup()->getOpen();
        };
        PathFollower &follower = world.walker(-2, -3);
        follower.goTo(Vec4(2, 0, 3, 1));
        world.settle(follower);
        EXPECT_TRUE(follower.getFailed());
        EXPECT_STREQ(follower.tell().toCString(), "does not get to (2, 3), since there is no way");
        follower.setOpensDoors(true);
        follower.setClosesDoors(true);
        follower.addKey(SCS("door"));
        follower.goTo(Vec4(2, 0, 3, 1));
        bool waited = false, opened = false;
        for (int frame = 0; follower.getUnderWay() && frame < 2000; ++frame)
        {
            world.frames(1);
            waited |= follower.tell() == SCS("waits for the door door to open");
            opened |= isOpen();
        }
        EXPECT_TRUE(follower.getArrived()) << slides << follower.tell().toCString();
        EXPECT_TRUE(waited && opened);
        world.frames(100);
        EXPECT_FALSE(isOpen()) << slides;
    }
}

TEST(PathFollower, AsksAnewWhereItsWayIsBlocked)
{
    WalkWorld world(12, 9);
    world.wall(-7, -2.5f, -0.1f, 0.1f);
    world.wall(-1.5f, 3.5f, -0.1f, 0.1f);
    world.wall(4.5f, 7, -0.1f, 0.1f);
    const Handle<Entity> crate = world.crate(0, -3.5f, 0.8f);
    world.frames(2);
    PathFollower &follower = world.walker(-2, -3);
    follower.goTo(Vec4(-2, 0, 3, 1));
    world.frames(20);
    ASSERT_TRUE(follower.getUnderWay());
    world.move(crate, -2, 0);
    world.settle(follower);
    EXPECT_TRUE(follower.getArrived()) << follower.tell().toCString();
    world.move(crate, 4, 0);
    const Handle<Entity> other = world.crate(-2, 0, 0.8f);
    world.frames(10);
    follower.goTo(Vec4(-2, 0, -3, 1));
    world.settle(follower);
    EXPECT_TRUE(follower.getFailed());
    other.lookup()->murder();
    world.frames(10);
    follower.goTo(Vec4(-2, 0, -3, 1));
    world.settle(follower);
    EXPECT_TRUE(follower.getArrived()) << follower.tell().toCString();
}

TEST(PathFollower, SettlesOnTheNearestRoomAndRefusesWhatIsNoPlace)
{
    WalkWorld world(10, 10);
    world.wall(1, 5.5f, -1, 1);
    world.frames(2);
    const float nan = std::numeric_limits<float>::quiet_NaN();
    PathFollower &follower = world.walker(-3, 0);
    follower.goTo(Vec4(2, 0, 0.2f, 1));
    world.settle(follower);
    EXPECT_TRUE(follower.getArrived());
    EXPECT_LT(distanceTo(follower, 2, 0), 2.f);
    follower.goTo(Vec4(100, 0, 3, 1));
    world.settle(follower);
    EXPECT_TRUE(follower.getArrived()) << "the edge of the map";
    EXPECT_GT(WalkWorld::placeOf(follower).x, 3.f);
    follower.goTo(Vec4(nan, 0, 3, 1));
    EXPECT_TRUE(follower.getFailed());
    follower.goTo(Vec4(1e38f, 0, -1e38f, 1));
    world.frames(10);
    const Handle<MapRootEntity> bare = world.level.map("bare", Vec4(500, 0, 0, 1), Vec4(4, 4, 4, 0));
    follower.getParent().lookup()->setParent(bare);
    world.frames(3);
    follower.goTo(Vec4(1, 0, 1, 1));
    EXPECT_TRUE(follower.getFailed());

    // From inside a wall it gets out.
    PathFollower &stuck = world.walker(3, 0.9f);
    stuck.goTo(Vec4(-3, 0, 3, 1));
    world.settle(stuck);
    EXPECT_TRUE(stuck.getArrived()) << stuck.tell().toCString();
}

TEST(PathFollower, WalksWithSteeringAsWithout)
{
    WalkWorld world(12, 12);
    world.wall(-1, 1, -3, 5.5f);
    world.frames(2);
    PathFollower &follower = world.walker(-3, 0);
    SteeringComponent &steering =
        *world.level.component<SteeringComponent>(handle_cast<Entity>(follower.getParent()), "steering").lookup();
    steering.setMaxSpeed(2);
    steering.setMaxAccel(12);
    steering.setTimeToTarget(0.2f);
    follower.setSpeed(2);
    follower.goTo(Vec4(3, 0, 2, 1));
    EXPECT_LT(world.settle(follower), 64 * 12);
    EXPECT_TRUE(follower.getArrived()) << follower.tell().toCString();
    world.frames(60);
    EXPECT_LT(distanceTo(follower, 3, 2), 0.4f);
}

TEST(PathFollower, TwoCrowdsPassEachOtherThroughADoorway)
{
    WalkWorld world(16, 16);
    world.divide(0.f);
    std::vector<PathFollower *> crowd;
    for (int i = 0; i < 12; ++i)
        crowd.push_back(&world.walker(-5.f + 2.f * static_cast<float>(i % 6), i % 2 ? -5.f : 5.f));
    world.frames(3);
    for (int i = 0; i < 12; ++i)
        crowd[static_cast<std::size_t>(i)]->goTo(
            Vec4(-5.f + 2.f * static_cast<float>(i * 5 % 6), 0, i % 2 ? 5.f : -5.f, 1));
    for (PathFollower *const follower : crowd)
    {
        world.settle(*follower, 64 * 60);
        EXPECT_TRUE(follower->getArrived()) << follower->tell().toCString();
    }
}

TEST(PathFollower, TwelveWhoSteerPassADoorwayOfAMetreInTheTimeOfAQueue)
{
    const auto isBefore = [](const PathFollower *follower) { return WalkWorld::placeOf(*follower).z < 0.3f; };
    for (const float radius : {0.25f, 0.3f, 0.35f})
        for (const float gap : {0.9f, 1.5f, 2.f, 2.6f})
        {
            WalkWorld world(16, 16);
            world.divide(0.f);
            std::vector<PathFollower *> crowd;
            for (int i = 0; i < 12; ++i)
            {
                const float column = static_cast<float>(i % 4) - 1.5f, row = static_cast<float>(i / 4);
                crowd.push_back(&world.walker(gap * column, gap * row - 6.f, radius));
                makeSteer(world, *crowd.back());
            }
            world.frames(3);
            for (int i = 0; i < 12; ++i)
                crowd[static_cast<std::size_t>(i)]->goTo(
                    Vec4(-5.f + 2.f * static_cast<float>(i % 6), 0, 3.f + 2.f * static_cast<float>(i / 6), 1));
            int frames = 0;
            for (; frames < 64 * 200 && std::any_of(crowd.begin(), crowd.end(), isBefore); ++frames)
                world.frames(1);
            EXPECT_LT(frames, 64 * 40) << "simulated; radius " << radius << ", " << gap << " m between them";
            world.frames(64 * 20);
            for (PathFollower *const follower : crowd)
                EXPECT_FALSE(follower->getUnderWay())
                    << follower->tell().toCString() << "; radius " << radius << ", " << gap << " m between them";
        }
}

TEST(PathFollower, WhoIsMurderedOnTheWayIsMissedByNobody)
{
    WalkWorld world(12, 12);
    world.wall(-1, 1, -3, 5.5f);
    PathFollower &prey = world.walker(-3, 0), &hunter = world.walker(-3, 3);
    world.frames(2);
    prey.goTo(Vec4(3, 0, 2, 1));
    for (int frame = 0; frame < 400; ++frame)
    {
        if (frame < 100)
            hunter.goTo(WalkWorld::placeOf(prey));
        if (frame == 100)
            prey.getParent().lookup()->murder();
        world.frames(1);
    }
    EXPECT_TRUE(hunter.getArrived()) << hunter.tell().toCString();
    componentOf<RigidBody>(hunter.getParent(), ComponentKeys::physics)->murder();
    hunter.goTo(Vec4(3, 0, 2, 1));
    world.frames(3);
    hunter.goTo(Vec4(3, 0, 2, 1));
    EXPECT_TRUE(hunter.getFailed());
}

TEST(PathFollower, FollowersOfTheSteadyStateTakeNoMemory)
{
    WalkWorld world(20, 20);
    world.wall(-1, 1, -6, 6);
    std::vector<PathFollower *> followers;
    for (int i = 0; i < 8; ++i)
        followers.push_back(&world.walker(-8.f + static_cast<float>(i % 4), -6.f + 3.f * static_cast<float>(i / 4)));
    int arrivals = 0;
    const auto step = [&]
    {
        for (std::size_t i = 0; i < followers.size(); ++i)
        {
            if (followers[i]->getUnderWay())
                continue;
            ++arrivals;
            const float side = WalkWorld::placeOf(*followers[i]).x > 0 ? -7.f : 7.f;
            followers[i]->goTo(Vec4(side, 0, static_cast<float>(i) - 4.f, 1));
        }
        world.frames(1);
    };
    for (int i = 0; i < 8000; ++i)
        step();
    EXPECT_EQ(heapAllocationsOf(step, 400), 0u);
    EXPECT_GT(arrivals, 20);
}
