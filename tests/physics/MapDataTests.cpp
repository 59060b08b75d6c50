#include "physics/grid/MapDataComponent.h"

#include "physics/grid/SquareGrid.h"
#include "physics/grid/PartitioningGrid.h"
#include "physics/PhysicsWorld.h"
#include "support/AllocationCount.h"

#include "engine/entities/ComponentOf.h"
#include "engine/debug/DebugCollector.h"
#include "engine/debug/GlobalConfigSystem.h"

#include <gtest/gtest.h>

#include <cmath>

namespace
{
/// A map that derives its children from its size. No scripts run, so it has neither floor nor ceiling.
struct DerivedWorld
{
    explicit DerivedWorld(Vec4 scale, Vec4 centre = Vec4(0, 0, 0, 1)) : map(level.map("map", centre, scale))
    {
        transform = componentOf<TransformComponent>(map, SCS("transform"));
        data = level.component<MapDataComponent>(map, "mapData").lookup().ptr;
    }
    SquareGrid &grid(const char *name = ".MapData_mainPathGrid")
    {
        return *componentOf<SquareGrid>(map.lookup()->getChild(String::copyFrom(name)), SCS("grid"));
    }
    PartitioningGrid &partitioning() { return *PartitioningGrid::ofMap(map).lookup(); }

    TestLevel level;
    Handle<MapRootEntity> map;
    TransformComponent *transform;
    MapDataComponent *data;
};
} // namespace

TEST(MapData, DerivesItsChildrenFromTheMapsPlaceAndSize)
{
    DerivedWorld world(Vec4(12.5f, 4, 9, 0), Vec4(100, 2, -50, 1));
    world.data->setGridCellSize(0.5f);
    world.data->setGridCellSize(-1.f);
    world.data->onLoadComplete();
    const std::size_t children = world.map.lookup()->getChildCount();
    world.data->updateSize();
    EXPECT_EQ(world.map.lookup()->getChildCount(), children) << "nothing is made twice";
    world.data->constructGrid(SCS(".MapData_heat")); // begins like the main grid
    for (const char *name :
         {".MapData_mainPathGrid", ".MapData_pathSaturationGrid", ".MapData_flowGrid", ".MapData_heat"})
    {
        SquareGrid &grid = world.grid(name);
        EXPECT_EQ(std::pair(grid.getGridCols(), grid.getGridRows()), std::pair(25, 18)) << name;
        EXPECT_EQ(grid.getCellWorldCoords(12, 9), Vec4(100, 0, -50, 1)) << "on the map's lower face";
    }
    EXPECT_EQ(world.partitioning().getPosition(), Vec4(100, 2, -50, 1));
    EXPECT_EQ(world.partitioning().getSize(), Vec4(12.5f, 4, 9, 0));

    world.transform->setPosition(Vec4(7, 7, 7, 1));
    for (const Vec4 &scale : {Vec4(1, 1, 1, 0), Vec4(-12, 4, 9, 0), Vec4(12, 4, NAN, 0)}) // say nothing, or nonsense
    {
        world.transform->setScale(scale);
        world.level.frame();
        EXPECT_EQ(world.partitioning().getSize(), Vec4(12.5f, 4, 9, 0));
        EXPECT_EQ(world.grid().getCellWorldCoords(12, 9), Vec4(100, 0, -50, 1));
    }
}

TEST(MapData, WithoutAUsableSizeHasGridsAndWithoutHeightHasNoCeiling)
{
    DerivedWorld world(Vec4(12, 4, NAN, 0));
    const std::size_t told = countLogLines("The map map says nothing of its size");
    world.data->onLoadComplete();
    EXPECT_EQ(countLogLines("The map map says nothing of its size"), told + 1);
    EXPECT_TRUE(PartitioningGrid::ofMap(world.map).isValid());
    EXPECT_EQ(world.grid().getGridCols(), 1);
    for (const char *name : {"", "..", "../map"})
        EXPECT_FALSE(world.data->constructGrid(String::copyFrom(name)).isValid()) << name;

    const Handle<Entity> ceiling = world.level.entity(".MapData_ceiling", world.map);
    world.transform->setScale(Vec4(12, 4, 9, 0));
    world.level.frame();
    EXPECT_TRUE(ceiling.isValid());
    world.transform->setScale(Vec4(12, 0, 9, 0));
    world.level.frame();
    EXPECT_FALSE(ceiling.isValid());
}

TEST(MapData, VolumesAreFoundWhereTheyStandAfterTheMapHasChangedUnderThem)
{
    DerivedWorld world(Vec4(20, 3, 20, 0));
    for (const float x : {-8.f, 0.f, 8.f})
    {
        const Handle<Entity> wall = world.level.entity("wall", world.map);
        world.level.transform(wall, Vec4(x, 0, 0, 1));
        const auto volume = world.level.component<BoundingVolume>(wall, "boundingVolume").lookup();
        volume->setVolumeType(BoundingVolume::BV_WALL);
        volume->setHitBox(Vec4(1, 3, 1, 0));
    }
    for (const float extent : {20.f, 60.f, 22.f, 90.f})
    {
        world.transform->setScale(Vec4(extent, 3, extent, 0));
        world.transform->setPosition(Vec4(extent / 20.f, 0, 1, 1));
        world.level.frame();
        world.level.frame();
        for (const float x : {-8.f, 0.f, 8.f})
            EXPECT_TRUE(world.partitioning().checkSegment(Vec4(x, 0, -3, 1), Vec4(0, 0, 6, 0)).volume.isValid())
                << x << " in " << extent;
    }
}

TEST(MapData, FollowsThePlayerFromCellToCellAndTheWaypointsInOrder)
{
    DerivedWorld world(Vec4(10, 3, 10, 0));
    world.level.frame();
    EXPECT_EQ(world.data->getPlayerHex(), GridCell()) << "there is no player yet";
    const auto place = world.level.transform(world.level.entity("Player"), Vec4(0, 0, 0, 1)).lookup();
    const auto movedTo = [&](float x)
    {
        place->setPosition(Vec4(x, 1, 0, 1));
        EXPECT_EQ(allocationsOf([&] { world.data->doFrame(); }), 0u);
        return std::pair(world.data->hasPlayerMoved(), world.data->getPlayerHex().getX());
    };
    EXPECT_EQ(movedTo(0.f), std::pair(true, 5));
    EXPECT_EQ(movedTo(0.3f), std::pair(false, 5));
    EXPECT_EQ(movedTo(40.f), std::pair(true, 45)) << "off the grid";

    const HexCont way{world.grid().getCell(1, 2), world.grid().getCell(30, 4), world.grid().getCell(3, 4)};
    world.data->setGuideWaypoints(way);
    world.data->wayPointReached();
    EXPECT_EQ(world.data->getNextWaypoint(), way[1]);

    auto &collector =
        *world.level.component<DebugCollectorComponent>(world.level.entity("tools"), "debugDrawCollector").lookup();
    GlobalConfigSystem &config = getSystemDeref<GlobalConfigSystem>();
    config.setDebugDrawEnabled(true);
    collector.doFrame();
    EXPECT_TRUE(collector.getWorldGeometry().lines.empty());
    config.setDebugDrawPathInfoEnabled(true);
    collector.doFrame();
    EXPECT_EQ(collector.getWorldGeometry().lines.size(), 2u) << "posts, but none off the grid";
}
