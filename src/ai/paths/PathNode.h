// PathNode: a cell of a path that was found.
#pragma once

#include "physics/grid/GridCell.h"

/// A cell of a path, with what the way to it costs.
struct PathNode
{
    GridCell hex;
    float movementCost = 0.f;   ///< of the way from the start
    float heuristic = 0.f;      ///< what is taken to be left
    float totalCost = 0.f;      ///< of both
    PathNode *parent = nullptr; ///< the node before it on the way; null for the start
};

/// Whether one can walk on a cell: its first value is exactly 0, which that of no cell off the grid is.
bool isWalkable(const GridCell &cell);
