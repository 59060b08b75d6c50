// DoorPlan: the doors of a map as sound meets them, seen from above.
#pragma once

#include "physics/acoustics/PlanPoint.h"

#include "object/tree/Handle.h"

#include <cstddef>
#include <cstdint>
#include <vector>

class PhysicsComponent;
class WallPlan;

/// What something takes of a sound that passes it; what is passed one after the other adds up.
struct WayLoss
{
    float decibels = 0.f;
    float dullness = 0.f; ///< the reciprocal of the squared frequency, in kHz, above which little is left

    WayLoss &operator+=(const WayLoss &rhs)
    {
        decibels += rhs.decibels;
        dullness += rhs.dullness;
        return *this;
    }
    WayLoss operator*(float share) const { return WayLoss{decibels * share, dullness * share}; }
};

/// A doorway: the line that a closed leaf stands on, and how far that is open.
struct SoundDoor
{
    struct Line
    {
        PlanPoint from;
        PlanPoint to;
    };

    /// The line a leaf of some width closes, from the leaf's end to its other one, a hand wider on both sides.
    static SoundDoor closedBy(const PlanPoint &middle, const PlanPoint &along, float width);

    /// Metres from a place to the leaf's line.
    float distanceTo(const PlanPoint &place) const;
    /// Whether a segment passes through the doorway.
    bool isPassed(const PlanPoint &start, const PlanPoint &end) const;

    Handle<PhysicsComponent> leaf; ///< a DoorPhysics or SlidingDoorPhysics; a dead one leaves the doorway open
    Line lines[3];                 ///< the leaf, and from its ends to the wall that it stands before
    int lineCount = 1;
    std::uint32_t floors = 1; ///< bits of the floors on which it reaches through the height of an ear
    WayLoss loss;             ///< as the leaf stands now
    float passable = 0.f;     ///< 0 for a leaf that is shut, 1 for one that lets somebody through
};

/// The doors of a map.
class DoorPlan
{
public:
    void clear() { doors.clear(); }
    /// Adds a doorway; gaps between its leaf and the wall that the leaf stands before are closed.
    void add(SoundDoor door, const WallPlan &walls);
    /// Reads how far all leaves are open.
    /// @return whether any of them has moved by as much as one hears
    bool readLeaves();

    std::size_t getCount() const { return doors.size(); }
    const SoundDoor &getDoor(std::size_t number) const { return doors[number]; }
    /// Calls a function with the number of each doorway of a floor that a segment passes through.
    template <class Function>
    void forEachPassed(const PlanPoint &start, const PlanPoint &end, int floor, Function function) const
    {
        for (std::size_t number = 0; number < doors.size(); ++number)
            if ((doors[number].floors >> floor & 1u) && doors[number].isPassed(start, end))
                function(number);
    }
    /// How much of a door's loss is left for somebody who stands at a place: who walks through hears both sides alike.
    float shareAt(std::size_t number, const PlanPoint &place) const;
    /// What all doors take, by number, for somebody who stands at a place.
    void lossesAt(const PlanPoint &place, std::vector<WayLoss> &losses) const;

private:
    std::vector<SoundDoor> doors;
};
