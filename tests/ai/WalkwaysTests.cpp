#include "WalkWorld.h"

#include "ai/paths/WalkPlan.h"
#include "physics/acoustics/SoundWays.h"
#include "support/AllocationCount.h"

#include <gtest/gtest.h>

#include <cmath>

namespace
{

std::string pictureOf(const SquareGrid &grid)
{
    std::string picture;
    for (int z = 0; z < grid.getGridRows(); ++z, picture += '\n')
        for (int x = 0; x < grid.getGridCols(); ++x)
            picture += grid.getCellFloatValue(x, z) == 0.f ? '.' : grid.getCellFloatValue(x, z) == 1.f ? '#' : 'o';
    return picture;
}

} // namespace

TEST(Walkways, WhatStandsInACellBlocksItAndAPushedCrateTakesItsBlockAlong)
{
    WalkWorld world(7, 5);
    world.draw({".......", ".#.....", ".......", ".......", "......."});
    const Handle<Entity> crate = world.crate(0, 0);
    const Handle<Entity> flat = world.body("mat", BoundingVolume::BV_BOX, 1.6f, 2.4f, -0.4f, 0.4f, 0.2f);
    world.level.component<RigidBody>(flat, "physics");
    world.body("light", BoundingVolume::BV_BOX, -2.4f, -1.6f, 0.6f, 1.4f); // without a body it stops nobody
    world.creature(6, 4);
    world.frames(1);
    world.ways();
    EXPECT_EQ(pictureOf(*world.main), ".......\n.#.....\n...o...\n.......\n.......\n");
    const float value = world.main->getCellFloatValue(3, 2);
    EXPECT_TRUE(value > 0.f && value < 1.f) << "sound takes it for a wall";
    world.main->setCellFloatValue(5, 3, Walkways::BLOCKED_BY_THINGS);
    world.move(crate, 2, 1);
    world.frames(2);
    EXPECT_EQ(pictureOf(*world.main), ".......\n.#.....\n.......\n.....o.\n.......\n");
    EXPECT_FALSE(isWalkable(world.main->getCell(5, 3)));

    // What a level writes stays, whether the crate comes over it or leaves it.
    world.main->setCellFloatValue(5, 3, 1.f);
    world.move(crate, -2, -1);
    world.frames(2);
    EXPECT_EQ(pictureOf(*world.main), ".......\n.#.....\n.......\n.....#.\n.......\n");
    world.main->setCellFloatValue(1, 1, 0.f);
    world.move(crate, 0, 2);
    world.frames(2);
    EXPECT_EQ(pictureOf(*world.main), ".......\n.......\n.......\n.....#.\n...o...\n");
    crate.lookup()->murder();
    world.frames(40);
    EXPECT_EQ(pictureOf(*world.main), ".......\n.......\n.......\n.....#.\n.......\n");
}

TEST(Walkways, WallsBetweenCellsPartThemAndDoorwaysJoinThemWhereverTheyLie)
{
    for (const float doorway : {0.f, 0.5f, 1.f, 1.3f})
    {
        WalkWorld world(8, 8); // cells have their borders on whole metres
        world.divide(doorway);
        world.frames(1);
        EXPECT_TRUE(world.isJoined(1, 1, 1, 6)) << doorway;
        EXPECT_FALSE(world.isJoined(1, 1, 1, 6, 0.6f)) << doorway << ", too wide for it";
        const Vec4 here(-3, 0, -1, 1), there(-3, 0, 1, 1);
        EXPECT_FALSE(world.ways().isWayFree(here, there, 0.2f));
        EXPECT_TRUE(world.ways().isWayFree(here, Vec4(3, 0, -1, 1), 0.2f));
    }
    WalkWorld closed(8, 8);
    closed.wall(-5, 5, -0.1f, 0.1f);
    closed.frames(1);
    EXPECT_FALSE(closed.isJoined(1, 1, 1, 6));
}

TEST(Walkways, DoorsAreOpenToThoseWhoCanOpenThem)
{
    WalkWorld world(8, 8);
    world.divide(0.5f);
    DoorPhysics &door = world.door<DoorPhysics>("cellarDoor", 0.5f);
    world.frames(3);
    PathFollower &follower = world.walker(-3, -3);
    const Handle<Entity> entity = handle_cast<Entity>(follower.getParent());
    world.level.component<PathComponent>(entity, "path");
    const auto finds = [&]
    {
        world.ask(entity, 1, 6);
        world.PathWorld::settle(entity);
        return PathWorld::path(entity).requestStatus() == PS_Succeeded;
    };
    EXPECT_FALSE(finds());
    follower.setOpensDoors(true);
    EXPECT_TRUE(finds());
    door.setLocked(true);
    EXPECT_FALSE(finds());
    follower.addKey(SCS("cellarDoor"));
    EXPECT_TRUE(finds());
    follower.setOpensDoors(false);
    EXPECT_FALSE(finds());
    door.setOpen(true);
    world.frames(20);
    EXPECT_TRUE(finds()) << "an open one bars nobody";
    EXPECT_TRUE(isWalkable(world.main->getCell(4, 4)));
}

TEST(Walkways, FollowAGridThatChangesItsSizeAndLeaveItAsItWas)
{
    WalkWorld world(6, 6);
    world.crate(1, 1);
    world.frames(1);
    world.ways();
    TransformComponent &transform = *componentOf<TransformComponent>(world.main->getParent(), ComponentKeys::transform);
    transform.setScale(Vec4(8, 1, 8, 0));
    world.main->updateSize();
    world.frames(2);
    EXPECT_EQ(pictureOf(*world.main),
              "........\n........\n........\n........\n........\n.....o..\n........\n........\n");
    Walkways::ofMap(world.map)->murder();
    world.frames(1);
    EXPECT_EQ(pictureOf(*world.main).find('o'), std::string::npos);
}

TEST(Walkways, ChangesTakeNoMemoryAndSoundHearsNone)
{
    WalkWorld world(12, 12);
    const Handle<Entity> crate = world.crate(0, 0);
    SoundWays &sound = *world.level.component<SoundWays>(world.map, "soundWays").lookup();
    world.frames(2);
    world.ways();
    world.frames(3);
    const float before = sound.hear(Vec4(-3, 1.5f, 0, 1), Vec4(3, 1.5f, 0, 1)).gain;
    float x = -4;
    const auto step = [&]
    {
        x = x > 3 ? -4 : x + 0.1f;
        world.move(crate, x, std::sin(x));
        world.ways().doFrame();
    };
    for (int i = 0; i < 200; ++i)
        step();
    EXPECT_EQ(allocationsOf(step, 100), 0u);
    world.move(crate, 0, 0);
    world.frames(80);
    EXPECT_EQ(sound.hear(Vec4(-3, 1.5f, 0, 1), Vec4(3, 1.5f, 0, 1)).gain, before);
}

TEST(WalkPlan, AfterAnyChangesSaysWhatANewOneSays)
{
    for (unsigned seed = 1; seed <= 30; ++seed)
    {
        Dice dice(seed);
        const float edge = seed % 2 ? 1.f : 0.5f;
        const int cols = 3 + dice.below(12), rows = 3 + dice.below(12);
        WalkPlan plan;
        plan.layOut(cols, rows, edge);
        std::vector<std::pair<WalkPlan::Number, Footprint>> standing;
        for (int change = 0; change < 60; ++change)
        {
            if (!standing.empty() && dice.oneIn(3))
            {
                const std::size_t gone = static_cast<std::size_t>(dice.below(static_cast<int>(standing.size())));
                plan.remove(standing[gone].first);
                standing.erase(standing.begin() + static_cast<std::ptrdiff_t>(gone));
            }
            else
            {
                Footprint shape;
                const float angle = static_cast<float>(dice.below(63)) / 10.f;
                shape.along = PlanPoint(std::cos(angle), std::sin(angle));
                shape.middle = PlanPoint(static_cast<float>(dice.below(cols * 10)) * edge / 10.f,
                                         static_cast<float>(dice.below(rows * 10)) * edge / 10.f);
                shape.halfAlong = static_cast<float>(1 + dice.below(20)) / 10.f;
                shape.halfAcross = static_cast<float>(1 + dice.below(8)) / 20.f;
                standing.emplace_back(plan.add(shape), shape);
            }
            if (dice.oneIn(4))
                plan.settle();
        }
        plan.settle();
        WalkPlan fresh;
        fresh.layOut(cols, rows, edge);
        for (const auto &[number, shape] : standing)
            fresh.add(shape);
        fresh.settle();
        for (int z = 0; z < rows; ++z)
            for (int x = 0; x < cols; ++x)
            {
                ASSERT_EQ(plan.roomAt(x, z), fresh.roomAt(x, z)) << seed << ": " << x << ", " << z;
                for (int i = 0; i < SquareGrid::NUM_NEIGHBORS; ++i)
                    ASSERT_EQ(plan.roomOfStep(x, z, i), fresh.roomOfStep(x, z, i)) << seed << ": " << x << ", " << z;
            }
    }
}

TEST(WalkPlan, AChangeCostsTheCellsThatItTouches)
{
    WalkPlan plan;
    plan.layOut(500, 500, 1.f);
    Footprint crate;
    crate.middle = PlanPoint(250, 250);
    crate.halfAlong = crate.halfAcross = 0.5f;
    const WalkPlan::Number number = plan.add(crate);
    plan.settle();
    plan.remove(number);
    crate.middle.x += 0.1f;
    plan.add(crate);
    plan.settle();
    EXPECT_LT(plan.getSettled().size(), 40u);
}

TEST(WalkPlan, ALineWalksTheCellsUnderItAndAFootprintKnowsItsDistance)
{
    for (unsigned seed = 1; seed <= 200; ++seed)
    {
        Dice dice(seed);
        const auto number = [&] { return static_cast<float>(dice.below(1000)) / 100.f; };
        WalkPlan plan;
        plan.layOut(11, 11, 1.f);
        const PlanPoint from(number(), number()), to(number(), number());
        std::vector<std::pair<int, int>> cells;
        EXPECT_TRUE(plan.walkLine(from, to, [&](int x, int z) { return cells.emplace_back(x, z), true; }));
        Footprint shape;
        const float angle = number();
        shape.along = PlanPoint(std::cos(angle), std::sin(angle));
        shape.middle = PlanPoint(number(), number());
        shape.halfAlong = number() / 5;
        shape.halfAcross = number() / 5;
        float nearest = 1000.f;
        for (int i = 0; i <= 2000; ++i)
        {
            const PlanPoint at = from + (to - from) * (static_cast<float>(i) / 2000.f);
            nearest = std::min(nearest, shape.distanceTo(at));
            const std::pair cell(plan.cellAlong(at.x), plan.cellAlong(at.z));
            const float offX = std::fabs(at.x - static_cast<float>(cell.first)),
                        offZ = std::fabs(at.z - static_cast<float>(cell.second));
            const bool isClear = std::max(offX, offZ) < 0.499f; // of the border to the next cell
            ASSERT_TRUE(!isClear || std::find(cells.begin(), cells.end(), cell) != cells.end()) << seed;
        }
        ASSERT_NEAR(shape.distanceTo(from, to), nearest, 0.01f) << seed;
    }
}
