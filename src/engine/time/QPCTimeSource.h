// QPCTimeSource: the platform's performance counter as a time source.
#pragma once

#include "engine/time/TimeSource.h"

/// Wall time from the performance counter; the source of a run that is not told otherwise.
class QPCTimeSource : public TimeSource
{
    KV_REFLECTED(QPCTimeSource)
public:
    QPCTimeSource() = default;

    /// QueryPerformanceFrequency.
    TimerTicks ticksPerSecond() override;
    /// Counter ticks since the last call; the first call counts from the counter's own origin.
    TimerTicks newFrame() override;
    /// QueryPerformanceCounter.
    TimerTicks now() override;

private:
    TimerTicks lastFrameStart = 0; ///< counter at the last newFrame, ticks
};
