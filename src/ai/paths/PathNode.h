// PathNode: a cell that a search has reached.
#pragma once

#include "physics/grid/GridCell.h"

/// A cell that a search for a path has reached, and the cheapest way to it so far.
struct PathNode
{
    GridCell hex;
    float movementCost = 0.f;   ///< of the way from the start
    float heuristic = 0.f;      ///< what is taken to be left
    float totalCost = 0.f;      ///< of both
    PathNode *parent = nullptr; ///< the node before it on the way; null for the start
};
static_assert(sizeof(PathNode) == 32, "a search touches one node a line of the cache, or two");

/// Orders nodes by what their whole ways are taken to cost; of equal ones the one that came first stays in front.
struct CostComp
{
    bool operator()(const PathNode &lhs, const PathNode &rhs) const { return lhs.totalCost < rhs.totalCost; }
};

/// Whether one can walk on a cell: its first value is exactly 0, which that of no cell off the grid is.
bool isWalkable(const GridCell &cell);
