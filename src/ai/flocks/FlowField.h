// FlowField: how the components of flow fields reach a map's field, and the cells around a place of it.
#pragma once

#include "physics/grid/CellRect.h"
#include "physics/grid/SquareGrid.h"

#include <cmath>
#include <vector>

class DebugCollectorComponent;
class TransformComponent;

/// The field of flows of the map that a transform lies in, ".MapData_flowGrid/grid" below it; invalid for none.
Handle<SquareGrid> findFlowField(TransformComponent &transform);

/// Calls a function with x and z of each cell in the square of cells within a radius of a cell, row by row.
///
/// Cells that the grid does not have are left out.
/// @param radius  metres; none for what is below 0 or no number
template <class Function>
void forEachCellWithin(const SquareGrid &grid, const GridCell &cell, float radius, Function function)
{
    if (!(radius >= 0.f))
        return;
    const auto reach =
        static_cast<double>(toCell(static_cast<double>(radius) / static_cast<double>(grid.getCellSize())));
    const CellRect whole{0, 0, grid.getGridCols() - 1, grid.getGridRows() - 1};
    const CellRect around{toCell(cell.getX() - reach), toCell(cell.getZ() - reach), toCell(cell.getX() + reach),
                          toCell(cell.getZ() + reach)};
    const CellRect cells = whole.common(around);
    for (int z = cells.minZ; z <= cells.maxZ; ++z)
        for (int x = cells.minX; x <= cells.maxX; ++x)
            function(x, z);
}

/// Distance of two places seen from above.
float flatDistance(const Vec4 &one, const Vec4 &other);

/// Makes points on a level circle, for developers to see; none for a radius that is not above 0.
void layPerimeter(const Vec4 &centre, float radius, std::vector<Vec4> &points);
/// Draws a closed line through points.
void drawPerimeter(DebugCollectorComponent &collector, const std::vector<Vec4> &points, const Vec4 &color);
