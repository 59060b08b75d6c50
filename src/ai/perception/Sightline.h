// Sightline: what stops looks and light between two places of a map.
#pragma once

#include "physics/grid/PartitioningGrid.h"
#include "physics/grid/SegmentFilter.h"
#include "physics/grid/SolidSegment.h"

#include "foundation/Vector.h"

class MapRootEntity;
class Object;

/// What stops looks: what stops bodies, a volume with a body beside it, unless it says that it is seen through.
///
/// Leaves of doors, walls, crates. What belongs to one of two objects, or stands below it in the tree, is passed over:
/// nobody stands in his own way.
class SightFilter : public SegmentFilter
{
public:
    SightFilter() = default;
    SightFilter(const Handle<Object> &one, const Handle<Object> &other) : passed{one, other} {}

    bool counts(BoundingVolume &volume) const override;
    bool stops(BoundingVolume &volume, const RayCollision &hit) const override;

private:
    Handle<Object> passed[2];
};

/// What keeps light off a place: what stops looks, unless it is drawn and casts no shadow. What holds the light or the
/// place casts none on it.
class ShadowFilter : public SegmentFilter
{
public:
    explicit ShadowFilter(const Vec4 &place) : place(place) {}

    bool counts(BoundingVolume &volume) const override;
    bool stops(BoundingVolume &volume, const RayCollision &hit) const override;

private:
    Vec4 place;
};

/// Whether nothing that a filter stops at stands between two places, in the space of the grid's map, metres.
///
/// Without a grid nothing stands anywhere. Places that are no numbers are not joined.
/// @cost one segment through the grid; allocates nothing
bool isFreeBetween(PartitioningGrid *grid, const SegmentFilter &filter, const Vec4 &from, const Vec4 &to);

/// Whether one place of a map is seen from another: nothing that stops looks stands between them.
///
/// Space of the map, metres. Walls, leaves of doors and crates stop looks; volumes with `seeThrough` do not.
bool isLineFree(const Handle<MapRootEntity> &map, Vec4 from, Vec4 to);
