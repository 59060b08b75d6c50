#include "physics/grid/GridCell.h"

#include "physics/grid/SquareGrid.h"

#include <cmath>
#include <limits>

ErrorCode GridCell::setValue(const Vec4 &value) const
{
    const auto owner = grid.lookup();
    if (!owner)
        return ErrorCode::BAD_HANDLE;
    if (!owner->isCellInBounds(x, z))
        return ErrorCode::OUT_OF_BOUNDS;
    owner->setCellValue(x, z, value);
    return ErrorCode::SUCCESS;
}

ErrorCode GridCell::setFloatValue(float value) const
{
    return setFloatValue(0, value);
}

ErrorCode GridCell::setFloatValue(std::size_t idx, float value) const
{
    const auto owner = grid.lookup();
    if (!owner)
        return ErrorCode::BAD_HANDLE;
    if (!owner->isCellInBounds(x, z) || idx >= SquareGrid::VALUE_COMPONENTS)
        return ErrorCode::OUT_OF_BOUNDS;
    owner->setCellFloatValue(x, z, idx, value);
    return ErrorCode::SUCCESS;
}

bool GridCell::isValid() const
{
    const auto owner = grid.lookup();
    return owner && owner->isCellInBounds(x, z);
}

Vec4 GridCell::getWorldCoords() const
{
    const auto owner = grid.lookup();
    return owner && owner->isCellInBounds(x, z) ? owner->getCellWorldCoords(x, z) : Vec4();
}

Vec4 GridCell::getValue() const
{
    const auto owner = grid.lookup();
    return owner ? owner->getCellValue(x, z) : Vec4();
}

float GridCell::getFloatValue(std::size_t idx) const
{
    const auto owner = grid.lookup();
    return owner ? owner->getCellFloatValue(x, z, idx) : std::numeric_limits<float>::quiet_NaN();
}

GridCell GridCell::getNeighbor(int i) const
{
    const auto owner = grid.lookup();
    return owner ? owner->getCellNeighbor(x, z, static_cast<SquareGrid::Neighbor>(i)) : GridCell();
}

HexCont GridCell::getValidNeighbors() const
{
    const auto owner = grid.lookup();
    return owner ? owner->getCellValidNeighbors(x, z) : HexCont();
}

float GridCell::gridManhattanDistance(const GridCell &rhs) const
{
    // In doubles, since the difference of two ints need not fit one.
    return static_cast<float>(std::fabs(static_cast<double>(x) - rhs.x) + std::fabs(static_cast<double>(z) - rhs.z));
}

float GridCell::worldManhattanDistance(const GridCell &rhs) const
{
    const Vec4 between = getWorldCoords() - rhs.getWorldCoords();
    return std::fabs(between.x) + std::fabs(between.z);
}

float GridCell::gridDistance(const GridCell &rhs) const
{
    return std::sqrt(gridDistanceSquared(rhs));
}

float GridCell::worldDistance(const GridCell &rhs) const
{
    return std::sqrt(worldDistanceSquared(rhs));
}

float GridCell::gridDistanceSquared(const GridCell &rhs) const
{
    const double dx = static_cast<double>(x) - rhs.x, dz = static_cast<double>(z) - rhs.z;
    return static_cast<float>(dx * dx + dz * dz);
}

float GridCell::worldDistanceSquared(const GridCell &rhs) const
{
    const Vec4 between = getWorldCoords() - rhs.getWorldCoords();
    return between.x * between.x + between.z * between.z;
}
