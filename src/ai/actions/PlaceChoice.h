// PlaceChoice: the best of some places that were weighed one by one.
#pragma once

#include "object/tree/KvFields.h"

#include "foundation/Vector.h"

/// Keeps the best place of several; one is weighed a frame, since to ask for the light at a place takes its time.
class PlaceChoice
{
    KV_FIELDS
public:
    /// Places that are weighed before the choice is made.
    static constexpr int PLACES = 12;

    void begin() { *this = PlaceChoice(); }
    /// Takes account of a place; the first of equal ones stays.
    void weigh(const Vec4 &place, float worth)
    {
        if (found && worth <= bestWorth)
            return;
        best = place;
        bestWorth = worth;
        found = true;
    }
    /// Counts a frame in which a place was looked for. Whether that was the last one.
    bool isMade() { return ++weighed >= PLACES; }
    bool hasPlace() const { return found; }
    const Vec4 &getPlace() const { return best; }

private:
    Vec4 best;
    float bestWorth = 0.f;
    int weighed = 0;
    bool found = false;
};
