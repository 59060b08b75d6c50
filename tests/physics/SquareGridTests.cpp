#include "physics/grid/SquareGrid.h"

#include "engine/debug/DebugCollector.h"
#include "engine/debug/GlobalConfigSystem.h"
#include "physics/PhysicsWorld.h"
#include "port/win32/Diagnostics.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>

namespace
{

/// A map with a square grid of some size, loaded.
struct GridWorld
{
    explicit GridWorld(Vec4 scale, float cellSize = 1.f)
    {
        const Handle<MapRootEntity> map = level.map("map", Vec4(100, 0, 50, 1), Vec4(40, 10, 30, 0));
        entity = level.entity(".MapData_mainPathGrid", map);
        transform = level.transform(entity).lookup().ptr;
        transform->setScale(scale);
        grid = level.component<SquareGrid>(entity, "grid").lookup().ptr;
        EXPECT_EQ(map.lookup()->getDescendantByPath(SCS(".MapData_mainPathGrid/grid")), getHandle(grid));
        grid->setCellSize(cellSize);
        grid->onLoadComplete();
    }
    TestLevel level;
    Handle<Entity> entity;
    TransformComponent *transform;
    SquareGrid *grid;
};

} // namespace

TEST(SquareGrid, TellsPlacesAndCellsApartHoweverItIsTurned)
{
    for (unsigned seed = 1; seed <= 40; ++seed)
    {
        Chance chance(seed);
        const float edge = chance(0.1f, 4.f);
        const int cols = 1 + chance.below(12), rows = 1 + chance.below(12);
        GridWorld world(Vec4((cols + 0.5f) * edge, 1, (rows + 0.5f) * edge, 0), edge);
        SquareGrid &grid = *world.grid;
        ASSERT_EQ(std::pair(grid.getGridCols(), grid.getGridRows()), std::pair(cols, rows));
        const Vec4 origin(chance(-50, 50), chance(-5, 5), chance(-50, 50), 1);
        const Quaternion turn = seed % 2 ? chance.turn() : Quaternion(1, 0, 0, 0);
        world.transform->setPosition(origin);
        world.transform->setOrientation(turn);
        for (int i = 0; i < 60; ++i)
        {
            const int x = chance.below(cols), z = chance.below(rows), otherX = chance.below(cols);
            const float partX = chance(-0.49f, 0.49f), partZ = chance(-0.49f, 0.49f);
            const Vec4 inGrid((x - cols / 2 + partX) * edge, chance(-2, 2), (z - rows / 2 + partZ) * edge, 0);
            const GridCell found = grid.getCellFromPoint(origin + turn.generateRotation() * inGrid);
            ASSERT_EQ(found, grid.getCell(x, z)) << seed;
            const Vec4 centre((x - cols / 2) * edge, 0, (z - rows / 2) * edge, 0);
            ASSERT_LT((found.getWorldCoords() - origin - turn.generateRotation() * centre).magnitude(), 1e-3f) << seed;
            const GridCell other = grid.getCell(otherX, 0);
            const double straight = std::hypot(x - otherX, z), around = std::abs(x - otherX) + z;
            ASSERT_NEAR(found.gridDistance(other), straight, 1e-4);
            ASSERT_TRUE(seed % 2 || std::fabs(found.worldDistance(other) - straight * edge) < 1e-3);
            ASSERT_TRUE(seed % 2 || std::fabs(found.worldManhattanDistance(other) - around * edge) < 1e-3);
        }
    }
}

TEST(SquareGrid, HasNoCellForAPointOutsideExceptHalfACellBeforeTheNearEdge)
{
    GridWorld world(Vec4(5, 1, 4, 0));
    SquareGrid &grid = *world.grid;
    EXPECT_EQ(grid.getCellFromPoint(Vec4(-3.4f, 0, -3.4f, 1)), grid.getCell(0, 0));
    for (const Vec4 &outside : {Vec4(-3.6f, 0, 0, 1), Vec4(2.6f, 0, 0, 1), Vec4(0, 0, -3.6f, 1), Vec4(0, 0, 1.6f, 1)})
        EXPECT_FALSE(grid.getCellFromPoint(outside).isValid()) << outside.toString().toCString();
    for (const float far : {NAN, INFINITY, -INFINITY, 1e38f, -1e38f})
        EXPECT_FALSE(grid.getCellFromPoint(Vec4(far, 0, 0, 1)).isValid()) << far;
}

TEST(SquareGrid, NeighboursAreTheCellsOneStepAwayThatTheGridHas)
{
    GridWorld world(Vec4(6, 1, 4, 0));
    SquareGrid &grid = *world.grid;
    for (int z = -2; z < 6; ++z)
        for (int x = -2; x < 8; ++x)
        {
            HexCont expected;
            for (const auto &[dx, dz] : {std::pair(1, 0), std::pair(1, -1), std::pair(0, -1), std::pair(-1, -1),
                                         std::pair(-1, 0), std::pair(-1, 1), std::pair(0, 1), std::pair(1, 1)})
                if (const GridCell cell = grid.getCell(x + dx, z + dz); cell.isValid())
                    expected.push_back(cell);
            EXPECT_EQ(grid.getCell(x, z).getValidNeighbors(), expected) << x << ' ' << z;
        }
    port::setMessageBoxPresenter([](HWND, const char *, const char *, UINT) { return IDOK; });
    EXPECT_EQ(grid.getCellNeighbor(0, 0, SquareGrid::NUM_NEIGHBORS), GridCell());
    port::setMessageBoxPresenter(nullptr);
    EXPECT_EQ(countLogLines("Invalid value passed to SquareGrid::getCellNeighbor"), 1u);
}

TEST(SquareGrid, KeepsTheValuesOfSurvivingCellsAndAllOfThemAtASizeThatMakesNoSense)
{
    GridWorld world(Vec4(3, 1, 3, 0));
    SquareGrid &grid = *world.grid;
    Chance chance(7);
    std::map<std::pair<int, int>, float> plain;
    const auto resize = [&](float x, float z) { world.transform->setScale(Vec4(x, 1, z, 0)), grid.updateSize(); };
    for (int round = 1; round <= 40; ++round)
    {
        resize(chance(0, 9), chance(0, 9));
        std::erase_if(plain, [&](const auto &old) { return !grid.isCellInBounds(old.first.first, old.first.second); });
        for (int i = 0; i < 10; ++i)
        {
            const int x = chance.below(12) - 1, z = chance.below(12) - 1;
            const float value = chance(1, 2);
            grid.setCellFloatValue(x, z, value);
            if (grid.isCellInBounds(x, z))
                plain[{x, z}] = value;
        }
        for (const float bad : {NAN, INFINITY, -4.f, 1e30f, 5000.f})
            resize(bad, 5000);
        for (int z = -1; z < 11; ++z)
            for (int x = -1; x < 11; ++x)
                ASSERT_EQ(grid.getCellValue(x, z).x, plain[std::pair(x, z)]) << round;
    }
    EXPECT_EQ(countLogLines("keeps the cells that it has"), 40u * 5u);
    for (const float bad : {0.f, -1.f, NAN, INFINITY})
        grid.setCellSize(bad);
    EXPECT_EQ(grid.getCellSize(), 1.f);
}

TEST(GridCell, OfNoGridOrOutsideOfItReadsNothingAndSaysWhyItDoesNotWrite)
{
    GridWorld world(Vec4(2, 1, 2, 0));
    const GridCell inside = world.grid->getCell(1, 0), outside = world.grid->getCell(2, 0);
    EXPECT_TRUE(inside.setValue(Vec4(1, 2, 3, 4)).succeeded() && inside.setFloatValue(2, 5).succeeded());
    EXPECT_EQ(world.grid->getCellRef(1, 0), Vec4(1, 2, 5, 4));
    EXPECT_EQ(inside.setFloatValue(4, 5).getCode(), ErrorCode::OUT_OF_BOUNDS);
    EXPECT_EQ(outside.setValue(Vec4(1, 1, 1, 1)).getCode(), ErrorCode::OUT_OF_BOUNDS);
    world.grid->getCellRef(2, 0) = Vec4(9, 9, 9, 9);
    EXPECT_EQ(world.grid->getCellRef(2, 0), Vec4());
    EXPECT_TRUE(std::isnan(outside.getFloatValue()));
    EXPECT_EQ(outside.getWorldCoords(), Vec4());
    world.entity.lookup()->murder();
    world.level.frame();
    EXPECT_EQ(inside.setFloatValue(1).getCode(), ErrorCode::BAD_HANDLE);
    EXPECT_TRUE(std::isnan(inside.getFloatValue()));
    EXPECT_EQ(inside.getValue(), Vec4());
}

TEST(SquareGrid, DrawsItsValuesInTheWorldBehindItsSwitch)
{
    GridWorld world(Vec4(2, 1, 1, 0));
    world.grid->setDebugColor1(Vec4(1, 0, 0, 1));
    world.grid->setCellValue(1, 0, Vec4(1, 0, 0, 0));
    auto &collector =
        *world.level.component<DebugCollectorComponent>(world.level.entity("tools"), "debugDrawCollector").lookup();
    GlobalConfigSystem &config = getSystemDeref<GlobalConfigSystem>();
    config.setDebugDrawEnabled(true);
    collector.doFrame();
    EXPECT_TRUE(collector.getWorldGeometry().lines.empty());
    config.setDebugDrawGridsEnabled(true);
    collector.doFrame();
    ASSERT_EQ(collector.getWorldGeometry().lines.size(), 4u) << "the cell of value 0 has a colour without alpha";
    EXPECT_EQ(collector.getWorldGeometry().lines[0].from, Vec4(-0.4f, 0.02f, -0.4f, 1))
        << "where the map's models are drawn";
    world.grid->setValueRepresentation(SquareGrid::VECTORFIELD);
    collector.doFrame();
    ASSERT_EQ(collector.getWorldGeometry().lines.size(), 3u);
    EXPECT_EQ(collector.getWorldGeometry().lines[0].to, Vec4(0.45f, 0.02f, 0, 1));
}
