// SteeringOutput: what a behaviour asks of a body.
#pragma once

#include "foundation/Finite.h"
#include "foundation/Vector.h"

class Variant;

/// A request of one behaviour, or the sum of several, in the space of the body's transform.
struct SteeringOutput
{
    Vec4 accel;       ///< metres a second squared
    Vec4 vel;         ///< metres a second, on top of the body's own
    Vec4 orientation; ///< direction to face, of any length; zero for no request

    /// Asks for nothing any more.
    void reset() { *this = SteeringOutput(); }

    SteeringOutput &operator+=(const SteeringOutput &rhs)
    {
        accel += rhs.accel;
        vel += rhs.vel;
        orientation += rhs.orientation;
        return *this;
    }
    friend SteeringOutput operator+(SteeringOutput lhs, const SteeringOutput &rhs) { return lhs += rhs; }
    friend SteeringOutput operator*(const SteeringOutput &lhs, float factor)
    {
        return SteeringOutput{lhs.accel * factor, lhs.vel * factor, lhs.orientation * factor};
    }
};

/// Whether all three parts are numbers, and none is infinite.
inline bool isFiniteRequest(const SteeringOutput &output)
{
    return isFinite(output.accel) && isFinite(output.vel) && isFinite(output.orientation);
}

/// How it crosses the reflection layer: as the script class `SteeringOutput`.
/// @{
void SetToVariant(Variant &v, const SteeringOutput &output);
bool fromVariant(const Variant &v, SteeringOutput &output);
/// @}
