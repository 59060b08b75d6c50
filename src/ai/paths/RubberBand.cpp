#include "ai/paths/RubberBand.h"

#include "physics/grid/SquareGrid.h"

#include <algorithm>

void doRubberbanding(SquareGrid &mainGrid, PathNode *finalNode, const StepRule *rule)
{
    PathNode *first = finalNode;
    PathNode *middle = first ? first->parent : nullptr;
    PathNode *last = middle ? middle->parent : nullptr;
    while (last)
    {
        if (checkTriplet(mainGrid, first, middle, last) && (!rule || rule->allowsStraight(first->hex, last->hex)))
            first->parent = last;
        else
            first = middle;
        middle = last;
        last = last->parent;
    }
}

bool checkTriplet(SquareGrid &mainGrid, const PathNode *first, const PathNode *middle, const PathNode *last)
{
    if (!first || !middle || !last)
        return false;
    const auto [minX, maxX] = std::minmax({first->hex.getX(), last->hex.getX()});
    const auto [minZ, maxZ] = std::minmax({first->hex.getZ(), last->hex.getZ()});
    const auto isFree = [&](int x, int z) { return mainGrid.getCellFloatValue(x, z) == 0.f; };
    if (maxZ - minZ == 1)
        return isFree(minX + 1, minZ) && isFree(minX + 1, maxZ);
    for (int z = minZ; z <= maxZ; ++z)
        for (int x = minX; x <= maxX; ++x)
            if (!isFree(x, z))
                return false;
    return true;
}
