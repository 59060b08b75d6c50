// MemoryHost: sound rendered into memory, at the caller's pace.
#pragma once

#include "port/fmod/output/AudioHost.h"

namespace port
{

/// Asleep until the first rendering, so that a run which nobody hears reads no sample and mixes nothing.
class MemoryHost : public AudioHost
{
public:
    explicit MemoryHost(int rate) : rate(rate) {}

    bool isWanted() const override { return awake; }
    ALCdevice *open() override;
    bool isConnected(ALCdevice *) override { return true; }
    std::vector<ALCint> getAttributes() const override;
    double getTime() override { return static_cast<double>(frames) / rate; }
    double getLatency() const override { return 0; }

    void wake() { awake = true; }
    int getRate() const { return rate; }
    /// Lets time pass without rendering.
    void pass(long count) { frames += count; }
    /// Renders the next frames of an open device and lets their time pass.
    void render(ALCdevice *device, float *stereo, int count);
    /// Whole frames in a time; what is left over counts at the next ask.
    long takeFrames(double seconds);

private:
    const int rate;
    long frames = 0;
    double remainder = 0; ///< of a frame
    bool awake = false;
};

} // namespace port
