#include "ai/paths/PathSearch.h"

#include "ai/paths/CellSteps.h"

#include <bit>

bool isWalkable(const GridCell &cell)
{
    return cell.getFloatValue() == 0.f;
}

bool PathSearch::begin(const PathGround &ground, const GridCell &start, const GridCell &target)
{
    clear();
    if (target.getGrid() != start.getGrid() || !ground.main.isCellInBounds(target.getX(), target.getZ()))
        return false;
    nodePool.fit(PAGE_SIZE);
    openList.setPool(nodePool.data(), PAGE_SIZE);
    destination = target;
    grid = start.getGrid();
    chooseField(grid);
    field->follow(ground.main, ground.saturation);
    const OpenList::Index first = createNode(field->numberOf(start.getX(), start.getZ()), start.getX(), start.getZ());
    nodePool[first].totalCost = nodePool[first].movementCost + nodePool[first].heuristic;
    openList.insert(first);
    return true;
}

/// Finds the field of a grid, or gives it that of another one.
void PathSearch::chooseField(const Handle<SquareGrid> &wanted)
{
    for (field = fields; field != fields + FIELDS; ++field)
        if (field->getGrid() == wanted)
            return;
    field = &fields[nextField];
    nextField = (nextField + 1) % FIELDS;
}

void PathSearch::clear()
{
    if (poolIndex > 0)
        openList.clear();
    poolIndex = 0;
    finalNode = nullptr;
}

PathStatus PathSearch::run(const PathGround &ground, int passes)
{
    if (!prepare(ground))
        return PS_Failed;
    for (int pass = 0; pass < passes; ++pass)
    {
        const OpenList::Index current = openList.takeFirst();
        if (current == OpenList::NONE)
            return PS_Failed;
        if (nodePool[current].hex == destination)
        {
            finalNode = &nodePool[current];
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
    if (field->follow(ground.main, ground.saturation))
        nameNodes();
    return true;
}

/// Has the cells name their nodes again after they were numbered anew.
void PathSearch::nameNodes()
{
    PathField &cells = *field;
    for (std::size_t node = 0; node < poolIndex; ++node)
    {
        const GridCell &hex = nodePool[node].hex;
        if (cells.has(hex.getX(), hex.getZ()))
            cells.nodeAt(cells.numberOf(hex.getX(), hex.getZ())) = static_cast<OpenList::Index>(node);
    }
}

/// Reaches the neighbours of a node; false where the nodes have run out.
bool PathSearch::expand(OpenList::Index current, const StepRule *rule)
{
    PathNode &from = nodePool[current];
    PathField &cells = *field;
    const int x = from.hex.getX(), z = from.hex.getZ();
    // A grid that has become smaller may have lost the node's cell, and with it all ways on.
    if (!cells.has(x, z))
        return true;
    const std::size_t cell = cells.numberOf(x, z);
    for (unsigned left = cells.findWalkable(x, z); left != 0; left &= left - 1)
    {
        const int direction = std::countr_zero(left);
        if (rule && !rule->allows(x, z, direction))
            continue;
        if (!reach(from, cell + static_cast<std::size_t>(cells.stepTo(direction)), x + CELL_STEPS[direction].dx,
                   z + CELL_STEPS[direction].dz))
            return false;
    }
    return true;
}

/// Notes a way to a cell where it is the first or the cheapest one; false where the nodes have run out.
inline bool PathSearch::reach(PathNode &from, std::size_t cell, int x, int z)
{
    const float cost = calculateNodeCost(from.movementCost, field->saturationAt(cell));
    OpenList::Index index = findNode(cell, x, z);
    if (index == OpenList::NONE)
    {
        index = createNode(cell, x, z);
        if (index == OpenList::NONE)
            return false;
    }
    else
    {
        if (!(nodePool[index].totalCost > cost + nodePool[index].heuristic))
            return true;
        if (openList.holds(index))
            openList.remove(index);
    }
    PathNode &node = nodePool[index];
    node.parent = &from;
    node.movementCost = cost;
    node.totalCost = cost + node.heuristic;
    openList.insert(index);
    return true;
}

/// The next node of the pool for a cell, without a way to it; NONE where there is none left.
inline OpenList::Index PathSearch::createNode(std::size_t cell, int x, int z)
{
    if (poolIndex == PAGE_SIZE)
        return OpenList::NONE;
    const OpenList::Index index = static_cast<OpenList::Index>(poolIndex++);
    PathNode &node = nodePool[index];
    node.hex = GridCell(grid, x, z);
    node.movementCost = 0.f;
    node.parent = nullptr;
    node.heuristic = calculateNodeHeuristic(node.hex, destination);
    field->nodeAt(cell) = index;
    return index;
}

void PathSearch::listCells(bool waiting, HexCont &cells) const
{
    cells.clear();
    for (std::size_t node = 0; node < poolIndex; ++node)
        if (openList.holds(static_cast<OpenList::Index>(node)) == waiting)
            cells.push_back(nodePool[node].hex);
}
