// WallPlan: the walls of a map as sound meets them, seen from above.
#pragma once

#include "physics/acoustics/PlanPoint.h"

#include "foundation/Vector.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

/// An upright box that sound goes around.
struct WallBox
{
    PlanPoint middle;
    PlanPoint along; ///< direction of one pair of sides, length 1; the other pair's is a quarter turn from it
    float halfAlong = 0.f;
    float halfAcross = 0.f;
    float bottom = -std::numeric_limits<float>::infinity();
    float top = std::numeric_limits<float>::infinity();
    std::uint32_t floors = 1; ///< bits of the floors on which it reaches through the height of an ear

    /// The part of a segment inside the box, seen from above; false for none.
    /// @param enters, leaves  parameters of the part, cut to what they come with
    bool clip(const PlanPoint &from, const PlanPoint &way, float &enters, float &leaves) const;
    /// Whether a segment meets the box.
    bool isMetBy(const PlanPoint &from, const PlanPoint &way) const;
    bool holds(const PlanPoint &place) const;
    /// The nearest place before a face of the box, for one that it holds.
    PlanPoint nearestOutside(const PlanPoint &place) const;
};

/// The walls of a map in buckets, for lines of sight.
///
/// Owns copies of the boxes, knows no map. A line that begins or ends inside a box passes that box.
class WallPlan
{
public:
    /// Forgets all walls.
    void clear();
    /// Adds a wall, which counts from the next `layOut` on.
    void add(const WallBox &wall) { walls.push_back(wall); }
    /// Sorts the walls into buckets.
    void layOut();

    std::span<const WallBox> getWalls() const { return walls; }
    /// Whether nothing stands between two places of a floor.
    bool isFree(const PlanPoint &from, const PlanPoint &to, int floor) const;
    /// Whether a place lies in a wall of a floor.
    bool isInside(const PlanPoint &place, int floor) const { return wallAt(place, floor) != nullptr; }
    /// The place itself, or the nearest one before the face of the wall that it lies in: a clock that hangs in a wall.
    PlanPoint broughtOut(const PlanPoint &place, int floor) const;
    /// So much wall lets nothing through, metres.
    static constexpr float THICKEST = 1.5f;
    /// How much wall a straight line goes through, whatever the floor, metres; at most THICKEST.
    float thicknessBetween(const Vec4 &from, const Vec4 &to);

private:
    struct Span
    {
        int first = 0;
        int last = -1;
    };

    Span columnsOf(float low, float high) const;
    Span rowsOf(float low, float high) const;
    template <class Function>
    void forEachBucketUnder(const WallBox &wall, Function function) const;
    template <class Function>
    bool walk(const PlanPoint &from, const PlanPoint &to, Function function) const;
    const WallBox *wallAt(const PlanPoint &place, int floor) const;
    std::span<const std::uint32_t> wallsIn(std::size_t bucket) const
    {
        return std::span(entries).subspan(starts[bucket], starts[bucket + 1] - starts[bucket]);
    }

    std::vector<WallBox> walls;
    PlanPoint corner; ///< of the first bucket
    float edge = 1.f; ///< of a bucket, metres
    int columns = 0;
    int rows = 0;
    std::vector<std::uint32_t> starts;  ///< first index into the entries by bucket, and one past the last
    std::vector<std::uint32_t> entries; ///< walls, bucket by bucket
    std::vector<std::uint32_t> seen;    ///< by wall, the line that met it last
    std::uint32_t line = 0;
};
