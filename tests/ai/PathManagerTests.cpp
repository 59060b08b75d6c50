#include "LiteralPaths.h"
#include "PathWorld.h"

#include "engine/debug/GlobalConfigSystem.h"
#include "support/AllocationCount.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <queue>
#include <utility>

namespace
{

/// Length of the shortest way between two cells, in steps; -1 for none.
int shortestWay(const SquareGrid &grid, const GridCell &from, const GridCell &to)
{
    std::vector<int> steps(static_cast<std::size_t>(grid.getGridCols() * grid.getGridRows()), -1);
    const auto stepsTo = [&](const GridCell &cell) -> int &
    { return steps[static_cast<std::size_t>(cell.getZ() * grid.getGridCols() + cell.getX())]; };
    std::queue<GridCell> waiting({from});
    stepsTo(from) = 0;
    for (; !waiting.empty(); waiting.pop())
        for (const GridCell &next : waiting.front().getValidNeighbors())
            if (isWalkable(next) && stepsTo(next) < 0)
            {
                stepsTo(next) = stepsTo(waiting.front()) + 1;
                waiting.push(next);
            }
    return stepsTo(to);
}

void fillAtRandom(PathWorld &world, Dice &dice, int blockedPercent, bool crowded)
{
    for (int z = 0; z < world.main->getGridRows(); ++z)
        for (int x = 0; x < world.main->getGridCols(); ++x)
        {
            world.main->setCellFloatValue(x, z, dice.below(100) < blockedPercent ? 1.f : 0.f);
            if (crowded && dice.oneIn(3))
                world.saturation->setCellFloatValue(x, z, static_cast<float>(dice.below(60)) / 7.f);
        }
}

} // namespace

TEST(PathManager, FindsWhatTheStepByStepSearchFindsOnAnyGrid)
{
    std::size_t found = 0, reopened = 0;
    for (unsigned seed = 1; seed <= 60; ++seed)
    {
        Dice dice(seed);
        const int cols = 1 + dice.below(24), rows = 1 + dice.below(24);
        PathWorld world(cols, rows);
        SquareGrid &twin = *world.grid("twin", cols, rows);
        fillAtRandom(world, dice, dice.below(45), seed % 2 == 0);
        for (int z = 0; z < rows; ++z)
            for (int x = 0; x < cols; ++x)
                twin.setCellFloatValue(x, z, world.saturation->getCellFloatValue(x, z));
        LiteralPaths literal(*world.main, twin);
        const Handle<Entity> creature = world.creature(0, 0);
        for (int round = 0; round < 12; ++round)
        {
            const int x = dice.below(cols), z = dice.below(rows), toX = dice.below(cols), toZ = dice.below(rows);
            const bool bands = dice.oneIn(2), saturates = dice.oneIn(2);
            componentOf<TransformComponent>(creature, ComponentKeys::transform)
                ->setPosition(world.main->getCellWorldCoords(x, z));
            world.ask(creature, toX, toZ, RP_Normal, bands, saturates);
            const int slices = world.settle(creature);
            const HexCont expected =
                literal.find(world.main->getCell(x, z), world.main->getCell(toX, toZ), bands, saturates, 10.f);
            PathComponent &path = PathWorld::path(creature);
            ASSERT_EQ(path.requestStatus(), expected.empty() ? PS_Failed : PS_Succeeded) << seed;
            ASSERT_EQ(slices, literal.slices + 1) << seed; // the last one hands over
            if (!expected.empty())
            {
                ASSERT_EQ(path.getPath(), expected) << seed;
                ++found;
            }
        }
        reopened += literal.reopened;
        for (int z = 0; z < rows; ++z)
            for (int x = 0; x < cols; ++x)
                ASSERT_EQ(world.saturation->getCellFloatValue(x, z), twin.getCellFloatValue(x, z)) << seed;
    }
    EXPECT_GT(found, 300u);
    EXPECT_GT(reopened, 0u) << "no seed has tried that a cell is reopened";
}

TEST(PathManager, CellsThatChangeUnderASearchAreSeenAsByTheStepByStepSearch)
{
    std::size_t found = 0, otherwise = 0;
    for (unsigned seed = 1; seed <= 80; ++seed)
    {
        Dice dice(seed);
        constexpr int SIZE = 24;
        PathWorld world(SIZE, SIZE);
        SquareGrid &twin = *world.grid("twin", SIZE, SIZE), &crowds = *world.grid("twinCrowds", SIZE, SIZE);
        fillAtRandom(world, dice, 40, false);
        for (int cell = 0; cell < SIZE * SIZE; ++cell)
            twin.setCellFloatValue(cell % SIZE, cell / SIZE, world.main->getCellFloatValue(cell % SIZE, cell / SIZE));
        const auto change = [seed](SquareGrid &main, SquareGrid &saturation, int slice)
        {
            Dice changes(1000 * seed + static_cast<unsigned>(slice));
            for (int i = 0; i < 80; ++i)
            {
                const int x = changes.below(SIZE), z = changes.below(SIZE);
                main.setCellFloatValue(x, z, main.getCellFloatValue(x, z) == 0.f ? 1.f : 0.f);
                saturation.setCellFloatValue(x, z, static_cast<float>(changes.below(3)));
            }
        };
        LiteralPaths literal(twin, crowds);
        const HexCont unchanged =
            literal.find(twin.getCell(0, 0), twin.getCell(SIZE - 1, SIZE - 1), false, false, 10.f);
        literal.afterSlice = [&](int slice) { change(twin, crowds, slice); };
        const HexCont expected = literal.find(twin.getCell(0, 0), twin.getCell(SIZE - 1, SIZE - 1), false, false, 10.f);

        const Handle<Entity> creature = world.creature(0, 0);
        world.ask(creature, SIZE - 1, SIZE - 1);
        for (int slice = 1; PathWorld::path(creature).isRequestPending(); ++slice)
        {
            world.manager().processRequest();
            change(*world.main, *world.saturation, slice);
        }
        const HexCont path = PathWorld::path(creature).getPath();
        ASSERT_EQ(path.size(), expected.size()) << seed;
        for (std::size_t i = 0; i < path.size(); ++i)
            ASSERT_TRUE(path[i].getX() == expected[i].getX() && path[i].getZ() == expected[i].getZ()) << seed;
        found += !path.empty();
        otherwise += expected != unchanged;
    }
    EXPECT_GT(found, 20u);
    EXPECT_GT(otherwise, 20u) << "the changes have changed no path";
}

TEST(PathManager, PathsAreWalkableConnectedAndNoLongerThanTheHeuristicAllows)
{
    for (unsigned seed = 1; seed <= 40; ++seed)
    {
        Dice dice(seed);
        PathWorld world(8 + dice.below(40), 8 + dice.below(40));
        fillAtRandom(world, dice, dice.below(40), false);
        const GridCell from = world.main->getCell(dice.below(8), dice.below(8));
        const GridCell to = world.main->getCell(dice.below(8), dice.below(8));
        world.main->setCellFloatValue(from.getX(), from.getZ(), 0.f);
        const Handle<Entity> creature = world.creature(from.getX(), from.getZ());
        world.ask(creature, to.getX(), to.getZ());
        world.settle(creature);
        const HexCont path = PathWorld::path(creature).getPath();
        const int shortest = isWalkable(to) ? shortestWay(*world.main, from, to) : from == to ? 0 : -1;
        ASSERT_EQ(path.empty(), shortest < 0) << seed;
        if (path.empty())
            continue;
        ASSERT_EQ(path.front(), to) << seed;
        ASSERT_EQ(path.back(), from) << seed;
        for (std::size_t i = 1; i < path.size(); ++i)
        {
            ASSERT_TRUE(isWalkable(path[i - 1])) << seed;
            ASSERT_LE(std::abs(path[i].getX() - path[i - 1].getX()), 1) << seed;
            ASSERT_LE(std::abs(path[i].getZ() - path[i - 1].getZ()), 1) << seed;
        }
        // What is taken to be left is twice the truth at most, so that a path is twice the shortest one at most.
        ASSERT_LE(path.size() - 1, static_cast<std::size_t>(2 * shortest)) << seed;
    }
}

TEST(PathManager, ServesTheUrgentFirstAndEqualsInOrderAndAgesThem)
{
    PathWorld world(4, 4);
    std::vector<Handle<Entity>> creatures;
    for (const int priority : {0, 2, 0, 1, 2, 7, -1})
    {
        creatures.push_back(world.creature(0, 0));
        world.ask(creatures.back(), 3, 3, priority);
    }
    std::vector<std::size_t> order;
    for (int i = 0; i < world.manager().getRequestCount(); ++i)
        order.push_back(static_cast<std::size_t>(
            std::find(creatures.begin(), creatures.end(), world.manager().getRequest(i).hEntity) - creatures.begin()));
    EXPECT_EQ(order, (std::vector<std::size_t>{5, 1, 4, 3, 0, 2, 6}));

    // A stopped search lets the others wait: 64 ticks of 4096 a frame are 1/64 s.
    world.manager().setSingleStep(true);
    world.manager().setStepAmount(1000);
    for (int frame = 0; frame < 33; ++frame)
        world.level.frame();
    EXPECT_EQ(world.manager().getRequestCount(), 6);
    EXPECT_EQ(world.manager().getRequest(2).priority, 2) << "one that waited with 1";
    EXPECT_EQ(world.manager().getRequest(3).priority, 1) << "one that waited with 0";
    EXPECT_EQ(world.manager().getRequest(5).priority, 0) << "one that waited with -1";
    EXPECT_LT(world.manager().getRequest(3).timeInQueue, 1.0 / 64);
    for (int frame = 0; frame < 33; ++frame)
        world.level.frame();
    EXPECT_EQ(world.manager().getRequest(4).priority, RP_Urgent) << "a second at most";
    EXPECT_EQ(world.manager().getFrameCount(), 66);
}

TEST(PathManager, GoesThroughItsStatesAndDeliversOneFrameLater)
{
    PathWorld world(4, 1);
    PathManager &manager = world.manager();
    const Handle<Entity> creature = world.creature(0, 0);
    PathComponent &path = PathWorld::path(creature);
    EXPECT_EQ(path.requestStatus(), PS_Unknown);
    world.ask(creature, 3, 0);
    EXPECT_EQ(manager.getPrevStatus(), PS_Unknown);
    manager.processRequest();
    EXPECT_EQ(manager.getPrevStatus(), PS_Succeeded);
    EXPECT_TRUE(path.isRequestPending());
    manager.processRequest();
    EXPECT_EQ(manager.getPrevStatus(), PS_Unknown);
    EXPECT_FALSE(path.isRequestPending());
    EXPECT_EQ(path.requestStatus(), PS_Succeeded);
    for (const int x : {0, 1, 2, 3})
    {
        EXPECT_TRUE(path.pathRemaining());
        EXPECT_EQ(path.getNextPathStep(), world.main->getCell(x, 0));
    }
    EXPECT_FALSE(path.pathRemaining());
    EXPECT_EQ(path.getNextPathStep(), GridCell());

    world.ask(creature, 0, 0);
    EXPECT_EQ(world.settle(creature), 2);
    EXPECT_EQ(path.getPath(), HexCont{world.main->getCell(0, 0)}) << "from where one stands to there";

    world.ask(creature, 1, 0);
    path.cancelPathRequest();
    EXPECT_TRUE(path.wasPathCancelled());
    EXPECT_EQ(path.requestStatus(), PS_Unknown);
    EXPECT_EQ(manager.getRequestCount(), 0);
}

TEST(PathManager, WhatCannotBeReachedFailsAndTheNextIsServed)
{
    PathWorld world(5, 5);
    world.draw({"..#..", "..#..", "###..", ".....", "....."});
    TestLevel &level = world.level;
    const Handle<MapRootEntity> elsewhere = level.map("elsewhere", Vec4(100, 0, 0, 1), Vec4(4, 4, 4, 0));
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const Handle<Entity> inside = world.creature(0, 0), outside = world.creature(9, 9), lost = world.creature(0, 0);
    const Handle<Entity> gridless = level.entity("gridless", elsewhere), served = world.creature(4, 4);
    level.transform(gridless);
    level.component<PathComponent>(gridless, "path");
    componentOf<TransformComponent>(lost, ComponentKeys::transform)->setPosition(Vec4(nan, nan, nan, nan));
    const auto outcome = [&](const Handle<Entity> &creature, const GridCell &cell)
    {
        PathWorld::path(creature).submitPathRequest(PathRequest(creature, cell));
        world.settle(creature);
        return PathWorld::path(creature).requestStatus();
    };
    EXPECT_EQ(outcome(inside, world.main->getCell(4, 4)), PS_Failed) << "walled in";
    EXPECT_EQ(outcome(inside, world.main->getCell(2, 0)), PS_Failed) << "blocked";
    EXPECT_EQ(outcome(inside, world.main->getCell(std::numeric_limits<int>::max(), -5)), PS_Failed) << "off the grid";
    EXPECT_EQ(outcome(inside, GridCell()), PS_Failed) << "no cell";
    EXPECT_EQ(outcome(inside, world.saturation->getCell(1, 1)), PS_Failed) << "of another grid";
    EXPECT_EQ(outcome(outside, world.main->getCell(4, 4)), PS_Failed) << "from off the grid";
    EXPECT_EQ(outcome(lost, world.main->getCell(4, 4)), PS_Failed) << "from nowhere";
    EXPECT_EQ(outcome(gridless, world.main->getCell(4, 4)), PS_Failed) << "on a map without a grid";
    EXPECT_EQ(outcome(served, world.main->getCell(0, 4)), PS_Succeeded);
}

TEST(PathManager, ShowsTheCellsOfASearchRowByRow)
{
    PathWorld world(64, 64);
    GlobalConfigSystem &config = getSystemDeref<GlobalConfigSystem>();
    config.setDebugDrawEnabled(true);
    config.setDebugDrawPathfindingData(true);
    const Handle<Entity> creature = world.creature(20, 20);
    world.ask(creature, 3, 50);
    world.level.frame();
    config.setDebugDrawEnabled(false);
    const HexCont open = PathWorld::path(creature).getDebugOpenNodes(),
                  closed = PathWorld::path(creature).getDebugClosedNodes();
    const auto isBefore = [](const GridCell &one, const GridCell &other)
    { return std::pair(one.getZ(), one.getX()) < std::pair(other.getZ(), other.getX()); };
    EXPECT_EQ(closed.size(), static_cast<std::size_t>(PathManager::MAX_PASSES_PER_FRAME));
    EXPECT_EQ(open.size() + closed.size(), static_cast<std::size_t>(world.manager().getPoolIndex()));
    EXPECT_TRUE(std::is_sorted(open.begin(), open.end(), isBefore));
    EXPECT_TRUE(std::is_sorted(closed.begin(), closed.end(), isBefore));
}

TEST(PathManager, WhoDiesGetsNothingAndHoldsNobodyUp)
{
    PathWorld world(64, 64);
    const Handle<Entity> dying = world.creature(0, 0), waiting = world.creature(0, 0), last = world.creature(0, 0);
    const Handle<Entity> bare = world.level.entity("bare", world.map);
    world.ask(dying, 63, 40);
    world.ask(waiting, 1, 0);
    world.manager().submitRequest(PathRequest(bare, world.main->getCell(1, 1)));
    world.manager().submitRequest(PathRequest());
    world.ask(last, 2, 0);
    world.level.frame();
    EXPECT_EQ(world.manager().getPrevStatus(), PS_InProgress);
    dying.lookup()->murder();
    waiting.lookup()->murder();
    for (int frame = 0; frame < 6; ++frame)
        world.level.frame();
    EXPECT_EQ(PathWorld::path(last).requestStatus(), PS_Succeeded);
    EXPECT_EQ(world.manager().getRequestCount(), 0);
}

TEST(PathManager, GridsThatChangeOrDieUnderASearchEndItInOrder)
{
    for (const bool murders : {false, true})
    {
        PathWorld world(64, 64);
        const Handle<Entity> creature = world.creature(0, 0);
        world.draw({std::string(64, '.'), "#" + std::string(62, '.') + "#"});
        world.ask(creature, 63, 50);
        world.manager().processRequest();
        ASSERT_EQ(world.manager().getPrevStatus(), PS_InProgress);
        Dice dice(1);
        for (int change = 0; change < 40 && PathWorld::path(creature).isRequestPending(); ++change)
        {
            const auto entity = world.main->getParent().lookup();
            const Vec4 size(static_cast<float>(1 + dice.below(90)), 1, static_cast<float>(1 + dice.below(90)), 0);
            componentOf<TransformComponent>(world.main->getParent(), ComponentKeys::transform)->setScale(size);
            world.main->updateSize();
            if (murders)
                entity->murder();
            world.level.frame();
            if (murders)
                break;
        }
        world.settle(creature);
        EXPECT_FALSE(PathWorld::path(creature).isRequestPending());
        if (murders)
        {
            EXPECT_EQ(PathWorld::path(creature).requestStatus(), PS_Failed);
        }
    }
}

TEST(PathManager, ASearchThatNeedsMoreNodesThanThereAreFails)
{
    PathWorld world(400, 300);
    world.main->setCellFloatValue(399, 299, 1.f);
    const Handle<Entity> creature = world.creature(0, 0);
    world.ask(creature, 399, 299);
    world.settle(creature);
    EXPECT_EQ(PathWorld::path(creature).requestStatus(), PS_Failed);
    world.ask(creature, 30, 2);
    world.settle(creature);
    EXPECT_EQ(PathWorld::path(creature).requestStatus(), PS_Succeeded);
}

TEST(PathManager, ValuesThatAreNoCostsEndNoSearchInALoop)
{
    PathWorld world(12, 12);
    const float values[] = {
        std::numeric_limits<float>::quiet_NaN(), -1e30f, -1.f, std::numeric_limits<float>::infinity(), 1e38f,
        -std::numeric_limits<float>::infinity(), 0.f};
    Dice dice(5);
    for (int round = 0; round < 20; ++round)
    {
        for (int z = 0; z < 12; ++z)
            for (int x = 0; x < 12; ++x)
                world.saturation->setCellFloatValue(x, z, values[dice.below(7)]);
        const Handle<Entity> creature = world.creature(0, 0);
        world.ask(creature, 11, 11, RP_Normal, true, true);
        EXPECT_LT(world.settle(creature), 20000);
        EXPECT_EQ(PathWorld::path(creature).requestStatus(), PS_Succeeded);
    }
}

TEST(PathManager, TenThousandRequestsInAFrameAreOneSorting)
{
    PathWorld world(8, 8);
    const Handle<Entity> creature = world.creature(0, 0);
    for (int i = 0; i < 10000; ++i)
        world.ask(creature, i % 8, i / 8 % 8, i % 3);
    EXPECT_EQ(world.manager().getRequestCount(), 10000);
    for (int i = 0; i < 10000; ++i)
    {
        const int order = i < 3333 ? 3 * i + 2 : i < 6666 ? 3 * (i - 3333) + 1 : 3 * (i - 6666);
        ASSERT_EQ(world.manager().getRequest(i).destination, world.main->getCell(order % 8, order / 8 % 8)) << i;
    }
    for (int frame = 0; frame < 5000; ++frame)
        world.manager().doFrame();
    EXPECT_EQ(world.manager().getRequestCount(), 5000);
}

TEST(PathManager, SearchesOfTheSteadyStateTakeNoMemory)
{
    PathWorld world(40, 40);
    const Handle<Entity> creature = world.creature(0, 0);
    const auto search = [&]
    {
        world.ask(creature, 39, 30, RP_Normal, true, true);
        while (PathWorld::path(creature).isRequestPending())
            world.level.frame();
    };
    for (int i = 0; i < 60; ++i)
        search(); // until the traces have grown as they can
    EXPECT_EQ(allocationsOf(search, 10), 0u);
}

TEST(PathSaturation, SinksByItsFormulaWhenItIsAskedTo)
{
    PathWorld world(3, 1);
    world.saturation->setCellFloatValue(0, 0, 20.f);
    world.saturation->setCellFloatValue(1, 0, 0.5f);
    world.manager().updateSatMap(getHandle(world.saturation));
    EXPECT_FLOAT_EQ(world.saturation->getCellFloatValue(0, 0), 20.f - (2.25f - 2.f) * 0.16666667f);
    EXPECT_EQ(world.saturation->getCellFloatValue(1, 0), 0.f);
    EXPECT_EQ(world.saturation->getCellFloatValue(2, 0), 0.f);
    EXPECT_FALSE(world.manager().sampleSatMap(getHandle(world.saturation), world.saturation->getCell(0, 0)));
    EXPECT_TRUE(world.manager().sampleSatMap(getHandle(world.saturation), world.saturation->getCell(1, 0)));
    EXPECT_FALSE(world.manager().sampleSatMap(getHandle(world.saturation), world.saturation->getCell(3, 0)));
}

TEST(PathManager, StricterMovesAreKnown)
{
    PathWorld world(3, 3);
    world.draw({".#.", "...", "..."});
    PathNode node;
    node.hex = world.main->getCell(0, 0);
    EXPECT_TRUE(PathManager::moveCutsCorner(node, world.main->getCell(1, 1)));
    node.hex = world.main->getCell(1, 1);
    EXPECT_FALSE(PathManager::moveCutsCorner(node, world.main->getCell(2, 2)));
    EXPECT_FALSE(PathManager::moveCutsCorner(node, world.main->getCell(1, 0)));
    EXPECT_TRUE(PathManager::isValidMove(world.main->getCell(0, 0), world.main->getCell(2, 2)));
    EXPECT_FALSE(PathManager::isValidMove(world.main->getCell(0, 0), world.main->getCell(1, 0)));
    EXPECT_FALSE(PathManager::isValidMove(world.main->getCell(-1, 0), world.main->getCell(0, 0)));
}
