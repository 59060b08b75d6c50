// GridPlace: where a volume was put in its map's grid, and how it stood then.
#pragma once

#include "physics/grid/VolumeListGrid.h"

#include "foundation/Quaternion.h"
#include "foundation/Vector.h"
#include "object/tree/Handle.h"

#include <cstdint>

class MapRootEntity;
class PartitioningGrid;
class TransformComponent;

/// Where a volume stands and how far it reaches, as a grid wants to know it.
struct VolumeMeasure
{
    Vec4 centre;   ///< metres
    Vec4 boxReach; ///< half extents of the turned box along the axes of the grid, metres
    VolumeOutline outline;
};

/// Where a volume was put in its map's grid, and how it stood then.
///
/// The volume owns it and has it follow once a frame; the grid notes in it what it needs to find the volume again.
class GridPlace
{
public:
    /// Puts the volume that owns this into its map's grid, or moves it there where it stands otherwise than before.
    ///
    /// A change of height alone moves nothing; the grid only learns of it. A map counts from when it has a grid.
    /// @param belongsToStatic  the grid is to keep it among its static volumes
    void follow(BoundingVolume &owner, const TransformComponent &transform, const Handle<MapRootEntity> &ownMap,
                bool belongsToStatic);
    /// Has the next `follow` look whether the volume stands in the right list.
    void noteType() { typeChanged = true; }
    /// Has the next `follow` move the volume: it may reach into cells that do not keep it.
    void noteHitBox() { hitBoxChanged = true; }

    /// Near corner of the rectangle in the grid, cell coordinates.
    const Vec4 &getMin() const { return previousMin; }
    /// Far corner of the rectangle in the grid, cell coordinates.
    const Vec4 &getMax() const { return previousMax; }

private:
    friend class PartitioningGrid;

    bool standsInWrongList(bool belongsToStatic) const;

    Handle<PartitioningGrid> grid;
    VolumeListGrid::Slot slot = VolumeListGrid::NO_SLOT;
    CellRect cells; ///< under the volume's own rectangle; empty where a caller named another
    bool isStatic = false;
    bool several = false; ///< it may stand elsewhere too: it was put somewhere before it was taken away
    Vec4 previousMin;     ///< cell coordinates of the rectangle
    Vec4 previousMax;     ///< cell coordinates of the rectangle

    // At the last frame step.
    Vec4 previousPosition; ///< native space, y 0
    Quaternion previousOrientation;
    Handle<MapRootEntity> previousMap;
    float height = 0.f;           ///< y, native space
    bool typeChanged = true;      ///< since then
    bool hitBoxChanged = false;   ///< since then
    std::uint32_t gridLayout = 0; ///< the grids' layout number
};
