// SolidSegment: the first thing that stops bodies between two places of a map.
#pragma once

#include "physics/grid/PartitioningGrid.h"

class Object;

/// Whether an object is another one, or stands below it in the tree.
bool isAtOrBelow(const Handle<Object> &object, const Handle<Object> &root);

/// The nearest solid thing between two places of a map: a volume that stops bodies, with a body beside it.
///
/// Walls, leaves of doors, crates, who stands about; bars and panes, too. Two objects, with all that stands below them,
/// are passed over: whoever holds a thing, and the thing. Space of the map, metres.
/// @return not collided, with a null volume, where nothing stops a body, in a map without a grid, and for places that
///         are no numbers
/// @cost one segment through the grid; allocates nothing
SegmentHit findSolidBetween(const Handle<MapRootEntity> &map, Vec4 from, Vec4 to, Handle<Object> one,
                            Handle<Object> other);
