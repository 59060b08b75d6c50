#include "port/fmod/output/AudioSystem.h"

#include "port/fmod/output/LowpassGain.h"

#include <algorithm>
#include <cmath>

namespace port
{

namespace
{
constexpr int USUAL_RATE = 44100;
}

FMOD_RESULT LowpassEffect::setParameter(int index, float value)
{
    if (!std::isfinite(value))
        return FMOD_ERR_INVALID_FLOAT;
    if (index != FMOD_DSP_LOWPASS_CUTOFF && index != FMOD_DSP_LOWPASS_RESONANCE)
        return FMOD_ERR_INVALID_PARAM;
    if (index == FMOD_DSP_LOWPASS_CUTOFF)
        cutoff = std::clamp(value, 10.0F, OPEN_LOWPASS);
    return FMOD_OK;
}

FMOD_RESULT LowpassEffect::setBypass(bool newBypass)
{
    bypassed = newBypass;
    return FMOD_OK;
}

FMOD_RESULT LowpassEffect::getBypass(bool *bypassOut)
{
    if (!bypassOut)
        return FMOD_ERR_INVALID_PARAM;
    *bypassOut = bypassed;
    return FMOD_OK;
}

FMOD_RESULT LowpassEffect::release()
{
    released = true;
    return FMOD_OK;
}

float LowpassEffect::advance(const GlideStep &step)
{
    const float goal = added && !bypassed && !released ? lowpassGain(cutoff) : 1;
    gain = step.move(gain, goal);
    return gain;
}

FMOD_RESULT AudioSystem::getDriverCaps(int id, FMOD_CAPS *caps, int *controlPanelOutputRate,
                                       FMOD_SPEAKERMODE *controlPanelSpeakerMode)
{
    if (id != 0)
        return FMOD_ERR_INVALID_PARAM;
    if (caps)
        *caps = 0;
    if (controlPanelOutputRate)
        *controlPanelOutputRate = USUAL_RATE;
    // The library finds out itself how many loudspeakers there are and does not tell; it spreads what is placed.
    if (controlPanelSpeakerMode)
        *controlPanelSpeakerMode = FMOD_SPEAKERMODE_STEREO;
    return FMOD_OK;
}

FMOD_RESULT AudioSystem::setSpeakerMode(FMOD_SPEAKERMODE)
{
    return initialised ? FMOD_ERR_INITIALIZED : FMOD_OK;
}

FMOD_RESULT AudioSystem::set3DSettings(float dopplerScale, float distanceFactor, float rollOffScale)
{
    if (!std::isfinite(dopplerScale) || !std::isfinite(distanceFactor) || !std::isfinite(rollOffScale))
        return FMOD_ERR_INVALID_FLOAT;
    // Loudness over distance is authored; there is no other.
    return dopplerScale == 0 && distanceFactor == 1 && rollOffScale == 0 ? FMOD_OK : FMOD_ERR_UNSUPPORTED;
}

FMOD_RESULT AudioSystem::createDSPByType(FMOD_DSP_TYPE type, FMOD::DSP **dsp)
{
    if (!dsp)
        return FMOD_ERR_INVALID_PARAM;
    *dsp = nullptr;
    if (type != FMOD_DSP_TYPE_LOWPASS)
        return FMOD_ERR_UNSUPPORTED;
    effects.push_back(std::make_unique<LowpassEffect>());
    *dsp = effects.back().get();
    return FMOD_OK;
}

FMOD_RESULT AudioSystem::addDSP(FMOD::DSP *dsp, void **connection)
{
    if (connection)
        *connection = nullptr;
    for (const auto &effect : effects)
        if (effect.get() == dsp)
        {
            effect->add();
            return FMOD_OK;
        }
    return FMOD_ERR_INVALID_HANDLE;
}

FMOD_RESULT AudioSystem::setReverbAmbientProperties(const FMOD_REVERB_PROPERTIES *properties)
{
    if (!properties)
        return FMOD_ERR_INVALID_PARAM;
    rooms.setZones(*properties, *properties, 0);
    return FMOD_OK;
}

void AudioSystem::close()
{
    rooms.forget();
    closed = true;
}

float AudioSystem::advanceLowpass(const GlideStep &step)
{
    float gain = 1;
    for (const auto &effect : effects)
        gain *= effect->advance(step);
    std::erase_if(effects, [](const auto &effect) { return effect->isOver(); });
    return gain;
}

} // namespace port
