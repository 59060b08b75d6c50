#include "SoundScene.h"

#include "physics/grid/MapDataComponent.h"
#include "physics/grid/SquareGrid.h"

#include "engine/debug/DebugCollector.h"
#include "engine/debug/GlobalConfigSystem.h"
#include "engine/entities/ComponentOf.h"
#include "support/AllocationCount.h"

#include <gtest/gtest.h>

#include <functional>

namespace
{

/// Decibels at the ear of a sound of 0 at a metre.
float levelOf(const HeardWay &heard)
{
    return decibels(heard.gain / std::max(heard.distance, 1.f));
}

Vec4 largestAt;

/// The largest change of level between neighbouring points of a way, decibels.
float largestStep(SoundScene &scene, const std::vector<Vec4> &corners, const std::function<HeardWay(Vec4)> &hear)
{
    constexpr float STEP = 0.1f;
    float largest = 0.f, last = NAN;
    for (std::size_t i = 1; i < corners.size(); ++i)
    {
        const Vec4 way = corners[i] - corners[i - 1];
        const int steps = static_cast<int>(way.magnitude() / STEP);
        for (int step = 0; step < steps; ++step)
        {
            const float level =
                levelOf(hear(corners[i - 1] + way * (static_cast<float>(step) / static_cast<float>(steps))));
            if (std::fabs(level - last) > largest)
            {
                largest = std::fabs(level - last);
                largestAt = corners[i - 1] + way * (static_cast<float>(step) / static_cast<float>(steps));
            }
            last = level;
        }
    }
    return largest;
}

} // namespace

TEST(SoundWays, InSightASoundIsHeardFromItsPlaceWhateverStandsLower)
{
    SoundScene scene;
    scene.wall(2, 4, -1, 0, 0, 0.9f); // a table
    scene.wall(2, 4, 1, 2, 2.1f, 3);  // a beam
    scene.settle();
    const HeardWay heard = scene.hear(3, 4, 3, -6);
    EXPECT_EQ(heard.apparent, Vec4(3, 1.5f, 4, 1));
    EXPECT_FLOAT_EQ(heard.gain, 1.f);
    EXPECT_FLOAT_EQ(heard.lowpass, HeardWay::OPEN);
    EXPECT_FLOAT_EQ(heard.distance, 10.f);
    EXPECT_TRUE(heard.open && heard.inSight);
    EXPECT_FLOAT_EQ(scene.ways->loudnessAt(Vec4(3, 1.5f, 4, 1), 2.f, Vec4(3, 1.5f, -6, 1)), 0.2f);
}

TEST(SoundWays, WhoHearsNoFartherThanSoManyMetresGetsTheSameAnswerWithinThem)
{
    SoundScene scene;
    scene.divide({3});
    scene.settle();
    for (const float z : {-3.f, -5.f, -8.f})
        for (const float x : {1.f, 4.f, 9.f})
        {
            const Vec4 from(6, 1.5f, 1, 1), at(x, 1.5f, z, 1);
            const HeardWay near = scene.ways->hearWithin(from, at, 11.f);
            const HeardWay whole = scene.ways->hear(from, at);
            EXPECT_LE(near.gain, whole.gain) << x << " " << z;
            if (whole.distance < 11.f)
            {
                EXPECT_FLOAT_EQ(near.gain, whole.gain) << x << " " << z;
            }
        }
    EXPECT_FALSE(scene.ways->hearWithin(Vec4(12, 1.5f, 7, 1), Vec4(12, 1.5f, -11, 1), 5.f).open) << "too far around";
}

TEST(SoundWays, BehindAWallASoundIsHeardFromTheDoorwayAtTheLengthOfItsWay)
{
    SoundScene scene;
    scene.divide({3});
    scene.settle();
    const HeardWay heard = scene.hear(9, 0, 9, -5); // six metres there, three and then as far back
    const float length = std::hypot(5.5f, 2.f) + 0.3f + std::hypot(5.5f, 2.7f);
    EXPECT_NEAR(heard.distance, length, 0.3f);
    const Vec4 towards = heard.apparent - Vec4(9, 1.5f, -5, 1);
    EXPECT_NEAR(towards.magnitude(), heard.distance, 1e-3f);
    EXPECT_NEAR(std::atan2(towards.z, towards.x), std::atan2(2.7f, -5.5f), 0.05f) << "from the doorway's near corner";
    EXPECT_GT(decibels(heard.gain), -10.f);
    EXPECT_LT(decibels(heard.gain), -2.f);
    EXPECT_TRUE(heard.open);
    EXPECT_FALSE(heard.inSight);
    const HeardWay back = scene.hear(9, -5, 9, 0);
    EXPECT_NEAR(back.gain, heard.gain, 1e-3f);
    EXPECT_NEAR(back.distance, heard.distance, 1e-3f);
}

TEST(SoundWays, AWallWithoutADoorwayLetsADullRestThroughThatThicknessTakes)
{
    SoundScene scene;
    scene.divide({});
    scene.settle();
    const HeardWay heard = scene.hear(3, 0, 3, -5);
    EXPECT_FALSE(heard.open);
    EXPECT_NEAR(decibels(heard.gain), -38.f, 1.f);
    EXPECT_NEAR(heard.lowpass, 500.f, 1.f);
    EXPECT_EQ(heard.apparent, Vec4(3, 1.5f, 0, 1));
    scene.wall(-7, 13, -2, -1);
    scene.settle();
    EXPECT_NEAR(decibels(scene.hear(3, 0, 3, -5).gain), -58.f, 1.f);
}

template <class Physics>
struct SoundDoors : testing::Test
{
};
typedef testing::Types<DoorPhysics, SlidingDoorPhysics> DoorTypes;
TYPED_TEST_SUITE(SoundDoors, DoorTypes);

namespace
{
void setOpenness(DoorPhysics &door, float part)
{
    door.setPrevAngle(part * 1.5707964f);
}
void setOpenness(SlidingDoorPhysics &door, float part)
{
    door.setCurrentOffset(part);
}
} // namespace

TYPED_TEST(SoundDoors, ADoorLetsMoreInTheFartherItStandsOpen)
{
    SoundScene scene;
    scene.divide({3});
    auto &door = scene.template door<TypeParam>(3);
    scene.settle();
    const HeardWay closed = scene.hear(3, 1, 3, -5);
    EXPECT_NEAR(decibels(closed.gain), -22.f, 0.5f);
    EXPECT_NEAR(closed.lowpass, 900.f, 20.f);
    EXPECT_FALSE(closed.inSight);
    EXPECT_TRUE(closed.open);

    HeardWay before = closed;
    for (int step = 1; step <= 20; ++step)
    {
        setOpenness(door, static_cast<float>(step) * 0.05f);
        const HeardWay heard = scene.hear(3, 1, 3, -5);
        EXPECT_GT(heard.gain, before.gain);
        EXPECT_GT(heard.lowpass, before.lowpass);
        EXPECT_LT(decibels(heard.gain / before.gain), 1.3f);
        before = heard;
    }
    EXPECT_TRUE(before.inSight);
    EXPECT_FLOAT_EQ(before.gain, 1.f);

    setOpenness(door, 0.f);
    scene.hear(3, 1, 3, -5);
    door.getParent().lookup()->murder();
    scene.settle();
    EXPECT_TRUE(scene.hear(3, 1, 3, -5).inSight) << "a doorway without its door is open";
}

TEST(SoundWays, TheFartherDoorwayTakesOverAsTheNearerOneCloses)
{
    SoundScene scene;
    scene.divide({0, 11});
    DoorPhysics &door = scene.door<DoorPhysics>(0);
    scene.settle();
    const auto bearing = [](const HeardWay &heard) { return (heard.apparent - Vec4(0, 1.5f, -4, 1)).x; };
    float last = NAN;
    for (int step = 40; step >= 0; --step)
    {
        door.setPrevAngle(static_cast<float>(step) * 0.025f * 1.5707964f);
        const HeardWay heard = scene.hear(0, 0, 0, -4);
        EXPECT_FALSE(std::fabs(levelOf(heard) - last) > 0.7f) << step;
        last = levelOf(heard);
        EXPECT_TRUE(step < 40 || std::fabs(bearing(heard)) < 0.1f);
    }
    const HeardWay around = scene.hear(0, 0, 0, -4);
    EXPECT_GT(bearing(around), 5.f) << "from the open one";
    EXPECT_GT(around.distance, 15.f);
}

TEST(SoundWays, NeitherLevelNorDistanceJumpsWhileSomebodyWalks)
{
    SoundScene scene;
    scene.divide({0, 8});
    DoorPhysics &door = scene.door<DoorPhysics>(0);
    door.setPrevAngle(0.7f);
    scene.wall(4, 4.4f, 2, 6); // stands free
    scene.wall(-4, -1, -7, -6);
    scene.settle();
    const std::vector<Vec4> walk = {Vec4(-6, 1.5f, 5, 1),  Vec4(10, 1.5f, 7, 1), Vec4(10, 1.5f, -1, 1),
                                    Vec4(0, 1.5f, -1, 1),  Vec4(0, 1.5f, -4, 1), Vec4(-6, 1.5f, -5, 1),
                                    Vec4(-5, 1.5f, -9, 1), Vec4(8, 1.5f, -8, 1), Vec4(8, 1.5f, 3, 1)};
    for (const Vec4 &other : {Vec4(-3, 1.5f, -10, 1), Vec4(2, 1.5f, 1, 1), Vec4(11, 1.5f, -4, 1)})
    {
        const auto asSound = [&](Vec4 place) { return scene.ways->hear(place, other); };
        const auto asEar = [&](Vec4 place) { return scene.ways->hear(other, place); };
        EXPECT_LT(largestStep(scene, walk, asSound), 1.5f)
            << other.toString().toCString() << " at " << largestAt.toString().toCString();
        EXPECT_LT(largestStep(scene, walk, asEar), 1.5f)
            << other.toString().toCString() << " at " << largestAt.toString().toCString();
    }
}

TEST(SoundWays, CellsOfThePathGridAreWallsAndWhatChangesIsNoticed)
{
    SoundScene scene;
    MapDataComponent &data = *scene.world.level.component<MapDataComponent>(scene.world.map, "mapData").lookup();
    data.onLoadComplete();
    SquareGrid &grid =
        *componentOf<SquareGrid>(scene.world.map.lookup()->getChild(SCS(".MapData_mainPathGrid")), SCS("grid"));
    scene.settle();
    const auto inSight = [&]
    { return scene.ways->hear(Vec4(3, -3.5f, 3, 1), Vec4(3, -3.5f, -6, 1)).inSight; }; // above the map's lower face
    EXPECT_TRUE(inSight());
    const GridCell cell = grid.getCellFromPoint(Vec4(3, 0, -2, 1));
    cell.setFloatValue(0.5f);
    for (int frame = 0; frame < 40; ++frame)
        scene.world.level.frame();
    EXPECT_TRUE(inSight()) << "nobody walks here, but it is low";
    cell.setFloatValue(1.f);
    for (int frame = 0; frame < 40; ++frame)
        scene.world.level.frame();
    EXPECT_FALSE(inSight());

    cell.setFloatValue(0.f);
    const TestBox wall = scene.wall(-7, 13, 0, 1, -5, 5);
    for (int frame = 0; frame < 40; ++frame)
        scene.world.level.frame();
    EXPECT_FALSE(inSight());
    wall.entity.lookup()->murder();
    for (int frame = 0; frame < 40; ++frame)
        scene.world.level.frame();
    EXPECT_TRUE(inSight());
}

TEST(SoundWays, FromFloorToFloorASoundComesByPassagesAndDullThroughTheSlab)
{
    SoundScene scene;
    scene.wall(-7, 13, -12, 8, 3, 3.3f);
    scene.ways->addFloor(3.3f);
    scene.settle();
    const Vec4 below(3, 1.5f, -2, 1), above(3, 4.8f, 4, 1);
    const HeardWay through = scene.ways->hear(below, above);
    EXPECT_FALSE(through.open);
    EXPECT_LT(decibels(through.gain), -36.f);
    scene.ways->addPassage(Vec4(-5, 1, -10, 1), Vec4(-5, 4, -7, 1), 1.f); // stairs
    const HeardWay byStairs = scene.ways->hear(below, above);
    EXPECT_TRUE(byStairs.open);
    EXPECT_NEAR(decibels(byStairs.gain), 0.f, 0.1f);
    EXPECT_NEAR(byStairs.distance, std::hypot(8.f, 8.f) + std::hypot(3.f, 3.f) + std::hypot(8.f, 11.f), 0.5f);
    EXPECT_LT(byStairs.apparent.x, 0.f);

    scene.ways->setListener(below);
    const int source = scene.ways->addSource(above);
    EXPECT_NEAR(scene.ways->getHeard(source).gain, byStairs.gain, 1e-3f);
    scene.ways->setListener(Vec4(3, 4.8f, -2, 1)); // a floor up, on the same spot
    scene.ways->doFrame();
    scene.ways->doFrame();
    EXPECT_TRUE(scene.ways->getHeard(source).inSight);
}

TEST(SoundWays, SourcesAreFollowedWithinABoundedWorkAFrameAndWithoutAllocations)
{
    SoundScene scene;
    scene.divide({-4, 0, 4, 8});
    DoorPhysics &door = scene.door<DoorPhysics>(0);
    Chance chance(5);
    for (int pillar = 0; pillar < 60; ++pillar)
    {
        const float x = chance(-6, 12), z = chance(-11, 7);
        scene.wall(x, x + 0.3f, z, z + 0.3f);
    }
    scene.settle();
    std::vector<Vec4> places;
    for (int number = 0; number < 200; ++number)
    {
        places.push_back(Vec4(chance(-7, 13), 1.5f, chance(-12, 8), 1));
        EXPECT_EQ(scene.ways->addSource(places.back()), number);
    }
    int most = 0;
    const auto listenerAt = [](int frame) // runs around
    {
        const float turn = static_cast<float>(frame) * 0.01f;
        return Vec4(3 + 8 * std::cos(turn), 1.5f, -2 + 8 * std::sin(turn), 1);
    };
    const auto move = [&](int frame)
    {
        const float turn = static_cast<float>(frame) * 0.02f;
        scene.ways->setListener(listenerAt(frame));
        door.setPrevAngle(0.7f + 0.6f * std::sin(turn * 5));
        for (int number = 0; number < 200; ++number)
        {
            places[static_cast<std::size_t>(number)].x += 0.01f * std::sin(turn + static_cast<float>(number));
            scene.ways->moveSource(number, places[static_cast<std::size_t>(number)]);
        }
        scene.ways->doFrame();
        if (frame > 0)
            most = std::max(most, scene.ways->getFrameWork());
    };
    int frame = 0;
    for (; frame < 320; ++frame)
        move(frame);
    EXPECT_EQ(allocationsOf([&] { move(frame++); }, 320), 0u);
    EXPECT_LT(most, 640) << "lines of sight: those of two budgets, and what the last source of a frame takes";
    EXPECT_GT(most, 20) << "it does something";
    for (int still = 0; still < 200; ++still)
        scene.ways->doFrame();
    for (int number = 0; number < 200; number += 7)
    {
        const HeardWay now = scene.ways->getHeard(number);
        const HeardWay asked = scene.ways->hear(places[static_cast<std::size_t>(number)], listenerAt(frame - 1));
        EXPECT_NEAR(levelOf(now), levelOf(asked), 0.05f) << number;
    }
}

TEST(SoundWays, ASourceThatIsDroppedOrNoneIsNotHeardAndNumbersComeAgain)
{
    SoundScene scene;
    scene.settle();
    scene.ways->setListener(Vec4(0, 1.5f, 0, 1));
    const int first = scene.ways->addSource(Vec4(1, 1.5f, 0, 1)), second = scene.ways->addSource(Vec4(2, 1.5f, 0, 1));
    scene.ways->dropSource(first);
    scene.ways->dropSource(first);
    EXPECT_EQ(scene.ways->getSourceCount(), 1);
    for (const int none : {first, 7, -1, SoundWays::NO_SOURCE})
    {
        scene.ways->moveSource(none, Vec4());
        EXPECT_EQ(scene.ways->getHeard(none).gain, 0.f);
    }
    EXPECT_EQ(scene.ways->addSource(Vec4(3, 1.5f, 0, 1)), first);
    scene.ways->moveSource(second, Vec4(NAN, 0, 0, 1));
    scene.ways->doFrame();
    EXPECT_EQ(scene.ways->getHeard(second).gain, 0.f);
    EXPECT_FLOAT_EQ(scene.ways->getHeard(first).distance, 3.f);
}

TEST(SoundWays, PlacesThatAreNoneHearNothingAndTheOpenIsWithoutWalls)
{
    SoundScene scene;
    scene.divide({3});
    scene.settle();
    const Vec4 here(3, 1.5f, 0, 1);
    for (const Vec4 &nowhere : {Vec4(NAN, 0, 0, 1), Vec4(0, INFINITY, 0, 1), Vec4(0, 0, -1e30f, 1)})
    {
        EXPECT_EQ(scene.ways->hear(nowhere, here).gain, 0.f);
        EXPECT_EQ(scene.ways->hear(nowhere, here).apparent, here);
        EXPECT_EQ(scene.ways->hear(here, nowhere).gain, 0.f);
    }
    EXPECT_TRUE(scene.ways->hear(Vec4(100, 1, 0, 1), Vec4(100, 1, 200, 1)).inSight) << "outside of the map";
    EXPECT_FALSE(scene.ways->hear(Vec4(100, 1, 0, 1), here).open) << "into the closed house";
    EXPECT_TRUE(scene.ways->hear(here, here).inSight);
    const HeardWay inWall = scene.ways->hear(Vec4(8, 1.5f, -2.05f, 1), Vec4(8, 1.5f, 3, 1));
    EXPECT_TRUE(inWall.inSight) << "a clock that hangs in a wall is heard before it";
    EXPECT_FALSE(scene.ways->hear(Vec4(8, 1.5f, -2.05f, 1), Vec4(8, 1.5f, -7, 1)).inSight) << "and not behind it";

    const Handle<MapRootEntity> bare = scene.world.level.map("bare", Vec4(0, 0, 0, 1), Vec4(1, 1, 1, 0));
    SoundWays &open = *scene.world.level.component<SoundWays>(bare, "soundWays").lookup();
    EXPECT_TRUE(open.hear(Vec4(0, 0, 0, 1), Vec4(5, 0, 50, 1)).inSight) << "a map without grids";
}

TEST(SoundWays, DebugDrawingShowsWaysAndTheirLoudness)
{
    SoundScene scene;
    scene.divide({3});
    scene.settle();
    scene.ways->setListener(Vec4(9, 1.5f, -5, 1));
    scene.ways->addSource(Vec4(9, 1.5f, 0, 1));
    auto &collector =
        *scene.world.level.component<DebugCollectorComponent>(scene.world.level.entity("tools"), "debugDrawCollector")
             .lookup();
    GlobalConfigSystem &config = getSystemDeref<GlobalConfigSystem>();
    config.setDebugDrawEnabled(true);
    scene.world.level.frame();
    EXPECT_TRUE(collector.getWorldGeometry().isEmpty());
    config.setDebugDrawSoundWays(true);
    scene.world.level.frame();
    EXPECT_EQ(collector.getWorldGeometry().lines.size(), 3u) << "around two corners of the doorway";
    EXPECT_EQ(collector.getWorldGeometry().texts.size(), 1u);
}
