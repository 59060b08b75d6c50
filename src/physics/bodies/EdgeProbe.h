// sideFreeOfEdge: which way past an edge that a body has run against.
#pragma once

#include "foundation/Vector.h"

class BoundingVolume;
class PartitioningGrid;
class TransformComponent;

/// The direction to the side in which a body's box comes free of what stands before it.
///
/// Right before the box something must stand on one side of its middle alone, as the jamb of a doorway that is missed
/// by a hand's breadth. Space of the transform, metres.
/// @param ahead  where the body wants to go, level, of length 1
/// @return level, of length 1; zero where nothing stands, or all across, or on both sides
/// @cost fifteen short segments; allocates nothing
Vec4 sideFreeOfEdge(PartitioningGrid &grid, BoundingVolume &volume, const TransformComponent &place, const Vec4 &ahead);
