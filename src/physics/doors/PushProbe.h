// PushProbe: whether a body gives way to what comes up against it, or has nowhere to go.
#pragma once

#include "physics/volumes/OrientedBox.h"

class BoundingVolume;
class PartitioningGrid;

/// What contacts make of a volume's shape: a box, or a ball, which has its faces where somebody looks at it.
struct PushedShape
{
    OrientedBox box;
    bool isBall = false;
    bool isMovable = false;

    PushedShape() = default;
    explicit PushedShape(const OrientedBox &standing) : box(standing) {}
    /// The shape of a volume as it stands; one without a transform has none and is never in the way.
    explicit PushedShape(BoundingVolume &volume);
};

/// Tries out where the physics would put a body that a door's leaf runs into, without moving anything.
///
/// Walls, leaves, the player and bodies of inverse mass 0 hold what is pushed against them; other bodies pass the push
/// on. A body that can slip off sideways gives way. What is pushed rides over sills and seams of a floor: a little at
/// its foot and its head counts for nothing.
class PushProbe
{
public:
    /// @param leaf  stands elsewhere while it pushes, so that the probe passes over it
    PushProbe(const PartitioningGrid &grid_, const BoundingVolume &leaf_) : grid(grid_), leaf(leaf_) {}

    /// Whether the physics move a volume that a leaf runs into.
    static bool isMovable(BoundingVolume &volume);
    /// Whether a body lets the leaf pass from one place to another; true where the leaf does not reach it.
    bool givesWay(BoundingVolume &body, const OrientedBox &from, const OrientedBox &to);

private:
    struct Pushed;
    bool givesWay(const Pushed &body, const PushedShape &from, const PushedShape &to);
    void holdBack(const Pushed &body, PushedShape &moved);
    bool takesPush(BoundingVolume &other, const Pushed &body, const PushedShape &moved);

    static constexpr int MOST_BODIES = 24; ///< that a push is passed on to; what is heavier holds the leaf

    const PartitioningGrid &grid;
    const BoundingVolume &leaf;
    int bodies = 0; ///< that were pushed for the present question
};
