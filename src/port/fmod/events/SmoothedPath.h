// SmoothedPath: the way of one event's sound to the listener, changing without jumps.
#pragma once

#include "port/fmod/FmodExtras.h"
#include "port/fmod/output/GlideStep.h"

namespace port
{

/// Follows what setSoundPath tells within some 80 ms. What is not told again for a quarter of a second no longer
/// holds: then the direct line counts.
class SmoothedPath
{
public:
    void tell(const SoundPath &path);
    /// Nothing was heard yet: the next advance goes to its goal at once.
    void restart() { fresh = true; }
    /// @param own  where the event is
    void advance(const FMOD_VECTOR &own, const GlideStep &step);

    FMOD_VECTOR apparent(const FMOD_VECTOR &own) const { return {own.x + off.x, own.y + off.y, own.z + off.z}; }
    float getGain() const { return gain; }
    /// Gain of the filter.
    float getLowpass() const { return lowpass; }
    float getReverb() const { return reverb; }

private:
    SoundPath told;
    float toldLowpass = 1; ///< gain of the filter
    float held = 0;        ///< s for which it still counts
    bool fresh = true;
    FMOD_VECTOR off; ///< from the event to where it is heard
    float gain = 1, lowpass = 1, reverb = 1;
};

} // namespace port
