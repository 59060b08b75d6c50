// PairTests: which pairs of volumes are tested, and how.
#pragma once

#include "physics/volumes/BoundingVolume.h"

/// The tests of a type's volumes with those of every other type, by that; null for a type that has none of its own.
const BoundingVolume::DetectCollision *pairTestsOf(BoundingVolume::VolumeType type);
