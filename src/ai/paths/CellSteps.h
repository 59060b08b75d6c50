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

/// Whether two cells are the same or beside each other, by what they differ in.
constexpr bool areBeside(int dx, int dz)
{
    return dx >= -1 && dx <= 1 && dz >= -1 && dz <= 1;
}
