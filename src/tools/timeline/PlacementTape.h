// PlacementTape: where things were, moment by moment.
#pragma once

#include "foundation/Quaternion.h"
#include "foundation/Vector.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <vector>

/// Position, orientation and scale of one thing; native space, metres.
struct Placement
{
    Vec4 position = Vec4(0, 0, 0, 1);
    Quaternion orientation = Quaternion(1, 0, 0, 0);
    Vec4 scale = Vec4(1, 1, 1, 0);
};

/// Moments of many things, told by their numbers, of which each keeps only what had changed since the one before.
///
/// Orientations are rounded to 1/32767, all else is exact. The oldest moments go when there are more bytes than are
/// allowed. Moments have numbers that count on and on.
class PlacementTape
{
public:
    explicit PlacementTape(std::size_t mostBytes) : mostBytes(mostBytes) {}

    /// Begins the next moment, at some seconds of the level; what changed up to it follows.
    void begin(double seconds);
    /// Notes where a thing is in the present moment, if that has changed.
    void add(std::uint32_t thing, const Placement &placement);
    void clear();

    bool empty() const { return moments.empty(); }
    std::int64_t getOldest() const { return oldest; }
    std::int64_t getNewest() const { return oldest + static_cast<std::int64_t>(moments.size()) - 1; }
    /// When a moment was, seconds of the level; 0 for one that is not kept.
    double getSeconds(std::int64_t moment) const;
    /// How many things a moment has changed; 0 for one that is not kept.
    int getChanges(std::int64_t moment) const;
    std::size_t getBytes() const { return bytes; }

    /// A thing's place in a moment; one that was not there yet has none.
    struct Place
    {
        bool known = false;
        Placement placement;
    };
    /// Where all things were in a moment, which is brought to the nearest one kept.
    /// @cost the changes between the moment that was asked for last and this one, or all before this one
    const std::vector<Place> &seek(std::int64_t moment);

private:
    /// 32 bytes; scale stands by itself, since few things change it.
    struct Change
    {
        std::uint32_t thing;
        float position[3];
        std::int16_t orientation[4];
    };
    struct ScaleChange
    {
        std::uint32_t thing;
        float scale[3];
    };
    struct Moment
    {
        double seconds;
        std::vector<Change> changes;
        std::vector<ScaleChange> scales;
    };

    /// A moment by its number; null for one that is not kept.
    const Moment *find(std::int64_t moment) const;
    static std::size_t sizeOf(const Moment &moment);
    static void apply(const Moment &moment, std::vector<Place> &places);
    void dropOldest();

    const std::size_t mostBytes;
    std::deque<Moment> moments;
    std::int64_t oldest = 0;
    std::size_t bytes = 0;
    std::vector<Place> before;     ///< of the moment ahead of the oldest one
    std::vector<Place> latest;     ///< of the newest moment, exact, to see what changes
    std::vector<Place> sought;     ///< of the moment that was asked for last
    std::int64_t soughtMoment = 0; ///< which that is
    bool hasSought = false;
};
