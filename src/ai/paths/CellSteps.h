// CellSteps: the steps from a cell to its neighbours.
#pragma once

#include "physics/grid/SquareGrid.h"

/// The way to a cell beside another one, cells.
struct CellStep
{
    int dx;
    int dz;
};

/// By SquareGrid::Neighbor.
inline constexpr CellStep CELL_STEPS[SquareGrid::NUM_NEIGHBORS] = {{1, 0},  {1, -1}, {0, -1}, {-1, -1},
                                                                   {-1, 0}, {-1, 1}, {0, 1},  {1, 1}};
