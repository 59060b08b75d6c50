// LeafNeighbours: what keeps a door's leaf where it is: its own volume, or somebody in its way.
#pragma once

#include "physics/volumes/OrientedBox.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

class BoundingVolume;
class PartitioningGrid;
class PhysicsComponent;
class TransformComponent;

/// Logs an error where the physics never move a door's leaf: without a volume beside it, or with one of type BV_WALL.
void reportUnmovedLeaf(PhysicsComponent &leaf);

/// The box of a leaf's volume at some place of its way.
OrientedBox leafBox(const BoundingVolume &leaf, const Vec4 &place, const Matrix4 &turned);

/// The players and bodies near a leaf that is about to move.
///
/// Nothing stops a leaf by itself, since contacts move the other body alone: it would press a player into the wall
/// behind him, and sweep a crate through it. So a leaf asks first, and waits as long as it would run into a player, or
/// into a body that has nowhere to go. Other crates and balls it pushes.
class LeafNeighbours
{
public:
    /// Looks for them in the cells around a leaf; finds none in a map without a grid.
    /// @param reach  how far from the leaf's middle it may get in this frame, with its own size, metres
    LeafNeighbours(const BoundingVolume &leaf, TransformComponent &place, float reach);

    /// How far a leaf gets before somebody stops it: `to`, or what lies before it.
    ///
    /// In radians or metres of the leaf's own way. Who stands in the leaf already does not hold it where it moves out
    /// of him.
    /// @param farthest  where the leaf will stop at last, at or behind `to`
    /// @param boxAt     the leaf's OrientedBox at a place of its way
    template <class BoxAt>
    float freeUpTo(float from, float to, float farthest, const BoxAt &boxAt) const
    {
        if ((playerCount == 0 && bodyCount == 0) || from == to)
            return to;
        const OrientedBox start = boxAt(from);
        const float way = lookAhead(to - from, farthest - from);
        const int looks = std::min(1 + static_cast<int>(std::fabs(way) / LOOK_EVERY), MOST_LOOKS);
        float free = from;
        for (int look = 1; look <= looks; ++look)
        {
            const float next = from + way * static_cast<float>(look) / static_cast<float>(looks);
            const OrientedBox box = boxAt(next);
            if (meetsPlayer(start, box) || meetsHeldBody(start, box))
                return std::fabs(free - from) < std::fabs(to - from) ? free : to;
            free = next;
        }
        return to;
    }

private:
    static constexpr std::size_t MOST_PLAYERS = 4; ///< that are looked at: there is one
    static constexpr std::size_t MOST_BODIES = 32; ///< that are looked at: more do not lie about a doorway
    /// Between looks, radians or metres: about a leaf's thickness, as its edge comes ahead.
    static constexpr float LOOK_EVERY = 0.04f;
    static constexpr int MOST_LOOKS = 100;

    static float lookAhead(float way, float farthestWay);
    void add(BoundingVolume &volume);
    bool meetsPlayer(const OrientedBox &start, const OrientedBox &box) const;
    bool meetsHeldBody(const OrientedBox &start, const OrientedBox &box) const;

    const BoundingVolume &leaf;
    PartitioningGrid *grid;
    BoundingVolume *players[MOST_PLAYERS] = {};
    std::size_t playerCount = 0;
    BoundingVolume *bodies[MOST_BODIES] = {};
    std::size_t bodyCount = 0;
};
