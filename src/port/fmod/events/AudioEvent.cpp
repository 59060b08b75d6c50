#include "port/fmod/events/AudioEvent.h"

#include "port/fmod/output/SourcePool.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace port
{

namespace
{

unsigned int startsEver = 0;

bool isFinite(const FMOD_VECTOR &vector)
{
    return std::isfinite(vector.x) && std::isfinite(vector.y) && std::isfinite(vector.z);
}

} // namespace

AudioEvent::AudioEvent(EventPlan &plan) : plan(&plan), voices(plan.layers.size())
{
    const std::vector<ParameterData> &all = plan.data->parameters;
    parameters.reserve(all.size());
    for (std::size_t i = 0; i < all.size(); ++i)
        parameters.emplace_back(all[i], static_cast<int>(i), parametersChanged);
}

void AudioEvent::leaveSources()
{
    for (LayerVoice &voice : voices)
        if (voice.source)
            SourcePool::leave(voice.source);
}

void AudioEvent::end()
{
    leaveSources();
    state = IDLE;
    chosen = false;
}

void AudioEvent::orphan()
{
    end();
    plan = nullptr;
}

FMOD_RESULT AudioEvent::start()
{
    if (!plan)
        return FMOD_ERR_INVALID_HANDLE;
    end();
    state = PLAYING;
    beginning = true;
    startOrder = ++startsEver;
    return FMOD_OK;
}

FMOD_RESULT AudioEvent::stop(bool immediate)
{
    if (!plan)
        return FMOD_ERR_INVALID_HANDLE;
    if (immediate || beginning || plan->data->fadeOut <= 0 || isHeld())
        end();
    else if (state == PLAYING)
        state = STOPPING;
    return FMOD_OK;
}

FMOD_RESULT AudioEvent::setPaused(bool newPaused)
{
    if (!plan)
        return FMOD_ERR_INVALID_HANDLE;
    paused = newPaused;
    return FMOD_OK;
}

FMOD_RESULT AudioEvent::getPaused(bool *pausedOut)
{
    if (!pausedOut)
        return FMOD_ERR_INVALID_PARAM;
    *pausedOut = paused;
    return FMOD_OK;
}

FMOD_RESULT AudioEvent::setVolume(float newVolume)
{
    if (std::isnan(newVolume))
        return FMOD_ERR_INVALID_FLOAT;
    volume = std::clamp(newVolume, 0.0F, 1.0F);
    return FMOD_OK;
}

FMOD_RESULT AudioEvent::getVolume(float *volumeOut)
{
    if (!volumeOut)
        return FMOD_ERR_INVALID_PARAM;
    *volumeOut = volume;
    return FMOD_OK;
}

FMOD_RESULT AudioEvent::set3DAttributes(const FMOD_VECTOR *newPosition, const FMOD_VECTOR *velocity,
                                        const FMOD_VECTOR *orientation)
{
    for (const FMOD_VECTOR *given : {newPosition, velocity, orientation})
        if (given && !isFinite(*given))
            return FMOD_ERR_INVALID_FLOAT;
    if (newPosition)
        position = *newPosition;
    return FMOD_OK;
}

FMOD_RESULT AudioEvent::set3DOcclusion(float directOcclusion, float reverbOcclusion)
{
    if (std::isnan(directOcclusion) || std::isnan(reverbOcclusion))
        return FMOD_ERR_INVALID_FLOAT;
    directShare = 1 - std::clamp(directOcclusion, 0.0F, 1.0F);
    reverbShare = 1 - std::clamp(reverbOcclusion, 0.0F, 1.0F);
    return FMOD_OK;
}

FMOD_RESULT AudioEvent::getState(FMOD_EVENT_STATE *stateOut)
{
    if (!stateOut)
        return FMOD_ERR_INVALID_PARAM;
    *stateOut = plan ? FMOD_EVENT_STATE_READY : 0;
    if (isUnderWay())
        *stateOut |= FMOD_EVENT_STATE_PLAYING | FMOD_EVENT_STATE_CHANNELSACTIVE;
    return FMOD_OK;
}

FMOD_RESULT AudioEvent::getNumParameters(int *count)
{
    if (!count)
        return FMOD_ERR_INVALID_PARAM;
    *count = static_cast<int>(parameters.size());
    return FMOD_OK;
}

FMOD_RESULT AudioEvent::getParameterByIndex(int index, FMOD::EventParameter **parameter)
{
    if (!parameter)
        return FMOD_ERR_INVALID_PARAM;
    *parameter = nullptr;
    if (index < 0 || index >= static_cast<int>(parameters.size()))
        return FMOD_ERR_INVALID_PARAM;
    *parameter = &parameters[static_cast<std::size_t>(index)];
    return FMOD_OK;
}

FMOD_RESULT AudioEvent::getParameter(const char *name, FMOD::EventParameter **parameter)
{
    if (!parameter)
        return FMOD_ERR_INVALID_PARAM;
    *parameter = nullptr;
    if (!plan)
        return FMOD_ERR_INVALID_HANDLE;
    for (AudioParameter &each : parameters)
        if (name && each.getData().name == name)
            *parameter = &each;
    return *parameter ? FMOD_OK : FMOD_ERR_INVALID_PARAM;
}

FMOD_RESULT AudioEvent::release()
{
    end();
    released = true;
    return FMOD_OK;
}

FMOD_RESULT AudioEvent::tellPath(const SoundPath &told)
{
    const float values[] = {told.gain, told.lowpass, told.reverb};
    if (!isFinite(told.apparent) || std::any_of(std::begin(values), std::end(values), [](float f) { return f != f; }))
        return FMOD_ERR_INVALID_FLOAT;
    SoundPath bounded = told;
    bounded.gain = std::clamp(told.gain, 0.0F, 1.0F);
    bounded.reverb = std::clamp(told.reverb, 0.0F, 4.0F);
    path.tell(bounded);
    return FMOD_OK;
}

} // namespace port
