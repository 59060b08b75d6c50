// TimeKeeper: a clock that can be scaled and stopped.
#pragma once

#include "object/tree/Object.h"

#include "foundation/TimeTypes.h"

/// A scalable clock fed with the wall time of each frame.
///
/// A coordinator keeps several by name; all game logic reads its frame time from the one named "master". The scale is
/// a fixed-point number, multiplier / 2^shift. All sums are 64 bits wide and wrap.
class TimeKeeper : public Object
{
    KV_REFLECTED(TimeKeeper)
public:
    TimeKeeper() = default;

    /// Advances by a frame of this many ticks of wall time, scaled.
    void newFrame(TimerTicks wallTickCount);
    /// Sets the clock; the frame time becomes 0 until the next frame.
    void reset(TimerTicks wallTicks);
    /// Sets the scale: 1, 0 runs at wall time; 1, 1 at half of it; multiplier 0 stands still.
    ///
    /// A shift outside 0..63 is logged as an error and changes nothing.
    void setScaling(TimerTicks multiplier_, int shift_);

    /// The clock's reading, scaled ticks.
    TimerTicks getValue() const { return value; }
    /// The clock's reading turned back into wall ticks by the present scale; 0 for a clock that stands still.
    TimerTicks getWallTimeValue() const;
    /// Length of the present frame, scaled ticks.
    TimerTicks getFrameTime() const { return frameTime; }
    /// Length of the present frame turned back into wall ticks; 0 for a clock that stands still.
    TimerTicks getWallTimeFrameTime() const;
    /// Length of the present frame, scaled seconds.
    Seconds getFrameTimeSeconds() const { return frameTimeSeconds; }

private:
    TimerTicks value = 0;
    TimerTicks frameTime = 0;
    Seconds frameTimeSeconds = 0.0;
    TimerTicks multiplier = 1;
    int shift = 0;
};
