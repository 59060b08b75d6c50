// CellRect: a rectangle of grid cells.
#pragma once

#include "foundation/Vector.h"

#include <algorithm>
#include <cmath>

/// Farthest cell from the grid's corner that is told apart; what lies farther counts as there.
inline constexpr float FARTHEST_CELL = 536870912.f; // 2^29: differences of two still fit an int

/// The number of the cell of a coordinate that is whole already, or truncated towards zero; 0 for no number.
inline int toCell(double coordinate)
{
    if (std::isnan(coordinate))
        return 0;
    return static_cast<int>(std::clamp<double>(coordinate, -FARTHEST_CELL, FARTHEST_CELL));
}

/// The first of some cells along an axis that does not lie before a coordinate; their count where all lie before it.
/// No number counts as 0.
inline int firstCell(float coordinate, int count)
{
    return static_cast<int>(std::min(std::max(0.f, coordinate), std::min(static_cast<float>(count), FARTHEST_CELL)));
}

/// The last of some cells along an axis that does not lie behind a coordinate; -1 where all lie behind it.
///
/// A coordinate between -1 and 0 counts as 0: truncation is towards zero. No number counts as behind all.
inline int lastCell(float coordinate, int count)
{
    const float last = std::min(static_cast<float>(count), FARTHEST_CELL) - 1.f;
    return static_cast<int>(std::max(std::min(last, coordinate), -1.f));
}

/// Cells from min to max on both axes, both included; empty when a max lies below its min.
struct CellRect
{
    int minX = 0;
    int minZ = 0;
    int maxX = -1;
    int maxZ = -1;

    /// The cells of a grid that lie between two cell coordinates, each truncated towards zero.
    ///
    /// Empty when a coordinate is no number.
    static CellRect between(const Vec4 &min, const Vec4 &max, int columns, int rows)
    {
        if (std::isnan(min.x) || std::isnan(min.z) || std::isnan(max.x) || std::isnan(max.z))
            return CellRect();
        return CellRect{firstCell(min.x, columns), firstCell(min.z, rows), lastCell(max.x, columns),
                        lastCell(max.z, rows)};
    }

    bool isEmpty() const { return maxX < minX || maxZ < minZ; }
    bool contains(const CellRect &rhs) const
    {
        return rhs.minX >= minX && rhs.maxX <= maxX && rhs.minZ >= minZ && rhs.maxZ <= maxZ;
    }
    /// The cells that both have.
    CellRect common(const CellRect &rhs) const
    {
        return CellRect{std::max(minX, rhs.minX), std::max(minZ, rhs.minZ), std::min(maxX, rhs.maxX),
                        std::min(maxZ, rhs.maxZ)};
    }
    bool operator==(const CellRect &rhs) const = default;

    /// Calls a function with each of the at most four rectangles of this one's cells that are not in the other.
    template <class Function>
    void forEachPieceOutside(const CellRect &rhs, Function function) const
    {
        const CellRect hole = common(rhs);
        if (hole.isEmpty())
            return function(*this);
        for (const CellRect &piece :
             {CellRect{minX, minZ, maxX, hole.minZ - 1}, CellRect{minX, hole.maxZ + 1, maxX, maxZ},
              CellRect{minX, hole.minZ, hole.minX - 1, hole.maxZ}, CellRect{hole.maxX + 1, hole.minZ, maxX, hole.maxZ}})
            if (!piece.isEmpty())
                function(piece);
    }
};
