#include "DebugCounts.h"
#include "PhysicsWorld.h"

#include "physics/grid/MapDataComponent.h"
#include "engine/debug/GlobalConfigSystem.h"
#include "support/AllocationCount.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <limits>
#include <map>
#include <set>

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

typedef std::vector<Handle<BoundingVolume>> Volumes;

Volumes listOf(PartitioningGrid &grid, int x, int z, bool fixed = false)
{
    const VolumeList list = fixed ? grid.getStaticGridCellList(x, z) : grid.getGridCellList(x, z);
    return Volumes(list.begin(), list.end());
}

/// The grid's lists kept the plain way, one vector for each cell.
struct PlainGrid
{
    std::map<std::pair<int, int>, Volumes> cells;
    int columns, rows;

    template <class Function>
    void forCells(const Vec4 &min, const Vec4 &max, Function function)
    {
        for (int x = static_cast<int>(min.x); x <= static_cast<int>(max.x); ++x)
            for (int z = static_cast<int>(min.z); z <= static_cast<int>(max.z); ++z)
                if (x >= 0 && z >= 0 && x < columns && z < rows)
                    function(cells[{x, z}]);
    }
    void fill(const Vec4 &min, const Vec4 &max, Handle<BoundingVolume> vol)
    {
        forCells(min, max, [&](Volumes &list) { list.push_back(vol); });
    }
    void remove(const Vec4 &min, const Vec4 &max, Handle<BoundingVolume> vol)
    {
        forCells(min, max, [&](Volumes &list) { std::erase(list, vol); });
    }
    void moveRectangle(const Vec4 &oldMin, const Vec4 &oldMax, const Vec4 &min, const Vec4 &max,
                       Handle<BoundingVolume> vol)
    {
        std::set<Volumes *> before, after;
        forCells(oldMin, oldMax, [&](Volumes &list) { before.insert(&list); });
        forCells(min, max, [&](Volumes &list) { after.insert(&list); });
        for (Volumes *list : before)
            if (const auto first = std::find(list->begin(), list->end(), vol);
                !after.count(list) && first != list->end())
                list->erase(first);
        for (Volumes *list : after)
            if (!before.count(list))
                list->push_back(vol);
    }
    void resize(int newColumns, int newRows)
    {
        std::erase_if(cells,
                      [&](const auto &cell) { return cell.first.first >= newColumns || cell.first.second >= newRows; });
        columns = newColumns;
        rows = newRows;
    }
};

/// Area of a triangle within the cell (x, z), by clipping it with the cell's four sides.
double areaInCell(const Vec4 (&triangle)[3], int x, int z)
{
    const auto [left, right] = std::minmax({triangle[0].x, triangle[1].x, triangle[2].x});
    const auto [low, high] = std::minmax({triangle[0].z, triangle[1].z, triangle[2].z});
    if (left > x + 1 || right < x || low > z + 1 || high < z)
        return 0;
    typedef std::pair<double, double> Point;
    std::vector<Point> polygon;
    for (const Vec4 &p : triangle)
        polygon.emplace_back(p.x, p.z);
    const double sides[4][3] = {{1, 0, -double(x)}, {-1, 0, x + 1.0}, {0, 1, -double(z)}, {0, -1, z + 1.0}};
    for (const auto &side : sides)
    {
        const auto inside = [&](const Point &p) { return side[0] * p.first + side[1] * p.second + side[2]; };
        std::vector<Point> clipped;
        for (std::size_t i = 0; i < polygon.size(); ++i)
        {
            const Point a = polygon[i], b = polygon[(i + 1) % polygon.size()];
            const double da = inside(a), db = inside(b);
            if (da >= 0)
                clipped.push_back(a);
            if ((da < 0) != (db < 0))
                clipped.emplace_back(a.first + (b.first - a.first) * da / (da - db),
                                     a.second + (b.second - a.second) * da / (da - db));
        }
        polygon.swap(clipped);
    }
    double twice = 0;
    for (std::size_t i = 0; i < polygon.size(); ++i)
    {
        const Point a = polygon[i], b = polygon[(i + 1) % polygon.size()];
        twice += a.first * b.second - b.first * a.second;
    }
    return std::fabs(twice) / 2;
}

} // namespace

TEST(PartitioningGrid, CoordinatesCountFromTheNearCornerInCells)
{
    PhysicsWorld world;
    EXPECT_EQ(world.grid->getColumns(), 20);
    EXPECT_EQ(world.grid->getRows(), 15);
    EXPECT_EQ(world.grid->getCellCoords(Vec4(-17, 99, -17, 1)), Vec4(0, 0, 0, 1));
    EXPECT_EQ(world.grid->getCellCoords(Vec4(23, 0, 13, 1)), Vec4(20, 0, 15, 1));
    EXPECT_EQ(world.grid->calcCellWorldCoords(0, 14), Vec4(-16, 0, 12, 1));

    const Handle<BoundingVolume> vol = world.box(BoundingVolume::BV_BOX, Vec4()).handle();
    world.grid->fillRectangle(Vec4(23, 0, 0, 1), Vec4(24, 0, 0, 1), vol, false);
    EXPECT_THAT(listOf(*world.grid, 19, 8), IsEmpty()) << "the far edge lies outside";
    world.grid->fillRectangle(Vec4(-18.9f, 0, 0, 1), Vec4(-18.5f, 0, 0, 1), vol, false);
    EXPECT_THAT(listOf(*world.grid, 0, 8), ElementsAre(vol)) << "just outside the near edge counts as inside";
    world.grid->setCellSize(7);
    world.grid->updateSize();
    EXPECT_EQ(world.grid->getColumns(), 5) << "40 m in cells of 7 m: the partial one is dropped";
}

TEST(PartitioningGrid, ListsEqualThoseOfAPlainGridAfterAnyChanges)
{
    for (unsigned seed = 1; seed <= 6; ++seed)
    {
        PhysicsWorld world;
        PartitioningGrid &grid = *world.grid;
        PlainGrid plain{{}, grid.getColumns(), grid.getRows()};
        Chance chance(seed);
        std::vector<TestBox> bodies;
        for (int i = 0; i < 8; ++i)
            bodies.push_back(world.box(BoundingVolume::BV_BOX, Vec4(0, 0, 0, 1)));
        const auto place = [&] { return Vec4(chance(-22, 28), chance(-5, 5), chance(-22, 18), 1); };
        for (int step = 0; step < 300; ++step)
        {
            const TestBox &body = bodies[static_cast<std::size_t>(chance.below(8))];
            const Handle<BoundingVolume> vol = body.handle();
            const Vec4 a = place(), b = a + Vec4(chance(0, 9), 0, chance(0, 9), 0);
            const Vec4 cellA = grid.getCellCoords(a), cellB = grid.getCellCoords(b);
            // In every other run volumes are only moved, as frames do, and the grid's size changes.
            switch (step % 50 == 49 ? 6 : seed % 2 ? chance.below(6) : 5)
            {
            case 0:
                grid.fillRectangle(a, b, vol, false);
                plain.fill(cellA, cellB, vol);
                break;
            case 1:
                grid.removeVolume(cellA, cellB, vol, false);
                plain.remove(cellA, cellB, vol);
                break;
            case 2:
            {
                const Vec4 c = a + Vec4(chance(-4, 4), 0, chance(-4, 4), 0), d = c + Vec4(chance(0, 9), 0, 3, 0);
                grid.moveRectangle(a, b, c, d, vol, false);
                plain.moveRectangle(cellA, cellB, grid.getCellCoords(c), grid.getCellCoords(d), vol);
                break;
            }
            case 6:
                grid.setSize(Vec4(chance(20, 60), 0, chance(20, 60), 0));
                grid.updateSize();
                plain.resize(grid.getColumns(), grid.getRows());
                break;
            default: // what happens every frame
                const Vec4 oldMin = body.volume->getPreviousMin(), oldMax = body.volume->getPreviousMax();
                body.transform->setPosition(a);
                body.transform->setOrientation(chance.turn());
                grid.moveVolume(vol, Vec4(), Quaternion(), false);
                plain.remove(oldMin, oldMax, vol);
                plain.fill(body.volume->getPreviousMin(), body.volume->getPreviousMax(), vol);
            }
            if (step % 7 != 0)
                continue;
            for (int z = 0; z < grid.getRows(); ++z)
                for (int x = 0; x < grid.getColumns(); ++x)
                    ASSERT_EQ(listOf(grid, x, z), (plain.cells[{x, z}]))
                        << "cell " << x << ", " << z << " step " << step << " seed " << seed;
        }
    }
}

TEST(PartitioningGrid, RectangleOfAVolumeHoldsItsTurnedBoxTwiceAsLarge)
{
    PhysicsWorld world;
    Chance chance(5);
    for (int i = 0; i < 200; ++i)
    {
        const TestBox body = world.box(BoundingVolume::BV_BOX, Vec4(chance(-9, 9), 1, chance(-9, 9), 1),
                                       Vec4(chance(0.1f, 4), chance(0.1f, 4), chance(0.1f, 4), 0));
        body.transform->setOrientation(chance.turn());
        world.grid->addVolume(body.handle());
        Vec4 min(1e9f, 0, 1e9f, 1), max(-1e9f, 0, -1e9f, 1);
        const Vec4 hit = body.volume->getHitBox();
        for (int corner = 0; corner < 8; ++corner)
        {
            const Vec4 turned =
                body.transform->getOrientation().generateRotation() *
                Vec4(corner & 1 ? hit.x : -hit.x, corner & 2 ? hit.y : -hit.y, corner & 4 ? hit.z : -hit.z, 1);
            const Vec4 cell = world.grid->getCellCoords(turned + body.transform->getPosition());
            min = Vec4(std::min(min.x, cell.x), 0, std::min(min.z, cell.z), 1);
            max = Vec4(std::max(max.x, cell.x), 0, std::max(max.z, cell.z), 1);
        }
        EXPECT_LT((body.volume->getPreviousMin() - min).magnitude(), 1e-4f);
        EXPECT_LT((body.volume->getPreviousMax() - max).magnitude(), 1e-4f);
    }
}

TEST(PartitioningGrid, TriangleListsEveryCellThatItTouchesOnceForARequest)
{
    PhysicsWorld world;
    Chance chance(11);
    PartitioningGrid::GridCellAddressList cells;
    std::size_t surplus = 0, needed = 0;
    for (int round = 0; round < 500; ++round)
    {
        const float height = round % 3 == 0 ? 0.4f : 60.f; // flat ones too
        const float width = round % 4 == 0 ? 2.f : 80.f;
        const Vec4 middle(chance(-30, 36), 0, chance(-30, 26), 1);
        Vec4 points[3], inCells[3];
        for (int i = 0; i < 3; ++i)
        {
            points[i] = middle + Vec4(chance(-width, width), chance(-9, 9), chance(-height, height), 0);
            inCells[i] = world.grid->getCellCoords(points[i]);
        }
        const bool wound = (inCells[1].z - inCells[0].z) * (inCells[2].x - inCells[0].x) -
                               (inCells[2].z - inCells[0].z) * (inCells[1].x - inCells[0].x) >=
                           0;
        const RequestHandle request = getNextRequestHandle();
        cells.clear();
        for (int again = 0; again < 2; ++again)
            world.grid->rasterizeTriangle(points[0], points[1], points[2], cells, request);
        std::set<std::pair<int, int>> listed;
        for (const Vec4 &cell : cells)
            ASSERT_TRUE(listed.insert({static_cast<int>(cell.x), static_cast<int>(cell.z)}).second) << "listed twice";
        ASSERT_TRUE(wound || listed.empty()) << "the other winding lists nothing";
        std::size_t touched = 0;
        for (int z = 0; wound && z < world.grid->getRows(); ++z)
            for (int x = 0; x < world.grid->getColumns(); ++x)
            {
                if (areaInCell(inCells, x, z) <= 1e-6)
                    continue;
                ASSERT_TRUE(listed.count({x, z})) << "cell " << x << ", " << z << " round " << round;
                ++touched;
            }
        needed += touched;
        surplus += listed.size() - touched;
    }
    EXPECT_LT(surplus, needed) << "a margin around the triangle, not the whole grid";
}

TEST(PartitioningGrid, MarksOfARequestLastUntilTheNextOne)
{
    PhysicsWorld world;
    PartitioningGrid::GridCellAddressList cells;
    const Vec4 a(0, 0, 0, 1), b(0, 0, 4, 1), c(4, 0, 0, 1);
    world.grid->rasterizeTriangle(a, b, c, cells, 7);
    const std::size_t once = cells.size();
    ASSERT_GT(once, 0u);
    EXPECT_EQ(world.grid->getCellLastRequest(static_cast<int>(cells[0].x), static_cast<int>(cells[0].z)), 7u);
    world.grid->rasterizeTriangle(a, b, c, cells);
    EXPECT_GE(cells.size(), 2 * once) << "without a request nothing is left out";
    EXPECT_EQ(world.grid->getCellLastRequest(static_cast<int>(cells[0].x), static_cast<int>(cells[0].z)), 0u);
}

TEST(PartitioningGrid, SegmentFindsTheNearestOfAllVolumes)
{
    PhysicsWorld world;
    Chance chance(21);
    std::vector<TestBox> boxes;
    for (int i = 0; i < 150; ++i)
    {
        const float side = i % 2 ? 2.f : 0.05f; // from a cell's size down to what lies in one corner of it
        boxes.push_back(world.inGrid(world.box(i % 3 ? BoundingVolume::BV_BOX : BoundingVolume::BV_WALL,
                                               Vec4(chance(-15, 21), 0, chance(-15, 11), 1),
                                               Vec4(side, 2, side + chance(0, 2), 0))));
        boxes.back().transform->setOrientation(Quaternion::fromAxisAngle(Vec4(0, 1, 0, 0), chance(0, 6)));
        world.grid->moveVolume(boxes.back().handle(), Vec4(), Quaternion(), i % 3 == 0);
    }
    int hits = 0;
    for (int i = 0; i < 3000; ++i)
    {
        const Vec4 begin(chance(-25, 30), chance(-1, 1), chance(-25, 20), 1);
        const float reach = i % 2 ? 40.f : 3.f;
        const Vec4 along(chance(-reach, reach), 0, i % 5 ? chance(-reach, reach) : 0.f, 0);
        float nearest = std::numeric_limits<float>::infinity();
        for (const TestBox &box : boxes)
            if (const RayCollision hit = box.volume->boxToLineSegmentWithInfo(begin, along); hit.collided)
                nearest = std::min(nearest, hit.t);
        const SegmentHit found = world.grid->checkSegment(begin, along);
        ASSERT_EQ(found.collision.t, nearest) << "segment " << i;
        ASSERT_EQ(found.collision.collided, nearest <= 1);
        ASSERT_EQ(found.collision.collided, found.volume.isValid());
        hits += found.collision.collided;
    }
    EXPECT_GT(hits, 500);
}

TEST(PartitioningGrid, SegmentPassesByDummiesAndWhatNobodyCanUse)
{
    PhysicsWorld world;
    const TestBox dummy = world.inGrid(world.box(BoundingVolume::BV_NONE, Vec4(2, 0, 0, 1)));
    const TestBox plain = world.inGrid(world.box(BoundingVolume::BV_SPHERE, Vec4(4, 0, 0, 1)));
    const TestBox useful = world.inGrid(world.box(BoundingVolume::BV_WALL, Vec4(6, 0, 0, 1)));
    dummy.volume->setIsPartitioningDummy(true);
    useful.volume->setInteract(true);
    const Vec4 begin(0, 0, 0, 1), along(20, 0, 0, 0);
    EXPECT_EQ(world.grid->checkSegment(begin, along).volume, plain.handle());
    EXPECT_FLOAT_EQ(world.grid->checkSegment(begin, along).collision.t, 3.5f / 20);
    EXPECT_EQ(world.grid->findVolumeOnSegment(begin, along, true), useful.handle());
    EXPECT_FALSE(world.grid->checkSegment(begin, Vec4()).collision.collided) << "a segment of no length";
    useful.entity.lookup()->murder();
    cremateDeadObjects();
    EXPECT_FALSE(world.grid->findVolumeOnSegment(begin, along, true).isValid());
}

TEST(PartitioningGrid, ImpossibleSizesLeaveAnEmptyGridAndSayWhy)
{
    PhysicsWorld world;
    const TestBox body = world.inGrid(world.box(BoundingVolume::BV_BOX, Vec4(0, 0, 0, 1)));
    const float nan = std::numeric_limits<float>::quiet_NaN(), infinite = std::numeric_limits<float>::infinity();
    const std::size_t logged = countLogLines("The partitioning grid of map has no cells");
    std::size_t said = 0;
    for (const auto &[size, cellSize] :
         {std::pair(Vec4(40, 0, 30, 0), 0.f), std::pair(Vec4(40, 0, 30, 0), -1.f), std::pair(Vec4(40, 0, 30, 0), nan),
          std::pair(Vec4(nan, 0, 30, 0), 2.f), std::pair(Vec4(40, 0, infinite, 0), 2.f),
          std::pair(Vec4(1, 0, 1, 0), 2.f), std::pair(Vec4(1e6f, 0, 1e6f, 0), 0.01f)})
    {
        world.grid->setSize(size);
        world.grid->setCellSize(cellSize);
        world.grid->updateSize();
        EXPECT_EQ(countLogLines("The partitioning grid of map has no cells"), logged + ++said);
        EXPECT_EQ(world.grid->getRows() * world.grid->getColumns(), 0);
        PartitioningGrid::GridCellAddressList cells;
        world.grid->rasterizeTriangle(Vec4(0, 0, 0, 1), Vec4(0, 0, 4, 1), Vec4(4, 0, 0, 1), cells, 1);
        EXPECT_THAT(cells, IsEmpty());
        EXPECT_FALSE(world.grid->checkSegment(Vec4(-9, 0, 0, 1), Vec4(20, 0, 0, 0)).collision.collided);
        world.grid->moveVolume(body.handle(), Vec4(), Quaternion(), false);
        world.level.frame();
    }
}

TEST(PartitioningGrid, NumbersThatAreNoneNeitherStandNorHit)
{
    PhysicsWorld world;
    const float nan = std::numeric_limits<float>::quiet_NaN(), huge = 1e30f;
    const TestBox body = world.inGrid(world.box(BoundingVolume::BV_BOX, Vec4(0, 0, 0, 1)));
    const Vec4 cell = body.volume->getPreviousMax();
    const std::size_t said = countLogLines("stands nowhere");
    body.transform->setPosition(Vec4(nan, 0, 0, 1));
    for (int i = 0; i < 3; ++i)
        world.grid->moveVolume(body.handle(), Vec4(), Quaternion(), false);
    EXPECT_THAT(listOf(*world.grid, static_cast<int>(cell.x), static_cast<int>(cell.z)), IsEmpty());
    EXPECT_EQ(countLogLines("stands nowhere"), said + 1) << "once";
    body.transform->setPosition(Vec4(0, 0, 0, 1));
    body.volume->setHitBox(Vec4(huge, 1, huge, 0));
    world.grid->moveVolume(body.handle(), Vec4(), Quaternion(), false);
    EXPECT_THAT(listOf(*world.grid, 0, 14), ElementsAre(body.handle())) << "what is huge covers everything";
    PartitioningGrid::GridCellAddressList cells;
    world.grid->rasterizeTriangle(Vec4(nan, 0, 0, 1), Vec4(0, 0, 4, 1), Vec4(4, 0, 0, 1), cells, 1);
    EXPECT_THAT(cells, IsEmpty());
    world.grid->rasterizeTriangle(Vec4(-huge, 0, -huge, 1), Vec4(0, 0, huge, 1), Vec4(huge, 0, -huge, 1), cells, 2);
    world.grid->checkSegment(Vec4(-huge, 0, 0, 1), Vec4(2 * huge, 0, huge, 0));
    world.grid->checkSegment(Vec4(0, 0, nan, 1), Vec4(1, 0, 0, 0));
    world.level.frame();
}

TEST(BoundingVolume, FollowsItsTransformAndExtentsIntoTheGridButNotItsHeight)
{
    PhysicsWorld world;
    const TestBox body = world.box(BoundingVolume::BV_NONE, Vec4(0, 0, 0, 1));
    const TestBox wall = world.box(BoundingVolume::BV_WALL, Vec4(0, 0, 0, 1));
    EXPECT_THAT(listOf(*world.grid, 8, 8), IsEmpty());
    world.level.frame();
    EXPECT_THAT(listOf(*world.grid, 8, 8), ElementsAre(body.handle()));
    EXPECT_THAT(listOf(*world.grid, 8, 8, true), ElementsAre(wall.handle()));
    const TestBox later = world.inGrid(world.box(BoundingVolume::BV_NONE, Vec4(0, 0, 0, 1)));
    body.transform->setPosition(Vec4(0, 5, 0, 1));
    world.level.frame();
    EXPECT_EQ(listOf(*world.grid, 8, 8).front(), body.handle()) << "a move behind the others would show";
    body.transform->setPosition(Vec4(10, 5, 0, 1));
    world.level.frame();
    EXPECT_THAT(listOf(*world.grid, 13, 8), ElementsAre(body.handle()));
    EXPECT_EQ(listOf(*world.grid, 8, 8).front(), later.handle());

    body.volume->setHitBox(Vec4(1, 1, 7, 0));
    wall.volume->setHitBox(Vec4(1, 1, 7, 0));
    world.level.frame();
    EXPECT_THAT(listOf(*world.grid, 13, 11), ElementsAre(body.handle()));
    EXPECT_THAT(listOf(*world.grid, 8, 11, true), ElementsAre(wall.handle())) << "it has never moved";
    wall.volume->setHitBox(Vec4(1, 1, 1, 0));
    world.level.frame();
    EXPECT_THAT(listOf(*world.grid, 8, 11, true), IsEmpty());
    EXPECT_THAT(listOf(*world.grid, 8, 8, true), ElementsAre(wall.handle()));
}

TEST(BoundingVolume, ChangesItsListWithItsTypeAndIsNowhereBeyondTheEdge)
{
    PhysicsWorld world;
    const TestBox body = world.box(BoundingVolume::BV_BOX, Vec4(0, 0, 0, 1));
    const TestBox other = world.box(BoundingVolume::BV_BOX, Vec4(0.3f, 0, 0, 1));
    world.level.frame();
    for (const auto type : {BoundingVolume::BV_WALL, BoundingVolume::BV_BOX})
    {
        body.volume->setVolumeType(type);
        world.level.frame();
        const bool isWall = type == BoundingVolume::BV_WALL;
        EXPECT_EQ(listOf(*world.grid, 8, 8).size(), isWall ? 1u : 2u);
        EXPECT_EQ(listOf(*world.grid, 8, 8, true).size(), isWall ? 1u : 0u);
    }
    const auto touch = [&](float x)
    {
        body.transform->setPosition(Vec4(x, 0, 0, 1));
        other.transform->setPosition(Vec4(x + 0.3f, 0, 0, 1));
        world.level.frame();
        return !body.volume->getColliders().empty() &&
               world.grid->checkSegment(Vec4(x - 3, 0, 0, 1), Vec4(6, 0, 0, 0)).collision.collided;
    };
    EXPECT_TRUE(touch(22)) << "in the last column";
    EXPECT_FALSE(touch(26)) << "beyond the far edge, at 23 m";
    EXPECT_FALSE(touch(-1e30f));
    EXPECT_TRUE(touch(1)) << "back again";
}

TEST(BoundingVolume, CrossesFromOneMapsGridToAnothers)
{
    PhysicsWorld world;
    const TestBox body = world.box(BoundingVolume::BV_NONE, Vec4(0, 0, 0, 1));
    world.level.frame();
    const Handle<MapRootEntity> cellar = world.level.map("cellar", Vec4(0, -9, 0, 1), Vec4(40, 5, 40, 0));
    body.entity.lookup()->setParent(cellar);
    world.level.frame(); // no grid yet
    const Handle<Entity> data = world.level.entity(".MapData_partitioningGrid", cellar);
    PartitioningGrid &grid = *world.level.component<PartitioningGrid>(data, "partitioning").lookup();
    grid.onLoadBegin();
    EXPECT_EQ(grid.getColumns(), 64) << "a grid that is told nothing has room for a large map";
    world.level.frame();
    EXPECT_THAT(listOf(grid, 32, 32), ElementsAre(body.handle()));
    EXPECT_THAT(listOf(*world.grid, 8, 8), ElementsAre(body.handle())) << "the old grid keeps it until it dies";
}

TEST(BoundingVolume, CrowdThatMovesThroughTheGridAllocatesNothing)
{
    PhysicsWorld world;
    Chance chance(3);
    std::vector<TestBox> bodies;
    for (int i = 0; i < 200; ++i)
        bodies.push_back(world.box(BoundingVolume::BV_NONE, Vec4(0, 0, 0, 1)));
    const auto step = [&]
    {
        for (const TestBox &body : bodies)
            body.transform->setPosition(Vec4(chance(-17, 23), 0, chance(-17, 13), 1));
        world.level.frame();
    };
    for (int i = 0; i < 100; ++i)
        step();
    EXPECT_EQ(allocationsOf(step, 30), 0u);
}

TEST(MapData, GivesItsMapAGridOfItsSizeAndKeepsWhatStandsInIt)
{
    PhysicsWorld world;
    const Handle<MapRootEntity> hall = world.level.map("hall", Vec4(5, 0, 5, 1), Vec4(30, 4, 20, 0));
    MapDataComponent &data = *world.level.component<MapDataComponent>(hall, "mapData").lookup();
    data.onLoadComplete();
    PartitioningGrid &grid = *PartitioningGrid::ofMap(hall).lookup();
    EXPECT_EQ(grid.getPosition(), Vec4(5, 0, 5, 1));
    EXPECT_EQ(grid.getColumns(), 15);
    EXPECT_EQ(grid.getRows(), 10);

    TestBox box = world.box(BoundingVolume::BV_BOX, Vec4(-9, 0, -4, 1));
    grid.addVolume(box.handle());
    const auto transform = handle_cast<TransformComponent>(hall.lookup()->getComponent(SCS("transform"))).lookup();
    transform->setScale(Vec4(50, 4, 60, 0));
    data.updateSize();
    EXPECT_EQ(grid.getColumns(), 25);
    EXPECT_THAT(listOf(grid, 0, 0), ElementsAre(box.handle())) << "cells keep their volumes, not the places";
    transform->setScale(Vec4(1, 1, 1, 0));
    data.updateSize();
    EXPECT_EQ(grid.getColumns(), 25) << "a map without a size of its own leaves the grid alone";
}

TEST(DebugDraw, ShowsCellsAndHitBoxesBehindTheirSwitches)
{
    PhysicsWorld world;
    world.grid->setSize(Vec4(6, 0, 4, 0));
    world.grid->updateSize();
    const TestBox box =
        world.inGrid(world.box(BoundingVolume::BV_WALL, Vec4(3.5f, 0, -1.5f, 1), Vec4(0.2f, 1, 0.2f, 0)));
    const TestBox ball =
        world.inGrid(world.box(BoundingVolume::BV_SPHERE, Vec4(3.5f, 0, -1.5f, 1), Vec4(0.2f, 1, 0.2f, 0)));
    const Handle<DebugCounts> counts = construct<DebugCounts>(defaultAllocationCategory);
    counts.lookup()->setParent(world.level.level);
    GlobalConfigSystem &config = getSystemDeref<GlobalConfigSystem>();
    const auto linesOf = [&](Object &drawn)
    {
        counts.lookup()->lines = 0;
        drawn.applyDebugDraw(counts);
        return counts.lookup()->lines;
    };
    config.setDebugDrawEnabled(true);
    EXPECT_EQ(linesOf(*world.grid) + linesOf(*box.volume), 0);
    config.setDebugDrawPartitioningGrid(true);
    EXPECT_EQ(linesOf(*world.grid), 3 * 2 * 2 + 3 + 2) << "each side of a cell once";
    ASSERT_EQ(counts.lookup()->texts.size(), 6u);
    EXPECT_EQ(counts.lookup()->texts[4], SCS("1 1\n"));
    EXPECT_EQ(counts.lookup()->texts[0], SCS("0 0\n"));
    config.setDebugDrawHitBoxes(true);
    EXPECT_EQ(linesOf(*box.volume), 12);
    EXPECT_GT(linesOf(*ball.volume), 30);
}

TEST(DebugDraw, ShowsTheContactsOfTheLastDetectionOnlyWhileAskedTo)
{
    PhysicsWorld world;
    const TestBox one = world.inGrid(world.box(BoundingVolume::BV_SPHERE, Vec4(0, 5, 0, 1)));
    const TestBox two = world.inGrid(world.box(BoundingVolume::BV_SPHERE, Vec4(0.75f, 5, 0, 1)));
    const Handle<DebugCounts> counts = construct<DebugCounts>(defaultAllocationCategory);
    counts.lookup()->setParent(world.level.level);
    GlobalConfigSystem &config = getSystemDeref<GlobalConfigSystem>();
    config.setDebugDrawEnabled(true);
    const auto detect = [&]
    {
        counts.lookup()->lines = 0;
        counts.lookup()->texts.clear();
        one.volume->doFrame();
        world.grid->checkCollisions();
        world.grid->resolveCollisions(0);
        world.grid->applyDebugDraw(counts);
    };
    world.grid->checkCollisions();
    EXPECT_EQ(allocationsOf([&] { world.grid->resolveCollisions(0); }), 0u) << "nothing is kept for nobody";
    one.transform->setPosition(Vec4(0, 5, 0, 1));
    two.transform->setPosition(Vec4(0.75f, 5, 0, 1));
    config.setDebugDrawContacts(true);
    detect();
    EXPECT_EQ(counts.lookup()->lines, 3 + 3 + 1) << "cross, arrow, depth";
    ASSERT_EQ(counts.lookup()->texts.size(), 1u);
    EXPECT_EQ(counts.lookup()->texts[0], SCS("0.250"));
    detect();
    EXPECT_EQ(counts.lookup()->lines, 0) << "they have parted";
}
