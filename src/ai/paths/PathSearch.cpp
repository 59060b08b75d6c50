#include "ai/paths/PathSearch.h"

#include "ai/paths/CellSteps.h"

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
    renumber(ground.main.getGridCols(), ground.main.getGridRows());
    const std::size_t cell = static_cast<std::size_t>(cols) * static_cast<std::size_t>(start.getZ()) +
                             static_cast<std::size_t>(start.getX());
    PathNode &first = *createNode(cell, start.getX(), start.getZ());
    first.totalCost = first.movementCost + first.heuristic;
    openList.insert(0);
    return true;
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
    Field field;
    if (!prepare(ground, field))
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
        if (!expand(field, current))
            return PS_Failed;
    }
    return openList.isEmpty() ? PS_Failed : PS_InProgress;
}

bool PathSearch::prepare(const PathGround &ground, Field &field)
{
    SquareGrid &main = ground.main;
    if (isEmpty() || getHandle(&main) != grid)
        return false;
    if (main.getGridCols() != cols || main.getGridRows() != rows)
        renumber(main.getGridCols(), main.getGridRows());
    if (cols <= 0 || rows <= 0)
        return false;
    SquareGrid *const crowd = ground.saturation;
    const bool isAlike = crowd && crowd->getGridCols() == cols && crowd->getGridRows() == rows;
    field.walkable = &main.getCellRef(0, 0);
    field.saturation = isAlike ? &crowd->getCellRef(0, 0) : nullptr;
    field.odd = isAlike ? nullptr : crowd;
    field.rule = ground.rule;
    field.cols = cols;
    field.rows = rows;
    return true;
}

/// Has cells find their nodes under the numbers that they have in a grid of some size.
void PathSearch::renumber(int newCols, int newRows)
{
    cols = newCols;
    rows = newRows;
    nodeOfCell.fit(static_cast<std::size_t>(cols) * static_cast<std::size_t>(rows));
    for (std::size_t node = 0; node < poolIndex; ++node)
    {
        const int x = nodePool[node].hex.getX(), z = nodePool[node].hex.getZ();
        if (x < cols && z < rows)
            nodeOfCell[static_cast<std::size_t>(cols) * static_cast<std::size_t>(z) + static_cast<std::size_t>(x)] =
                static_cast<OpenList::Index>(node);
    }
}

float PathSearch::Field::saturationAt(std::size_t cell, int x, int z) const
{
    if (saturation)
        return saturation[cell].x;
    return odd ? odd->getCellFloatValue(x, z) : 0.f;
}

/// Reaches the neighbours of a node; false where the nodes have run out.
bool PathSearch::expand(const Field &field, OpenList::Index current)
{
    PathNode &from = nodePool[current];
    const int x = from.hex.getX(), z = from.hex.getZ();
    for (int direction = 0; direction < SquareGrid::NUM_NEIGHBORS; ++direction)
    {
        const int nextX = x + CELL_STEPS[direction].dx, nextZ = z + CELL_STEPS[direction].dz;
        if (static_cast<unsigned>(nextX) >= static_cast<unsigned>(field.cols) ||
            static_cast<unsigned>(nextZ) >= static_cast<unsigned>(field.rows))
            continue;
        const std::size_t cell =
            static_cast<std::size_t>(field.cols) * static_cast<std::size_t>(nextZ) + static_cast<std::size_t>(nextX);
        if (!(field.walkable[cell].x == 0.f) || (field.rule && !field.rule->allows(x, z, direction)))
            continue;
        if (!reach(field, from, cell, nextX, nextZ))
            return false;
    }
    return true;
}

/// Notes a way to a cell where it is the first or the cheapest one; false where the nodes have run out.
bool PathSearch::reach(const Field &field, PathNode &from, std::size_t cell, int x, int z)
{
    const float cost = calculateNodeCost(from.movementCost, field.saturationAt(cell, x, z));
    OpenList::Index index = findNode(cell, x, z);
    if (index == OpenList::NONE)
    {
        PathNode *const made = createNode(cell, x, z);
        if (!made)
            return false;
        index = indexOf(*made);
    }
    else
    {
        const PathNode &known = nodePool[index];
        if (!(known.totalCost > cost + known.heuristic))
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

/// The next node of the pool for a cell, without a way to it; null where there is none left.
PathNode *PathSearch::createNode(std::size_t cell, int x, int z)
{
    if (poolIndex == PAGE_SIZE)
        return nullptr;
    PathNode &node = nodePool[poolIndex];
    node.hex = GridCell(grid, x, z);
    node.movementCost = 0.f;
    node.parent = nullptr;
    node.heuristic = calculateNodeHeuristic(node.hex, destination);
    nodeOfCell[cell] = static_cast<OpenList::Index>(poolIndex++);
    return &node;
}

void PathSearch::listCells(bool waiting, HexCont &cells) const
{
    cells.clear();
    for (std::size_t node = 0; node < poolIndex; ++node)
        if (openList.holds(static_cast<OpenList::Index>(node)) == waiting)
            cells.push_back(nodePool[node].hex);
}
