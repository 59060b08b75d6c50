#include "ai/paths/PathSaturation.h"

#include "physics/grid/SquareGrid.h"

#include <cmath>

namespace
{
constexpr float LEAST_SPREADING = 1.5f; ///< root of a value that reaches the neighbours
constexpr float CROWDED = 0.75f;        ///< share of the most that a cell gains
} // namespace

void PathSaturation::mark(SquareGrid &grid, int x, int z, float most)
{
    const float value = grid.getCellFloatValue(x, z);
    if (!(most > value))
        return;
    grid.setCellFloatValue(x, z, value + most);
    diffuseSaturation(grid, x, z);
}

void PathSaturation::diffuseSaturation(SquareGrid &grid, int x, int z)
{
    if (!grid.isCellInBounds(x, z))
        return;
    visits.fit(static_cast<std::size_t>(grid.getGridCols()) * static_cast<std::size_t>(grid.getGridRows()));
    ++visitNumber;
    visitedNeighbors.clear();
    calls.assign(1, reachFrom(grid, Cell{x, z}));
    while (!calls.empty())
    {
        Reached &call = calls.back();
        if (call.next == call.end)
            calls.pop_back();
        else
            calls.push_back(reachFrom(grid, visitedNeighbors[call.next++]));
    }
}

/// Raises those neighbours of a cell that were not reached before and have less than it gives.
PathSaturation::Reached PathSaturation::reachFrom(SquareGrid &grid, Cell from)
{
    const std::size_t first = visitedNeighbors.size();
    const float given = std::sqrt(grid.getCellFloatValue(from.x, from.z));
    for (int i = 0; i < SquareGrid::NUM_NEIGHBORS && !(given < LEAST_SPREADING); ++i)
    {
        const GridCell neighbor = grid.getCellNeighbor(from.x, from.z, static_cast<SquareGrid::Neighbor>(i));
        const Cell cell{neighbor.getX(), neighbor.getZ()};
        const float value = grid.getCellFloatValue(cell.x, cell.z);
        if (given > value && visit(grid, cell))
            grid.setCellFloatValue(cell.x, cell.z, value + given);
    }
    return Reached{first, visitedNeighbors.size()};
}

/// Notes a cell as reached; false where it was before.
bool PathSaturation::visit(const SquareGrid &grid, Cell cell)
{
    std::uint64_t &last = visits[static_cast<std::size_t>(grid.getGridCols()) * static_cast<std::size_t>(cell.z) +
                                 static_cast<std::size_t>(cell.x)];
    if (last == visitNumber)
        return false;
    last = visitNumber;
    visitedNeighbors.push_back(cell);
    return true;
}

void PathSaturation::updateSatMap(SquareGrid &grid, float most)
{
    for (int z = 0; z < grid.getGridRows(); ++z)
        for (int x = 0; x < grid.getGridCols(); ++x)
        {
            float value = grid.getCellFloatValue(x, z);
            if (value == 0.f)
                continue;
            const float u = value / most - 3.5f;
            value -= (u * u - 2.f) * 0.16666667f;
            grid.setCellFloatValue(x, z, value < 0.f ? 0.f : value);
        }
}

bool PathSaturation::sampleSatMap(const SquareGrid &grid, const GridCell &hex, float most)
{
    return grid.isCellInBounds(hex.getX(), hex.getZ()) &&
           !(grid.getCellFloatValue(hex.getX(), hex.getZ()) > most * CROWDED);
}
