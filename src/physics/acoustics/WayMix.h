// WayMix: puts together what comes by several ways and through walls.
#pragma once

#include "physics/acoustics/DoorPlan.h"
#include "physics/acoustics/HeardWay.h"
#include "physics/acoustics/PlanPoint.h"

#include "foundation/Vector.h"

/// Sums up how a sound is heard, so that nothing jumps where one way takes over from another.
///
/// Of two ways the louder one counts, which may be the same; what comes through walls adds its energy.
class WayMix
{
public:
    WayMix(const Vec4 &ear, const Vec4 &sound) : ear(ear), sound(sound) {}

    /// Adds a way through the air.
    /// @param length  seen from above, metres
    /// @param aim     from the ear to where it comes from, seen from above
    void addWay(float length, const WayLoss &loss, const PlanPoint &aim);
    /// Adds what comes straight through some metres of wall.
    void addWalls(float thickness);

    HeardWay getHeard() const;

private:
    /// What is summed, each by its share.
    struct Part
    {
        float level = 0.f;    ///< linear, at the ear, of a sound of 1 at a metre
        float distance = 0.f; ///< metres
        float pitch = 0.f;    ///< logarithm of the frequency above which little is left, Hz
        Vec4 aim;             ///< direction
    };

    static Part blend(const Part &one, const Part &other, float shareOfOther);

    Vec4 ear;
    Vec4 sound;
    Part air;
    Part throughWalls;
};
