// PlayedTimeSource: the frame times of an earlier run.
#pragma once

#include "engine/time/TimeSource.h"

/// Gives every frame the length that it had when it was recorded; the source of a run that is played again.
///
/// Who plays the recording sets the length of each frame before it begins. Paced, it holds each frame back until its
/// time has come on the platform's clock, so that one sees it as it was.
class PlayedTimeSource : public TimeSource
{
    KV_REFLECTED(PlayedTimeSource)
public:
    PlayedTimeSource() = default;

    /// The rate of the recorded clock.
    TimerTicks ticksPerSecond() override { return tickRate; }
    /// The length that was set last; waits for its time where frames are paced.
    TimerTicks newFrame() override;
    /// The lengths of all frames so far: no time passes within a frame.
    TimerTicks now() override { return reading; }

    /// Sets the rate of the recorded clock, for before the source is in use; one below 1 is logged as an error and
    /// changes nothing.
    void setTickRate(std::int64_t val);
    std::int64_t getTickRate() const { return tickRate; }
    /// Sets the length of the frames to come, ticks; below 0 counts as 0.
    void setFrameTicks(std::int64_t val) { frameTicks = val > 0 ? val : 0; }
    std::int64_t getFrameTicks() const { return frameTicks; }
    /// Whether frames last as long as they say, by default not.
    void setPaced(bool val);
    bool getPaced() const { return paced; }

private:
    void waitForFrame();

    std::int64_t tickRate = 1000000000; ///< ticks a second
    std::int64_t frameTicks = 0;
    TimerTicks reading = 0;
    bool paced = false;
    double due = 0; ///< when the next frame begins, seconds of the platform's clock; 0: now
};
