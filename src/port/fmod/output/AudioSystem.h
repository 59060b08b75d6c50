// AudioSystem: the low-level system: speakers, effects on all that is heard, the room by default.
#pragma once

#include "port/fmod/fmod.h"
#include "port/fmod/output/GlideStep.h"
#include "port/fmod/output/ReverbSlots.h"

#include <memory>
#include <vector>

namespace port
{

/// A low-pass on the whole output; glides to what is set.
class LowpassEffect : public FMOD::DSP
{
public:
    FMOD_RESULT setParameter(int index, float value) override;
    FMOD_RESULT setBypass(bool newBypass) override;
    FMOD_RESULT getBypass(bool *bypassOut) override;
    FMOD_RESULT release() override;

    /// Gain of the filter after some more time.
    float advance(const GlideStep &step);
    void add() { added = true; }
    /// Given back, and its effect gone.
    bool isOver() const { return released && gain == 1; }

private:
    float cutoff = 5000; ///< Hz
    bool bypassed = false;
    bool added = false;
    bool released = false;
    float gain = 1; ///< gliding
};

/// Outlives its event system until the next one is made, since it is published to be released after it.
class AudioSystem : public FMOD::System
{
public:
    FMOD_RESULT getDriverCaps(int id, FMOD_CAPS *caps, int *controlPanelOutputRate,
                              FMOD_SPEAKERMODE *controlPanelSpeakerMode) override;
    FMOD_RESULT setSpeakerMode(FMOD_SPEAKERMODE mode) override;
    FMOD_RESULT set3DSettings(float dopplerScale, float distanceFactor, float rollOffScale) override;
    FMOD_RESULT createDSPByType(FMOD_DSP_TYPE type, FMOD::DSP **dsp) override;
    FMOD_RESULT addDSP(FMOD::DSP *dsp, void **connection) override;
    FMOD_RESULT setReverbAmbientProperties(const FMOD_REVERB_PROPERTIES *properties) override;
    FMOD_RESULT release() override { return FMOD_OK; }

    ReverbSlots &getRooms() { return rooms; }
    /// Gain of the filter that all passes through, after some more time.
    float advanceLowpass(const GlideStep &step);
    void noteInit() { initialised = true; }
    /// Its event system is gone.
    void close();
    bool isClosed() const { return closed; }

private:
    std::vector<std::unique_ptr<LowpassEffect>> effects;
    ReverbSlots rooms;
    bool initialised = false;
    bool closed = false;
};

} // namespace port
