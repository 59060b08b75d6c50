// BoxContacts: whether two boxes touch, and where.
#pragma once

#include <vector>

class BoundingVolume;
class Collision;

/// Tests the boxes of two volumes and appends the contact that they have.
///
/// It lies along the axis on which they stand least deep in each other: at the deepest corner of one of them, or
/// between two edges.
bool boxToBox(BoundingVolume &one, BoundingVolume &other, std::vector<Collision *> &found);
