// TestClock: a time source that a test winds.
#pragma once

#include "engine/time/TimeSource.h"

/// Stands still until it is set.
class TestClock : public TimeSource
{
    KV_REFLECTED(TestClock)
public:
    static constexpr TimerTicks RATE = 1000;

    TestClock() = default;

    TimerTicks ticksPerSecond() override { return RATE; }
    TimerTicks newFrame() override { return 0; }
    TimerTicks now() override { return time; }

    TimerTicks time = 0; ///< ticks
};
