// HeardWay: how a sound of one place is heard at another.
#pragma once

#include "foundation/Vector.h"

class Variant;

/// What the way from a sound to a listener leaves of it.
///
/// What is heard is as loud as the sound would be in the open, `distance` away, times `gain`. The apparent place is as
/// far from the listener as the way is long, so that a sound that stands there fades by distance as the way asks.
struct HeardWay
{
    Vec4 apparent;        ///< where it is heard from, map space: the sound's own place, or behind the nearest turn
    float gain = 1.f;     ///< linear, of what doors, corners and walls leave; 1 where the sound is in sight
    float lowpass = OPEN; ///< Hz, what is left of the high end
    float reverb = 1.f;   ///< factor on what the listener's room returns; it falls more slowly than `gain`
    float distance = 0.f; ///< length of the way, metres
    bool open = true;     ///< it comes by a way through the air; false for what only comes through walls
    bool inSight = true;  ///< nothing stands between

    static constexpr float OPEN = 22000.f; ///< Hz: nothing of the high end is lost
    /// What a listener hears of a sound that does not reach him.
    static HeardWay nothingAt(const Vec4 &ear);
};

/// How it crosses the reflection layer: as the script class `HeardWay`.
void SetToVariant(Variant &v, const HeardWay &way);
