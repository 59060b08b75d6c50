#include "ai/paths/Walkways.h"

#include "ai/paths/CellSteps.h"
#include "physics/bodies/PhysicsComponent.h"
#include "physics/grid/PartitioningGrid.h"

#include "engine/debug/DebugCollector.h"
#include "engine/debug/GlobalConfigSystem.h"
#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/MapRootEntity.h"
#include "object/tree/WellKnownPaths.h"

#include "foundation/Finite.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace
{

constexpr float SLIMMEST = 0.2f;       ///< metres, of a body that every way is kept free for
constexpr float WRITTEN_MARGIN = 0.3f; ///< of a cell's edge, kept from the cells that a level has blocked
constexpr float GIVE = 0.01f;          ///< metres that somebody may come nearer to what he stands at
constexpr float CROSSING = 0.1f;       ///< metres from a leaf's sides within which a line goes through it

} // namespace

Walkways *Walkways::findOfMap(const Handle<MapRootEntity> &map)
{
    return componentOf<Walkways>(map, ComponentKeys::walkways);
}

Walkways *Walkways::ofMap(const Handle<MapRootEntity> &map)
{
    const auto root = map.lookup();
    if (!root)
        return nullptr;
    Walkways *const present = findOfMap(map);
    if (present || root->isDying() ||
        !componentOf<SquareGrid>(root->getChild(WellKnownPaths::mainPathGrid), ComponentKeys::grid))
        return present;
    const auto made = handle_cast<Walkways>(root->addComponent(ComponentKeys::walkways, Walkways::staticType)).lookup();
    if (made)
        made->onLoadComplete();
    return made.ptr;
}

void Walkways::onLoadComplete()
{
    doFrame();
}

void Walkways::onMurder()
{
    unmarkCells();
    SimpleComponent::onMurder();
}

void Walkways::doFrame()
{
    SquareGrid *const grid = findGrid();
    if (!grid)
        return;
    const Layout now = layoutOf(*grid);
    if (getHandle(grid) != hGrid || !now.isSame(layout))
        return read(*grid, now);
    survey.follow(PartitioningGrid::ofMap(handle_cast<MapRootEntity>(getParent())).lookup().ptr, plan);
    settle(*grid);
}

SquareGrid *Walkways::findGrid()
{
    const auto root = getParent().lookup();
    return root ? componentOf<SquareGrid>(root->getChild(WellKnownPaths::mainPathGrid), ComponentKeys::grid) : nullptr;
}

Walkways::Layout Walkways::layoutOf(SquareGrid &grid) const
{
    Layout now;
    now.columns = grid.getGridCols();
    now.rows = grid.getGridRows();
    now.cellSize = grid.getCellSize();
    Matrix4 toFirstCell;
    const Vec4 first = grid.getCellModelCoords(0.f, 0.f);
    toFirstCell.data[0][3] = first.x;
    toFirstCell.data[2][3] = first.z;
    now.toMap = grid.getTransformationMatrix(0) * toFirstCell;
    return now;
}

bool Walkways::Layout::isSame(const Layout &other) const
{
    // Bit by bit: a matrix that is no number is the same as long as it stays so.
    // NOLINTBEGIN(bugprone-suspicious-memory-comparison)
    return columns == other.columns && rows == other.rows && cellSize == other.cellSize &&
           std::memcmp(toMap.data, other.toMap.data, sizeof(toMap.data)) == 0;
    // NOLINTEND(bugprone-suspicious-memory-comparison)
}

/// Begins anew for the grid as it lies now.
void Walkways::read(SquareGrid &grid, const Layout &now)
{
    unmarkCells();
    hGrid = getHandle(&grid);
    layout = now;
    fromMap = now.toMap.inverse();
    plan.layOut(now.columns, now.rows, now.cellSize);
    marks.assign(static_cast<std::size_t>(now.columns) * static_cast<std::size_t>(now.rows), 0);
    survey.begin(fromMap);
    survey.follow(PartitioningGrid::ofMap(handle_cast<MapRootEntity>(getParent())).lookup().ptr, plan);
    note(CellRect{0, 0, now.columns - 1, now.rows - 1});
    settle(grid);
}

void Walkways::settle(SquareGrid &grid)
{
    const CellRect changed = plan.settle();
    if (changed.isEmpty())
        return;
    markCells(grid);
    // The steps into the cells around have changed, too.
    note(CellRect{changed.minX - 1, changed.minZ - 1, changed.maxX + 1, changed.maxZ + 1});
}

/// Counts a change of what can be walked in a rectangle of cells.
void Walkways::note(const CellRect &changed)
{
    ++changeCount; // before it is used: compilers disagree on its value in the assignment
    changes[changeCount % CHANGES] = Change{changeCount, changed};
}

/// Gives the cells that were worked out anew the value that says so, or takes it from them.
void Walkways::markCells(SquareGrid &grid)
{
    const std::uint8_t least = WalkPlan::roomFor(SLIMMEST);
    for (const std::uint32_t cell : plan.getSettled())
    {
        const int x = static_cast<int>(cell) % layout.columns, z = static_cast<int>(cell) / layout.columns;
        const float value = grid.getCellFloatValue(x, z);
        const bool isBlocked = plan.roomAt(x, z) < least;
        if (isBlocked && value == 0.f)
        {
            grid.setCellFloatValue(x, z, BLOCKED_BY_THINGS);
            marks[cell] = 1;
        }
        else if (!isBlocked && marks[cell])
        {
            if (value == BLOCKED_BY_THINGS)
                grid.setCellFloatValue(x, z, 0.f);
            marks[cell] = 0;
        }
    }
}

void Walkways::unmarkCells()
{
    const auto grid = hGrid.lookup();
    if (!grid)
        return;
    for (std::size_t cell = 0; cell < marks.size(); ++cell)
    {
        if (!marks[cell])
            continue;
        const int x = static_cast<int>(cell) % layout.columns, z = static_cast<int>(cell) / layout.columns;
        if (grid->getCellFloatValue(x, z) == BLOCKED_BY_THINGS)
            grid->setCellFloatValue(x, z, 0.f);
        marks[cell] = 0;
    }
}

/// Whether a level has blocked a cell itself.
bool Walkways::isWritten(const SquareGrid &grid, int x, int z) const
{
    const float value = grid.getCellFloatValue(x, z);
    const std::size_t cell =
        static_cast<std::size_t>(layout.columns) * static_cast<std::size_t>(z) + static_cast<std::size_t>(x);
    return !(value == 0.f) && !(value == BLOCKED_BY_THINGS && marks[cell]);
}

bool Walkways::hasRoom(const GridCell &cell, float radius) const
{
    const auto grid = hGrid.lookup();
    if (!grid || cell.getGrid() != hGrid || !cell.isValid() || !plan.isCell(cell.getX(), cell.getZ()))
        return false;
    return !isWritten(*grid, cell.getX(), cell.getZ()) &&
           plan.roomAt(cell.getX(), cell.getZ()) >= WalkPlan::roomFor(radius);
}

GridCell Walkways::cellAt(Vec4 place)
{
    if (!isFinite(place))
        return GridCell(hGrid, -1, -1);
    const PlanPoint at = toPlan(place);
    return GridCell(hGrid, plan.cellAlong(at.x), plan.cellAlong(at.z));
}

GridCell Walkways::findFreeCell(Vec4 place, float radius)
{
    constexpr int FARTHEST = 32; // cells
    if (!isFinite(place) || plan.getColumns() == 0 || plan.getRows() == 0)
        return GridCell();
    const PlanPoint at = toPlan(place);
    const int middleX = std::clamp(plan.cellAlong(at.x), 0, plan.getColumns() - 1);
    const int middleZ = std::clamp(plan.cellAlong(at.z), 0, plan.getRows() - 1);
    for (int ring = 0; ring <= FARTHEST; ++ring)
    {
        GridCell best;
        float nearest = std::numeric_limits<float>::infinity();
        for (int z = middleZ - ring; z <= middleZ + ring; ++z)
        {
            const bool isEdge = z == middleZ - ring || z == middleZ + ring;
            for (int x = middleX - ring; x <= middleX + ring; x += isEdge || ring == 0 ? 1 : 2 * ring)
            {
                const GridCell cell(hGrid, x, z);
                if (!hasRoom(cell, radius))
                    continue;
                const float distance = (plan.stationOf(x, z) - at).length();
                if (distance < nearest)
                {
                    nearest = distance;
                    best = cell;
                }
            }
        }
        if (best.isValid())
            return best;
    }
    return GridCell();
}

Vec4 Walkways::getStation(const GridCell &cell) const
{
    if (cell.getGrid() != hGrid || !plan.isCell(cell.getX(), cell.getZ()))
        return cell.getWorldCoords();
    const PlanPoint station = plan.stationOf(cell.getX(), cell.getZ());
    return layout.toMap * Vec4(station.x, 0.f, station.z, 1.f);
}

bool Walkways::isWayFree(Vec4 from, Vec4 to, float radius)
{
    return isFree(from, to, Walker(radius), false);
}

bool Walkways::isFree(const Vec4 &from, const Vec4 &to, const Walker &walker, bool passesLeaves) const
{
    const auto grid = hGrid.lookup();
    if (!grid || !isFinite(from) || !isFinite(to) || grid->getGridCols() != layout.columns ||
        grid->getGridRows() != layout.rows)
        return false;
    const PlanPoint start = toPlan(from), end = toPlan(to);
    const float margin = WalkPlan::marginFor(walker.radius);
    const float writtenMargin = std::min(margin, WRITTEN_MARGIN * layout.cellSize);
    const std::uint32_t line = plan.beginLine();
    const auto meets = [&](const WalkPlan::Obstacle &obstacle)
    {
        if (obstacle.seen == line)
            return false;
        obstacle.seen = line;
        const float distance = obstacle.shape.distanceTo(start, end);
        if (!(distance < margin))
            return false;
        const auto leaf = obstacle.leaf.lookup();
        if (obstacle.isLeaf && (!leaf || (passesLeaves && walker.canOpen(*leaf))))
            return false;
        // Who stands at something, or wants to stand there, is not stopped by that as long as he comes no nearer.
        return distance < obstacle.shape.distanceTo(start) - GIVE && distance < obstacle.shape.distanceTo(end) - GIVE;
    };
    return plan.walkLine(start, end,
                         [&](int x, int z)
                         {
                             bool isBlocked = meetsWritten(*grid, x, z, start, end, writtenMargin);
                             plan.forEachNear(x, z,
                                              [&](const WalkPlan::Obstacle &obstacle)
                                              { isBlocked = isBlocked || meets(obstacle); });
                             return !isBlocked;
                         });
}

/// Whether a line comes too near to a cell that a level has blocked, of those around one that it passes.
bool Walkways::meetsWritten(const SquareGrid &grid, int x, int z, const PlanPoint &from, const PlanPoint &to,
                            float margin) const
{
    for (int nearZ = std::max(z - 1, 0); nearZ <= std::min(z + 1, layout.rows - 1); ++nearZ)
        for (int nearX = std::max(x - 1, 0); nearX <= std::min(x + 1, layout.columns - 1); ++nearX)
        {
            if (!isWritten(grid, nearX, nearZ))
                continue;
            Footprint square;
            square.middle = plan.centreOf(nearX, nearZ);
            square.halfAlong = square.halfAcross = layout.cellSize * 0.5f;
            const float distance = square.distanceTo(from, to);
            if (distance < margin && distance < square.distanceTo(from) - GIVE &&
                distance < square.distanceTo(to) - GIVE)
                return true;
        }
    return false;
}

Handle<PhysicsComponent> Walkways::findLeaf(const Vec4 &from, const Vec4 &to)
{
    Handle<PhysicsComponent> found;
    if (!isFinite(from) || !isFinite(to))
        return found;
    const PlanPoint start = toPlan(from), end = toPlan(to);
    plan.walkLine(start, end,
                  [&](int x, int z)
                  {
                      plan.forEachNear(x, z,
                                       [&](const WalkPlan::Obstacle &obstacle)
                                       {
                                           if (obstacle.isLeaf && obstacle.shape.distanceTo(start, end) < CROSSING)
                                               found = obstacle.leaf;
                                       });
                      return !found.isValid();
                  });
    return found;
}

bool Walkways::leavesAllow(int x, int z, int direction, const Walker &walker) const
{
    const int nextX = x + CELL_STEPS[direction].dx, nextZ = z + CELL_STEPS[direction].dz;
    const PlanPoint start = plan.stationOf(x, z), end = plan.stationOf(nextX, nextZ);
    const float margin = WalkPlan::marginFor(walker.radius);
    bool isAllowed = true;
    const auto test = [&](const WalkPlan::Obstacle &obstacle)
    {
        if (!isAllowed || !obstacle.isLeaf || !(obstacle.shape.distanceTo(start, end) < margin))
            return;
        const auto leaf = obstacle.leaf.lookup();
        isAllowed = !leaf || walker.canOpen(*leaf);
    };
    plan.forEachNear(x, z, test);
    plan.forEachNear(nextX, nextZ, test);
    return isAllowed;
}

bool Walkways::isStepFree(const GridCell &from, const GridCell &to, const Walker &walker) const
{
    const auto grid = hGrid.lookup();
    if (!grid || from.getGrid() != hGrid || to.getGrid() != hGrid || !plan.isCell(from.getX(), from.getZ()) ||
        !plan.isCell(to.getX(), to.getZ()) || !isWalkable(to))
        return false;
    const WalkRule rule(*this, walker, from.getX(), from.getZ());
    for (int direction = 0; direction < SquareGrid::NUM_NEIGHBORS; ++direction)
        if (from.getX() + CELL_STEPS[direction].dx == to.getX() && from.getZ() + CELL_STEPS[direction].dz == to.getZ())
            return rule.allows(from.getX(), from.getZ(), direction);
    return from == to;
}

bool Walkways::hasChangedSince(std::uint32_t count, const CellRect &cells) const
{
    if (changeCount - count > CHANGES)
        return true;
    for (std::uint32_t past = count + 1; past != changeCount + 1; ++past)
        if (!changes[past % CHANGES].cells.common(cells).isEmpty())
            return true;
    return false;
}

WalkRule::WalkRule(const Walkways &ways, const Walker &walker, int startX, int startZ)
    : ways(ways), walker(walker), room(WalkPlan::roomFor(walker.radius)), startX(startX), startZ(startZ)
{
}

bool WalkRule::allows(int x, int z, int direction) const
{
    const int nextX = x + CELL_STEPS[direction].dx, nextZ = z + CELL_STEPS[direction].dz;
    const WalkPlan &plan = ways.plan;
    if (!plan.isCell(x, z) || !plan.isCell(nextX, nextZ))
        return true;
    if (plan.roomOfStep(x, z, direction) < room)
    {
        // Who stands where he has no room may go to where he has some.
        const bool escapes = x == startX && z == startZ && plan.roomAt(x, z) < room;
        if (!escapes || plan.roomAt(nextX, nextZ) < room)
            return false;
    }
    return (!plan.isNearLeaf(x, z) && !plan.isNearLeaf(nextX, nextZ)) || ways.leavesAllow(x, z, direction, walker);
}

bool WalkRule::allowsStraight(const GridCell &from, const GridCell &to) const
{
    return ways.isFree(ways.getStation(from), ways.getStation(to), walker, true);
}

void Walkways::applyDebugDraw(const Handle<DebugCollectorComponent> &dcc)
{
    const GlobalConfigSystem &config = getSystemDeref<GlobalConfigSystem>();
    const auto collector = dcc.lookup();
    if (!collector || !config.getDebugDrawEnabled() || !config.getDebugDrawPathfindingData())
        return;
    constexpr float LIFT = 0.06f; // metres above the floor
    for (const WalkPlan::Obstacle &obstacle : plan.getObstacles())
    {
        if (obstacle.cells.isEmpty())
            continue;
        const Footprint &shape = obstacle.shape;
        const PlanPoint along = shape.along * shape.halfAlong, across = shape.along.turned() * shape.halfAcross;
        const PlanPoint corners[4] = {shape.middle - along - across, shape.middle + along - across,
                                      shape.middle + along + across, shape.middle - along + across};
        const auto lifted = [&](const PlanPoint &point) { return layout.toMap * Vec4(point.x, LIFT, point.z, 1.f); };
        const Vec4 color = obstacle.isLeaf ? Vec4(0.3f, 0.8f, 1.f, 1.f) : Vec4(1.f, 0.4f, 0.2f, 1.f);
        for (int i = 0; i < 4; ++i)
            collector->addLine3D(lifted(corners[i]), lifted(corners[(i + 1) % 4]), color);
    }
}
