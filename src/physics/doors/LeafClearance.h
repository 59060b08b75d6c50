// LeafClearance: what keeps a door's leaf where it is: its own volume, or somebody in its way.
#pragma once

#include "foundation/Matrix4.h"
#include "foundation/Vector.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

class BoundingVolume;
class PhysicsComponent;
class TransformComponent;

/// Logs an error where the physics never move a door's leaf: without a volume beside it, or with one of type BV_WALL.
void reportUnmovedLeaf(PhysicsComponent &leaf);

/// A box as it stands somewhere.
struct StandingBox
{
    Vec4 centre;
    Matrix4 rotation;
    Vec4 half; ///< half extents along its own axes, metres

    StandingBox() = default;
    StandingBox(const BoundingVolume &volume, const Vec4 &place, const Matrix4 &turned);
};

/// The players near a leaf that is about to move.
///
/// Nothing stops a leaf by itself, since contacts move the other body alone: it would press a player into the wall
/// behind him. So a leaf asks first, and waits as long as it would run into a player. Crates and balls it pushes.
class LeafClearance
{
public:
    /// Looks for players in the cells around a leaf; finds none in a map without a grid.
    /// @param reach  how far from the leaf's middle it may get in this frame, with its own size, metres
    LeafClearance(const BoundingVolume &leaf, TransformComponent &place, float reach);

    /// How far a leaf gets before it runs into a player: `to`, or what lies before it.
    ///
    /// In radians or metres of the leaf's own way. A player who stands in the leaf already does not hold it where it
    /// moves out of him.
    /// @param farthest  where the leaf will stop at last, at or behind `to`
    /// @param boxAt     the leaf's StandingBox at a place of its way
    template <class BoxAt>
    float freeUpTo(float from, float to, float farthest, const BoxAt &boxAt) const
    {
        if (count == 0 || from == to)
            return to;
        const StandingBox start = boxAt(from);
        const float way = lookAhead(to - from, farthest - from);
        const int looks = std::min(1 + static_cast<int>(std::fabs(way) / LOOK_EVERY), MOST_LOOKS);
        float free = from;
        for (int look = 1; look <= looks; ++look)
        {
            const float next = from + way * static_cast<float>(look) / static_cast<float>(looks);
            if (meetsPlayer(start, boxAt(next)))
                return std::fabs(free - from) < std::fabs(to - from) ? free : to;
            free = next;
        }
        return to;
    }

private:
    static constexpr std::size_t MOST_PLAYERS = 4; ///< that are looked at: there is one
    /// Between looks, radians or metres: about a leaf's thickness, as its edge comes ahead.
    static constexpr float LOOK_EVERY = 0.04f;
    static constexpr int MOST_LOOKS = 100;

    static float lookAhead(float way, float farthestWay);
    void add(BoundingVolume &player);
    bool meetsPlayer(const StandingBox &start, const StandingBox &leaf) const;

    StandingBox players[MOST_PLAYERS];
    const BoundingVolume *volumes[MOST_PLAYERS] = {};
    std::size_t count = 0;
};
