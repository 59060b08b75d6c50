// BSTimeSource: a deterministic time source with a fixed time a frame.
#pragma once

#include "engine/time/TimeSource.h"

/// Gives every frame the same length, however long it took: the source of repeatable runs.
class BSTimeSource : public TimeSource
{
    KV_REFLECTED(BSTimeSource)
public:
    BSTimeSource() = default;

    /// 4096.
    TimerTicks ticksPerSecond() override { return 4096; }
    /// 4096 divided by the frame rate, as integers: 68 ticks at 60 frames a second.
    TimerTicks newFrame() override;
    /// Always 0: no time passes within a frame.
    TimerTicks now() override { return 0; }

    /// Frames in a second of this source's time.
    std::int64_t getFrameRate() const { return frameRate; }
    /// Sets the frames in a second; a rate below 1 is logged as an error and changes nothing.
    void setFrameRate(std::int64_t val);

private:
    std::int64_t frameRate = 60;  ///< frames a second
    std::int64_t tickRate = 4096; ///< ticks a second, for a debugger to read
};
