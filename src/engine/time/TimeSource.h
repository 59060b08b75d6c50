// TimeSource: where ticks come from.
#pragma once

#include "object/tree/Object.h"

#include "foundation/TimeTypes.h"

/// A clock that the frame is measured with; the time system owns the one in use.
class TimeSource : public Object
{
    KV_REFLECTED(TimeSource)
public:
    TimeSource() = default;

    /// Rate of this clock; constant over its life and never 0.
    virtual TimerTicks ticksPerSecond() = 0;
    /// Ticks since the last call, and the start of a new frame.
    virtual TimerTicks newFrame() = 0;
    /// The clock's present reading, ticks from an origin of its own.
    virtual TimerTicks now() = 0;
};
