#include "physics/grid/SquareGrid.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/transforms/TransformComponent.h"
#include "physics/grid/CellRect.h"

#include "foundation/Assertions.h"
#include "foundation/Logger.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

struct CellOffset
{
    int dx;
    int dz;
};

/// By SquareGrid::Neighbor.
constexpr CellOffset NEIGHBOR_OFFSETS[SquareGrid::NUM_NEIGHBORS] = {{1, 0},  {1, -1}, {0, -1}, {-1, -1},
                                                                    {-1, 0}, {-1, 1}, {0, 1},  {1, 1}};

/// A coordinate moved by one step, which stops at the ends of the numbers.
int stepped(int coordinate, int step)
{
    if (step > 0)
        return coordinate < std::numeric_limits<int>::max() ? coordinate + step : coordinate;
    return coordinate > std::numeric_limits<int>::min() ? coordinate + step : coordinate;
}

/// Name of a grid's entity, for messages.
String entityNameOf(const SquareGrid &grid)
{
    const auto entity = grid.getParent().lookup();
    return entity ? entity->getName() : SCS("no entity");
}

} // namespace

void SquareGrid::onLoadComplete()
{
    updateSize();
}

void SquareGrid::updateSize()
{
    const auto transform = findTransform().lookup();
    KV_ASSERT(transform, "SquareGrid requires a transform sibling");
    if (!transform)
        return;
    const Vec4 scale = transform->getScale();
    const double newCols = std::trunc(static_cast<double>(scale.x / cellSize));
    const double newRows = std::trunc(static_cast<double>(scale.z / cellSize));
    const bool usable = newCols >= 0 && newCols <= MOST_CELLS && newRows >= 0 && newRows <= MOST_CELLS &&
                        newCols * newRows <= MOST_CELLS;
    const auto tell = [&](Logger_::Importance importance, const char *outcome)
    {
        KV_LOGF(importance,
                "The square grid of %s %s: its transform's scale of %g x %g m in cells of %g m must give at least one "
                "and at most %d. Set the scale or cellSize and call updateSize.",
                entityNameOf(*this).toCString(), outcome, static_cast<double>(scale.x), static_cast<double>(scale.z),
                static_cast<double>(cellSize), MOST_CELLS);
    };
    if (!usable)
        return tell(Logger_::I_ERROR, "keeps the cells that it has");
    resize(static_cast<int>(newCols), static_cast<int>(newRows));
    if (grid.empty())
        tell(Logger_::I_WARNING, "has no cells");
}

void SquareGrid::resize(int newCols, int newRows)
{
    if (newCols < 0 || newRows < 0 || static_cast<std::int64_t>(newCols) * newRows > MOST_CELLS)
        return; // called by name; updateSize tells of such sizes
    ValueList values(static_cast<std::size_t>(newCols) * static_cast<std::size_t>(newRows));
    const int keptCols = std::min(cols, newCols), keptRows = std::min(rows, newRows);
    for (int z = 0; z < keptRows; ++z)
        std::copy_n(grid.begin() + static_cast<std::ptrdiff_t>(cellIndex(0, z)), keptCols,
                    values.begin() + static_cast<std::ptrdiff_t>(newCols) * z);
    grid.swap(values);
    cols = newCols;
    rows = newRows;
    rowChanges.assign(static_cast<std::size_t>(rows), ++changeCount);
}

void SquareGrid::setCellSize(float value)
{
    if (!(value > 0.f) || !std::isfinite(value))
        return KV_LOGF(Logger_::I_ERROR,
                       "The square grid of %s cannot have cells of %g m: it keeps those of %g m. Set its cellSize to a "
                       "number above 0.",
                       entityNameOf(*this).toCString(), static_cast<double>(value), static_cast<double>(cellSize));
    cellSize = value;
}

void SquareGrid::setCellValue(int x, int z, const Vec4 &value)
{
    if (!isCellInBounds(x, z))
        return;
    grid[cellIndex(x, z)] = value;
    noteChange(z);
}

void SquareGrid::setCellFloatValue(int x, int z, float value)
{
    setCellFloatValue(x, z, 0, value);
}

void SquareGrid::setCellFloatValue(int x, int z, std::size_t idx, float value)
{
    if (!isCellInBounds(x, z) || idx >= VALUE_COMPONENTS)
        return;
    grid[cellIndex(x, z)].v[idx] = value;
    noteChange(z);
}

GridCell SquareGrid::getCellFromPoint(Vec4 coords, unsigned flags)
{
    const Matrix4 toGrid = getTransformationMatrix(flags | TransformComponent::INVERT);
    const Vec4 p = toGrid * Vec4(coords.x, coords.y, coords.z, 1.f);
    if (std::isnan(p.x) || std::isnan(p.z))
        return getCell(-1, -1);
    const auto cellAt = [this](float metres, int middle)
    { return toCell(middle + static_cast<double>(metres / cellSize) + 0.5); };
    return getCell(cellAt(p.x, cols / 2), cellAt(p.z, rows / 2));
}

Vec4 SquareGrid::getCellWorldCoords(float x, float z)
{
    return calcCellWorldCoords(getTransformationMatrix(0), x, z);
}

Vec4 SquareGrid::getCellWorldCoords(int x, int z)
{
    return getCellWorldCoords(static_cast<float>(x), static_cast<float>(z));
}

Vec4 SquareGrid::getCellModelCoords(float x, float z) const
{
    const int middleX = cols / 2, middleZ = rows / 2;
    return Vec4((x - static_cast<float>(middleX)) * cellSize, 0.f, (z - static_cast<float>(middleZ)) * cellSize, 1.f);
}

Vec4 SquareGrid::calcCellWorldCoords(const Matrix4 &txfrmMat, float x, float z) const
{
    return txfrmMat * getCellModelCoords(x, z);
}

Matrix4 SquareGrid::getTransformationMatrix(unsigned flags)
{
    const auto transform = findTransform().lookup();
    KV_ASSERT(transform, "SquareGrid requires a transform sibling");
    return transform ? transform->getTransformationMatrix(flags | TransformComponent::OMIT_SCALE) : Matrix4();
}

GridCell SquareGrid::getCell(int x, int z) const
{
    return GridCell(getHandle(this), x, z);
}

GridCell SquareGrid::getCellNeighbor(int x, int z, Neighbor i) const
{
    const bool known = i >= RIGHT && i < NUM_NEIGHBORS;
    KV_ASSERT(known, "Invalid value passed to SquareGrid::getCellNeighbor");
    if (!known)
        return GridCell();
    return getCell(stepped(x, NEIGHBOR_OFFSETS[i].dx), stepped(z, NEIGHBOR_OFFSETS[i].dz));
}

HexCont SquareGrid::getCellValidNeighbors(int x, int z) const
{
    HexCont neighbors;
    neighbors.reserve(NUM_NEIGHBORS);
    for (int i = 0; i < NUM_NEIGHBORS; ++i)
    {
        const GridCell neighbor = getCellNeighbor(x, z, static_cast<Neighbor>(i));
        if (isCellInBounds(neighbor.getX(), neighbor.getZ()))
            neighbors.push_back(neighbor);
    }
    return neighbors;
}

Vec4 SquareGrid::getCellValue(int x, int z) const
{
    return isCellInBounds(x, z) ? grid[cellIndex(x, z)] : Vec4();
}

float SquareGrid::getCellFloatValue(int x, int z, std::size_t idx) const
{
    if (!isCellInBounds(x, z) || idx >= VALUE_COMPONENTS)
        return std::numeric_limits<float>::quiet_NaN();
    return grid[cellIndex(x, z)].v[idx];
}

Vec4 &SquareGrid::getCellRef(int x, int z)
{
    static Vec4 outside;
    outside.reset();
    if (!isCellInBounds(x, z))
        return outside;
    noteChange(z);
    return grid[cellIndex(x, z)];
}

void SquareGrid::noteChange(int z)
{
    if (z >= 0 && z < rows)
        rowChanges[static_cast<std::size_t>(z)] = ++changeCount;
}

Handle<TransformComponent> SquareGrid::findTransform()
{
    return handle_cast<TransformComponent>(getSibling(ComponentKeys::transform));
}
