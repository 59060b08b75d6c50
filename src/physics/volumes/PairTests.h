// PairTests: which pairs of volumes are tested, and how.
#pragma once

#include "physics/volumes/BoundingVolume.h"

#include <vector>

/// The tests of a type's volumes with those of every other type, by that; null for a type that has none of its own.
const BoundingVolume::DetectCollision *pairTestsOf(BoundingVolume::VolumeType type);

/// Whether volumes of a type are tested with static ones; true where that hangs on the type they had before.
bool areTestedWithWalls(BoundingVolume::VolumeType type);

// What a bullet's line meets, seen from the line. No row of the table asks so: a bullet is tested by whom it meets.

/// Whether the line that a bullet is comes into a sphere; their contact is the sphere's.
bool lineSegmentToSphere(BoundingVolume &line, BoundingVolume &sphere, std::vector<Collision *> &found);
/// Whether the line that a bullet is comes into a box; their contact is the box's.
bool lineSegmentToBox(BoundingVolume &line, BoundingVolume &box, std::vector<Collision *> &found);
