#include "ai/paths/PathSearch.h"

#include "ai/paths/CellSteps.h"

#include <algorithm>
#include <array>
#include <bit>
#include <limits>
#include <vector>

namespace
{

/// The neighbours of a cell that are not beside the one it was reached from, nor that one itself, as bits by
/// SquareGrid::Neighbor; by the step that reached it. All of them where a search begins.
constexpr std::array<std::uint8_t, SquareGrid::NUM_NEIGHBORS + 1> findBeyond()
{
    std::array<std::uint8_t, SquareGrid::NUM_NEIGHBORS + 1> beyond{};
    for (unsigned came = 0; came < SquareGrid::NUM_NEIGHBORS; ++came)
        for (unsigned i = 0; i < SquareGrid::NUM_NEIGHBORS; ++i)
            if (!areBeside(CELL_STEPS[came].dx + CELL_STEPS[i].dx, CELL_STEPS[came].dz + CELL_STEPS[i].dz))
                beyond[came] = static_cast<std::uint8_t>(beyond[came] | 1u << i);
    beyond[ReachedCell::BEGUN_AT] = 0xff;
    return beyond;
}

constexpr auto BEYOND = findBeyond();

} // namespace

bool isWalkable(const GridCell &cell)
{
    return cell.getFloatValue() == 0.f;
}

bool PathSearch::begin(const PathGround &ground, const GridCell &start, const GridCell &destination)
{
    clear();
    if (destination.getGrid() != start.getGrid() || !ground.main.isCellInBounds(destination.getX(), destination.getZ()))
        return false;
    nodePool.fit(PAGE_SIZE);
    openList.setPool(nodePool.data());
    toX = destination.getX();
    toZ = destination.getZ();
    grid = start.getGrid();
    chooseField();
    field->follow(ground.main, ground.saturation);
    isSteady = true;
    const Index first = createNode(field->numberOf(start.getX(), start.getZ()), start.getX(), start.getZ());
    nodePool[first] =
        ReachedCell{.x = start.getX(), .z = start.getZ(), .totalCost = leftFrom(start.getX(), start.getZ())};
    openList.insert(first);
    return true;
}

/// Finds the field of the grid, or gives it that of another one.
void PathSearch::chooseField()
{
    for (field = fields; field != fields + FIELDS; ++field)
        if (field->getGrid() == grid)
            return;
    field = &fields[nextField];
    nextField = (nextField + 1) % FIELDS;
}

void PathSearch::clear()
{
    if (poolIndex > 0)
        openList.clear();
    chooseNames();
    poolIndex = 0;
    found = NONE;
}

/// Has the names of the next search begin behind those of this one, or anew where they would run out.
void PathSearch::chooseNames()
{
    firstName += poolIndex;
    if (firstName < std::numeric_limits<std::uint32_t>::max() - 2 * PAGE_SIZE)
        return;
    firstName = 1;
    for (PathField &each : fields)
        each.forgetNodes();
}

PathStatus PathSearch::run(const PathGround &ground, int passes)
{
    if (!prepare(ground))
        return PS_Failed;
    for (int pass = 0; pass < passes; ++pass)
    {
        const Index current = openList.takeFirst();
        if (current == NONE)
            return PS_Failed;
        if (nodePool[current].x == toX && nodePool[current].z == toZ)
        {
            found = current;
            return PS_Succeeded;
        }
        if (!expand(current, ground.rule))
            return PS_Failed;
    }
    return openList.isEmpty() ? PS_Failed : PS_InProgress;
}

bool PathSearch::prepare(const PathGround &ground)
{
    if (isEmpty() || getHandle(&ground.main) != grid)
        return false;
    const PathField::Following following = field->follow(ground.main, ground.saturation);
    if (following == PathField::ANEW)
        nameNodes();
    isSteady = isSteady && following == PathField::UNCHANGED && !ground.rule;
    return true;
}

/// Has the field's cells name theirs in the pool again after they were numbered anew.
void PathSearch::nameNodes()
{
    for (Index index = 0; index < poolIndex; ++index)
        if (field->has(nodePool[index].x, nodePool[index].z))
            INSERT_NODE(field->numberOf(nodePool[index].x, nodePool[index].z), index);
}

/// Reaches the neighbours of a cell; false where the pool is full.
inline bool PathSearch::expand(Index current, const StepRule *rule)
{
    const int x = nodePool[current].x, z = nodePool[current].z;
    // A grid that has become smaller may have lost the cell, and with it all ways on.
    if (!field->has(x, z))
        return true;
    const std::size_t number = field->numberOf(x, z);
    unsigned left = field->findWalkable(x, z);
    // What is beside the parent was reached from there for no more, unless it was another world then.
    if (isSteady)
        left &= BEYOND[nodePool[current].cameBy];
    for (; left != 0; left &= left - 1)
    {
        const int direction = std::countr_zero(left);
        if (rule && !rule->allows(x, z, direction))
            continue;
        if (!reach(current, number + static_cast<std::size_t>(field->stepTo(direction)), direction))
            return false;
    }
    return true;
}

/// Notes a way to a cell where it is the first or the cheapest one; false where the pool is full.
inline bool PathSearch::reach(Index from, std::size_t number, int direction)
{
    const int x = nodePool[from].x + CELL_STEPS[direction].dx, z = nodePool[from].z + CELL_STEPS[direction].dz;
    const float cost = calculateNodeCost(nodePool[from].movementCost, field->saturationAt(number));
    const float totalCost = cost + leftFrom(x, z);
    Index index = FIND_NODE(number);
    if (index == NONE)
    {
        index = createNode(number, x, z);
        if (index == NONE)
            return false;
    }
    else
    {
        if (!(nodePool[index].totalCost > totalCost))
            return true;
        if (openList.holds(index))
            openList.remove(index);
    }
    ReachedCell &cell = nodePool[index];
    cell.movementCost = cost;
    cell.totalCost = totalCost;
    cell.parent = from;
    cell.cameBy = static_cast<std::uint8_t>(direction);
    openList.insert(index);
    return true;
}

/// Gives a cell the next place of the pool, without a way to it; NONE where the pool is full.
inline PathSearch::Index PathSearch::createNode(std::size_t number, int x, int z)
{
    if (poolIndex == PAGE_SIZE)
        return NONE;
    const Index index = poolIndex++;
    nodePool[index].x = x;
    nodePool[index].z = z;
    INSERT_NODE(number, index);
    return index;
}

PathNode *PathSearch::layOutPath()
{
    if (found == NONE)
        return nullptr;
    std::size_t count = 0;
    for (Index index = found; index != NONE; index = nodePool[index].parent)
        ++count;
    path.fit(std::bit_ceil(count));
    PathNode *node = path.data();
    for (Index index = found; index != NONE; index = nodePool[index].parent, ++node)
    {
        const ReachedCell &cell = nodePool[index];
        *node = PathNode{cellOf(cell), cell.movementCost, leftFrom(cell.x, cell.z), cell.totalCost,
                         cell.parent == NONE ? nullptr : node + 1};
    }
    return path.data();
}

void PathSearch::listCells(bool waiting, HexCont &cells) const
{
    std::vector<ReachedCell> listed;
    for (Index index = 0; index < poolIndex; ++index)
        if (openList.holds(index) == waiting)
            listed.push_back(nodePool[index]);
    std::sort(listed.begin(), listed.end(), NodeComp());
    cells.clear();
    for (const ReachedCell &reached : listed)
        cells.push_back(cellOf(reached));
}
