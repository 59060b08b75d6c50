// LeafDrive: how a door's leaf gets from where it is to where it shall be.
#pragma once

#include "object/tree/KvFields.h"

/// Moves something heavy to a target and has it land there exactly: it gathers speed, goes, and eases out.
///
/// Whatever the frame time: a long frame takes the leaf farther, never past the target, and the last frame lands on it
/// instead of creeping closer. In units of the caller, radians or metres.
class LeafDrive
{
    KV_FIELDS
public:
    /// How a leaf moves; everything is greater than 0.
    struct Manner
    {
        float topSpeed;  ///< units a second
        float startTime; ///< from rest to the top speed, seconds: the leaf's weight
        float easing;    ///< way that it takes to stop from the top speed, units
    };

    /// What lies nearer than this to the target has arrived, units.
    static constexpr float ARRIVED = 1e-4f;

    /// The way that the leaf takes in a frame.
    ///
    /// Starts from the speed of the last frame, also from one in the wrong direction, which it works off first.
    /// @param way  to the target, with its sign
    /// @return that part of the way, with its sign; the whole of it when the leaf lands
    float advance(float way, const Manner &manner, float seconds);

    /// Gives the leaf a speed that it has from elsewhere, units a second; what is no number counts as rest.
    void setSpeed(float val);
    /// Takes all speed from the leaf: it met something.
    void stop() { speed = 0.f; }

private:
    float speed = 0.f; ///< units a second, positive towards greater values
};
