// PathSaturation: the traces that paths leave, which have later ones keep away.
#pragma once

#include "ai/paths/PathMemory.h"
#include "physics/grid/GridCell.h"

#include <cstddef>
#include <cstdint>
#include <vector>

class SquareGrid;

/// Raises the values of a saturation grid along paths and around them.
///
/// Keeps working memory from call to call; borrows the grid for each.
class PathSaturation
{
public:
    /// Marks a cell of a path and the cells around it, unless it is marked that strongly already.
    /// @param most  what a cell gains
    void mark(SquareGrid &grid, int x, int z, float most);
    /// Spreads the value of a cell to its neighbours and on from those, ever less of it.
    ///
    /// A cell gains once at most, and only from one that has the root of its value above the other's. On from a cell it
    /// spreads only into those that it was the first to reach, so that it comes to an end.
    void diffuseSaturation(SquareGrid &grid, int x, int z);

    /// Lets a grid's values sink; they fall slowest about 3.5 times `most`, and never below 0.
    static void updateSatMap(SquareGrid &grid, float most);
    /// Whether a cell is not crowded: its value is at most three quarters of `most`. No cell of a grid is none.
    static bool sampleSatMap(const SquareGrid &grid, const GridCell &hex, float most);

private:
    /// The cells that a call has reached first and still spreads on to.
    struct Reached
    {
        std::size_t next;
        std::size_t end;
    };
    struct Cell
    {
        int x;
        int z;
    };

    Reached reachFrom(SquareGrid &grid, Cell from);
    bool visit(const SquareGrid &grid, Cell cell);

    std::vector<Cell> visitedNeighbors;
    std::vector<Reached> calls;      ///< within each other
    PathArray<std::uint64_t> visits; ///< by cell, the spreading that came by last
    std::uint64_t visitNumber = 0;   ///< of this spreading
};
