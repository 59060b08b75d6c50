// LayerVoice: one layer of a started event: which sample, and where in it.
#pragma once

#include "port/fmod/events/Chance.h"
#include "port/fmod/events/EventPlan.h"

namespace port
{

struct Source;

/// Keeps its time whether it is heard or not, so that it can be heard again where it would be by then.
struct LayerVoice
{
    enum State
    {
        ENDED,
        WAITING, ///< for its delay
        SOUNDING
    };

    /// Begins anew with a sample drawn by weight, which is not the last one where there are others.
    void begin(const LayerPlan &plan, SampleBank &bank, Chance &chance);
    /// Lets time pass at a pitch; a plan that repeats begins anew at a sample's end.
    void advance(const LayerPlan &plan, SampleBank &bank, Chance &chance, double seconds);
    /// Gives its source back.
    void end();
    /// True at the very first moment of its sample.
    bool isAtStart() const { return position == 0; }
    const TrackEntry &entryOf(const LayerPlan &plan) const { return plan.entries[static_cast<std::size_t>(entry)]; }

    State state = ENDED;
    int entry = -1;
    double wait = 0;     ///< s
    double position = 0; ///< s, in the entry's sample
    float volume = 1;    ///< drawn at the start
    float pitch = 1;     ///< factor, drawn at the start
    float mix = 1;       ///< of music: its share by the tension
    float mixGoal = 1;
    Source *source = nullptr; ///< while it is heard
    // What the parameters' curves say.
    float curveVolume = 1;
    float curvePitch = 1;   ///< factor
    float curveLowpass = 1; ///< gain of the filter
    float curveSend = 1;

private:
    void choose(const LayerPlan &plan, SampleBank &bank, Chance &chance);
    void pass(const LayerPlan &plan, SampleBank &bank);
};

} // namespace port
