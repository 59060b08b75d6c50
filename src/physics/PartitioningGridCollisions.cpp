// PartitioningGrid: the pairs of volumes that share a cell.
#include "physics/PartitioningGrid.h"

#include "physics/BoundingVolume.h"
#include "physics/Collision.h"

#include "engine/RunningMark.h"

#include "foundation/ProfilerScope.h"

#include <algorithm>

namespace
{
const String &profilerCategory()
{
    static const String category = SCS("COLLISION");
    return category;
}

/// Room for the rounding of the exact tests, metres.
constexpr float SLACK = 1e-3f;
} // namespace

void PartitioningGrid::checkCollisions()
{
    static const String section = SCS("PartitioningGrid::checkCollisions");
    const ProfilerScope scope(profilerCategory(), section);
    if (walking) // called from a trigger's script
        return;
    const RunningMark mark(walking);
    grid.freeze();
    staticGrid.freeze();
    const int walkedColumns = columns, walkedRows = rows;
    for (int z = 0; z < walkedRows; ++z)
        for (int x = 0; x < walkedColumns; ++x)
            checkCell({x, z, walkedColumns * z + x});
    staticGrid.thaw();
    grid.thaw();
}

/// Tests the pairs of one cell.
void PartitioningGrid::checkCell(const WalkedCell &cell)
{
    const VolumeListGrid::SlotList moving = grid.slots(cell.index);
    if (moving.empty())
        return;
    const VolumeListGrid::SlotList fixed = staticGrid.slots(cell.index);
    for (std::size_t i = 0; i < moving.size(); ++i)
    {
        for (std::size_t j = i + 1; j < moving.size(); ++j)
            checkPair(grid, moving[i], moving[j], cell);
        for (const VolumeListGrid::Slot slot : fixed)
            checkPair(staticGrid, moving[i], slot, cell);
    }
}

/// Tests a moving volume with one of either list, in the first of the cells that they share: in the others the outcome
/// would be the same.
void PartitioningGrid::checkPair(const VolumeListGrid &lists, VolumeListGrid::Slot a, VolumeListGrid::Slot b,
                                 const WalkedCell &cell)
{
    const CellRect &cellsA = grid.cellsOf(a), &cellsB = lists.cellsOf(b);
    if (std::max(cellsA.minX, cellsB.minX) != cell.x || std::max(cellsA.minZ, cellsB.minZ) != cell.z)
        return;
    const VolumeOutline &one = grid.outlineIn(a), &two = lists.outlineIn(b);
    for (int axis = 0; axis < 3; ++axis)
        if (std::fabs(one.centre[axis] - two.centre[axis]) > one.reach[axis] + two.reach[axis] + SLACK)
            return;
    if (one.volume && two.volume && one.volume != two.volume)
        one.volume->colliding(getHandle(two.volume), collisions);
}

void PartitioningGrid::resolveCollisions(double)
{
    static const String section = SCS("PartitioningGrid::resolveCollisions");
    const ProfilerScope scope(profilerCategory(), section);
    for (Collision *collision : collisions)
    {
        collision->resolve();
        Collision::release(collision);
    }
    collisions.clear();
}

void PartitioningGrid::dropCollisions()
{
    for (Collision *collision : collisions)
        Collision::release(collision);
    collisions.clear();
}
