// GridCell: the name of one cell of one square grid.
#pragma once

#include "object/tree/Handle.h"

#include "foundation/ErrorCode.h"
#include "foundation/Vector.h"

#include <cstddef>
#include <vector>

class GridCell;
class SquareGrid;
class Variant;

/// Cells in an order of their owner's.
typedef std::vector<GridCell> HexCont;

/// Names one cell of one `SquareGrid` and reads and writes its value.
///
/// A value that is copied freely: it keeps neither its grid alive nor its cell within the grid. Distances measure x and
/// z only, and the world is the space in which the transform of the cell's grid holds its numbers, metres.
class GridCell
{
public:
    /// A cell of no grid.
    GridCell() = default;
    GridCell(Handle<SquareGrid> grid, int x, int z) : grid(grid), x(x), z(z) {}

    /// Stores a value; BAD_HANDLE if the grid is gone, OUT_OF_BOUNDS, with nothing stored, if it has no such cell.
    ErrorCode setValue(const Vec4 &value) const;
    /// Stores the first component of the value; fails as `setValue` does.
    ErrorCode setFloatValue(float value) const;
    /// Stores one component of the value; fails as `setValue` does, and with OUT_OF_BOUNDS for an idx above 3.
    ErrorCode setFloatValue(std::size_t idx, float value) const;

    /// Column, counted along x.
    int getX() const { return x; }
    /// Row, counted along z.
    int getZ() const { return z; }
    /// The grid that the cell is meant in; it need not live.
    Handle<SquareGrid> getGrid() const { return grid; }
    /// Whether the grid lives and has this cell.
    bool isValid() const;
    /// Centre of the cell; the zero vector if it is not valid.
    Vec4 getWorldCoords() const;
    /// The cell's value; the zero vector if it is not valid.
    Vec4 getValue() const;
    /// One component of the cell's value; a quiet NaN if the cell is not valid or idx is above 3.
    float getFloatValue(std::size_t idx = 0) const;
    /// The cell beside this one, which the grid need not have; `i` is a `SquareGrid::Neighbor`. No cell if the grid is
    /// gone.
    GridCell getNeighbor(int i) const;
    /// The cells around this one that the grid has, from the right one on counterclockwise; none if the grid is gone.
    HexCont getValidNeighbors() const;

    /// |dx| + |dz|, cells.
    float gridManhattanDistance(const GridCell &rhs) const;
    /// |dx| + |dz| of the centres, metres.
    float worldManhattanDistance(const GridCell &rhs) const;
    /// Straight distance, cells.
    float gridDistance(const GridCell &rhs) const;
    /// Straight distance of the centres, metres.
    float worldDistance(const GridCell &rhs) const;
    /// Square of the straight distance, cells.
    float gridDistanceSquared(const GridCell &rhs) const;
    /// Square of the straight distance of the centres, metres.
    float worldDistanceSquared(const GridCell &rhs) const;

    /// Whether both name the same cell of the same grid.
    bool operator==(const GridCell &rhs) const = default;

private:
    Handle<SquareGrid> grid;
    int x = -1;
    int z = -1;
};

/// How cells cross the reflection layer: as the script class `GridCell`, several of them as a list.
///
/// Without scripts there is nothing for them to become, and the Variant stays empty. A script may pass any sequence.
/// @{
void SetToVariant(Variant &v, const GridCell &cell);
bool fromVariant(const Variant &v, GridCell &cell);
bool fromVariant(const Variant &v, HexCont &cells);
/// @}
