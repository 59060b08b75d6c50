#include "ai/paths/PathField.h"

#include "ai/paths/CellSteps.h"

#include <algorithm>
#include <cmath>

namespace
{

/// The neighbours that can be walked on, for all patterns of three rows of three bits.
constexpr std::array<std::uint8_t, 512> findNeighbors()
{
    std::array<std::uint8_t, 512> found{};
    for (unsigned nine = 0; nine < found.size(); ++nine)
        for (unsigned i = 0; i < SquareGrid::NUM_NEIGHBORS; ++i)
        {
            const int bit = 3 * (CELL_STEPS[i].dz + 1) + CELL_STEPS[i].dx + 1;
            found[nine] = static_cast<std::uint8_t>(found[nine] | (nine >> bit & 1u) << i);
        }
    return found;
}

} // namespace

constinit const std::array<std::uint8_t, 512> PathField::NEIGHBORS = findNeighbors();

PathField::Following PathField::follow(const SquareGrid &main, const SquareGrid *saturation)
{
    const Handle<SquareGrid> newSaturation = saturation ? getHandle(saturation) : Handle<SquareGrid>();
    const RowState now{main.getChangeCount(), saturation ? saturation->getChangeCount() : 0, false};
    const bool isOther = getHandle(&main) != hMain || main.getGridCols() != cols || main.getGridRows() != rows;
    if (isOther)
        layOut(main);
    else if (newSaturation == hSaturation && now.main == seen.main && now.saturation == seen.saturation)
        return UNCHANGED;
    if (newSaturation != hSaturation)
        for (RowState &row : rowStates)
            row.main = 0; // no row of a grid was changed last before its first change
    hSaturation = newSaturation;
    seen = now;
    for (int z = 0; z < rows; ++z)
    {
        const std::uint32_t mainChange = main.getRowChange(z), change = saturation ? saturation->getRowChange(z) : 0;
        RowState &known = rowStates[static_cast<std::size_t>(z)];
        if (mainChange == known.main && change == known.saturation)
            continue;
        known.main = mainChange;
        known.saturation = change;
        readRow(main, saturation, z);
    }
    return isOther ? ANEW : CHANGED;
}

void PathField::forgetNodes()
{
    std::fill_n(nodes.data(), countCells(), 0u);
}

void PathField::layOut(const SquareGrid &main)
{
    hMain = getHandle(&main);
    cols = main.getGridCols();
    rows = main.getGridRows();
    for (int i = 0; i < SquareGrid::NUM_NEIGHBORS; ++i)
        steps[i] = static_cast<std::ptrdiff_t>(cols) * CELL_STEPS[i].dz + CELL_STEPS[i].dx;
    nodes.fit(countCells());
    forgetNodes();
    saturations.fit(countCells());
    crowdedRows = 0;
    rowBytes = static_cast<std::size_t>(cols) / 8 + 2;
    const std::size_t byteCount = rowBytes * (static_cast<std::size_t>(rows) + 2);
    bits.fit(byteCount);
    std::fill_n(bits.data(), byteCount, std::uint8_t(0));
    rowStates.assign(static_cast<std::size_t>(rows), RowState());
}

void PathField::readRow(const SquareGrid &main, const SquareGrid *saturation, int z)
{
    const Vec4 *const walkable = main.borrowRow(z);
    const int crowded = saturation && z < saturation->getGridRows() ? std::min(cols, saturation->getGridCols()) : 0;
    const Vec4 *const crowds = crowded > 0 ? saturation->borrowRow(z) : nullptr;
    float *const row = saturations.data() + numberOf(0, z);
    std::uint8_t *const rowOfBits = bits.data() + rowBytes * static_cast<std::size_t>(z + 1);
    std::fill_n(rowOfBits, rowBytes, std::uint8_t(0));
    bool isCrowded = false;
    for (int x = 0; x < cols; ++x)
    {
        const float crowd = x < crowded ? crowds[x].x : 0.f;
        row[x] = std::isnan(crowd) ? 0.f : crowd;
        isCrowded |= row[x] != 0.f;
        const unsigned bit = static_cast<unsigned>(x) + 1;
        rowOfBits[bit / 8] = static_cast<std::uint8_t>(rowOfBits[bit / 8] | (walkable[x].x == 0.f) << bit % 8);
    }
    RowState &state = rowStates[static_cast<std::size_t>(z)];
    crowdedRows += isCrowded - state.isCrowded;
    state.isCrowded = isCrowded;
}
