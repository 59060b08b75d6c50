// PathField: what a search reads of a grid, cell beside cell.
#pragma once

#include "ai/paths/PathMemory.h"

#include "object/tree/Handle.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

class SquareGrid;

/// The cells of a path grid and of the saturation grid beside it, packed: the grids keep four numbers a cell, of which
/// a search needs one each, and reads them all over the place.
///
/// Follows the grids row by row, when they have changed. What can be walked on is one bit a cell.
class PathField
{
public:
    /// What following the grids has brought.
    enum Following
    {
        UNCHANGED,
        CHANGED, ///< cells have other values
        ANEW     ///< the cells are numbered anew, and know no nodes
    };

    /// Brings the cells up to date.
    /// @param saturation  null for none; cells that it has not count as 0
    Following follow(const SquareGrid &main, const SquareGrid *saturation);
    /// Has no cell name a node any more.
    void forgetNodes();

    Handle<SquareGrid> getGrid() const { return hMain; }
    bool has(int x, int z) const { return x >= 0 && x < cols && z >= 0 && z < rows; }
    std::size_t numberOf(int x, int z) const
    {
        return static_cast<std::size_t>(cols) * static_cast<std::size_t>(z) + static_cast<std::size_t>(x);
    }
    /// What the number of a cell differs from that of a neighbour, by SquareGrid::Neighbor.
    std::ptrdiff_t stepTo(int direction) const { return steps[direction]; }
    /// What a cell costs beyond 1; 0 for what is no number in the grid.
    float saturationAt(std::size_t number) const { return crowdedRows > 0 ? saturations[number] : 0.f; }
    /// Name of the node of a cell, of the search that came by last; 0 where none did.
    std::uint32_t &nodeAt(std::size_t number) { return nodes[number]; }
    /// The neighbours of a cell that can be walked on, as bits by SquareGrid::Neighbor; none off the grid.
    unsigned findWalkable(int x, int z) const
    {
        const unsigned nine = rowBits(x, z) | rowBits(x, z + 1) << 3 | rowBits(x, z + 2) << 6;
        return NEIGHBORS[nine];
    }

private:
    /// What nine bits, row by row, say of the eight cells around the middle one, by SquareGrid::Neighbor.
    static const std::array<std::uint8_t, 512> NEIGHBORS;

    /// The bits of a cell and those beside it, in a row of the bits, which begin with a border row.
    unsigned rowBits(int x, int row) const
    {
        const std::uint8_t *const bytes =
            &bits[static_cast<std::size_t>(row) * rowBytes + static_cast<unsigned>(x) / 8];
        return (bytes[0] | static_cast<unsigned>(bytes[1]) << 8) >> static_cast<unsigned>(x) % 8 & 7u;
    }
    std::size_t countCells() const { return numberOf(0, rows); }
    void layOut(const SquareGrid &main);
    void readRow(const SquareGrid &main, const SquareGrid *saturation, int z);

    /// Of a row, the grids' counts of changes when it was read.
    struct RowState
    {
        std::uint32_t main = 0;
        std::uint32_t saturation = 0;
        bool isCrowded = false; ///< some cell costs other than 1
    };

    Handle<SquareGrid> hMain;
    Handle<SquareGrid> hSaturation;
    RowState seen; ///< the grids' counts as a whole
    int cols = 0;
    int rows = 0;
    std::ptrdiff_t steps[8] = {};
    PathArray<std::uint32_t> nodes; ///< by cell
    PathArray<float> saturations;   ///< by cell
    int crowdedRows = 0;
    PathArray<std::uint8_t> bits;    ///< whether one can walk there; with a border of a cell, where nobody can
    std::size_t rowBytes = 0;        ///< of a row of bits
    std::vector<RowState> rowStates; ///< by row
};
