// How an event instance moves on in time, and what its parameters make of it.
#include "port/fmod/events/AudioEvent.h"

#include "port/fmod/events/AudioCategory.h"
#include "port/fmod/output/LowpassGain.h"

#include <algorithm>
#include <cmath>

namespace port
{

namespace
{

/// Of what the rooms give back, where no curve says it: something of all that stands in the world.
constexpr float PLACED_SEND = 0.3F;

} // namespace

bool AudioEvent::isHeld() const
{
    return paused || (plan && plan->category && plan->category->isHeld());
}

bool AudioEvent::wantsTension(const LayerPlan &layer) const
{
    if (!layer.followsTension || plan->tensionParameter < 0)
        return true;
    return parameters[static_cast<std::size_t>(plan->tensionParameter)].get() >= layer.tension;
}

void AudioEvent::beginVoices(Chance &chance)
{
    beginning = false;
    elapsed = 0;
    fade = plan->data->fadeIn > 0 ? 0 : 1;
    path.restart();
    for (std::size_t i = 0; i < voices.size(); ++i)
    {
        voices[i].begin(plan->layers[i], *plan->bank, chance);
        voices[i].mix = voices[i].mixGoal = wantsTension(plan->layers[i]) ? 1 : 0;
    }
}

void AudioEvent::applyCurves()
{
    parametersChanged = false;
    curveVolume = curveLowpass = curveSend = 1;
    float semitones = 0;
    bool sends = false;
    for (LayerVoice &voice : voices)
        voice.curveVolume = voice.curveLowpass = voice.curveSend = voice.curvePitch = 1;
    for (const AudioParameter &parameter : parameters)
        for (const CurveData &each : parameter.getData().curves)
        {
            const float value = each.curve.at(parameter.get());
            LayerVoice *voice = each.layer < 0 ? nullptr : &voices[static_cast<std::size_t>(each.layer)];
            if (each.target == CurveData::VOLUME)
                (voice ? voice->curveVolume : curveVolume) *= value;
            else if (each.target == CurveData::LOWPASS)
                (voice ? voice->curveLowpass : curveLowpass) *= lowpassGain(value);
            else if (each.target == CurveData::REVERB)
                (voice ? voice->curveSend : curveSend) *= value;
            else if (voice)
                voice->curvePitch *= std::exp2(value / 12);
            else
                semitones += value;
            sends = sends || each.target == CurveData::REVERB;
        }
    curvePitch = semitones == 0 ? 1 : std::exp2(semitones / 12);
    if (!sends)
        curveSend = plan->placed ? PLACED_SEND : 0;
}

void AudioEvent::moveFade(double seconds)
{
    const float length = state == STOPPING ? plan->data->fadeOut : plan->data->fadeIn;
    const float step = length > 0 ? static_cast<float>(seconds) / length : 1;
    fade = std::clamp(state == STOPPING ? fade - step : fade + step, 0.0F, 1.0F);
    if (state == STOPPING && fade <= 0)
        end();
}

/// Layers change on a beat, and take one beat for it.
void AudioEvent::moveTension(double seconds)
{
    const double beatBefore = std::floor(elapsed / plan->beat);
    elapsed += seconds;
    const bool onBeat = std::floor(elapsed / plan->beat) > beatBefore;
    const auto step = static_cast<float>(seconds / plan->beat);
    for (std::size_t i = 0; i < voices.size(); ++i)
    {
        LayerVoice &voice = voices[i];
        voice.mix += std::clamp(voice.mixGoal - voice.mix, -step, step);
        if (onBeat)
            voice.mixGoal = wantsTension(plan->layers[i]) ? 1 : 0;
    }
}

void AudioEvent::moveVoices(double seconds, Chance &chance)
{
    const double passing = seconds * static_cast<double>(curvePitch);
    for (std::size_t i = 0; i < voices.size(); ++i)
        voices[i].advance(plan->layers[i], *plan->bank, chance, passing);
    if (plan->beat > 0 && !voices.empty() && voices.front().state == LayerVoice::ENDED)
        for (LayerVoice &voice : voices)
            voice.end();
    if (std::all_of(voices.begin(), voices.end(),
                    [](const LayerVoice &voice) { return voice.state == LayerVoice::ENDED; }))
        state = IDLE;
}

void AudioEvent::advance(double seconds, const GlideStep &step, Chance &chance)
{
    if (!plan || !isUnderWay())
        return;
    if (parametersChanged)
        applyCurves();
    if (beginning)
    {
        seconds = 0;
        beginVoices(chance);
    }
    path.advance(position, step);
    if (isHeld())
        return;
    moveFade(seconds);
    if (plan->beat > 0)
        moveTension(seconds);
    if (isUnderWay())
        moveVoices(seconds, chance);
}

float AudioEvent::loudness() const
{
    float loudest = 0;
    for (const LayerVoice &voice : voices)
        if (voice.state == LayerVoice::SOUNDING)
            loudest = std::max(loudest, voice.volume * voice.curveVolume * voice.mix);
    const float category = plan->category ? plan->category->getGain() : 1;
    return loudest * volume * category * curveVolume * fade * path.getGain() * std::max(directShare, reverbShare / 2);
}

float AudioEvent::loudnessAtAMetre() const
{
    if (!plan)
        return 0;
    float whole = std::pow(10.0F, plan->data->loudness / 20), loudestLayer = 0;
    for (std::size_t layer = 0; layer < plan->layers.size(); ++layer)
    {
        float gain = 1;
        for (const AudioParameter &parameter : parameters)
            for (const CurveData &each : parameter.getData().curves)
                if (each.target == CurveData::VOLUME && each.layer == static_cast<int>(layer))
                    gain *= each.curve.at(parameter.get());
        loudestLayer = std::max(loudestLayer, gain);
    }
    for (const AudioParameter &parameter : parameters)
        for (const CurveData &each : parameter.getData().curves)
            if (each.target == CurveData::VOLUME && each.layer < 0 && parameter.getData().name != "distance")
                whole *= each.curve.at(parameter.get());
    return whole * loudestLayer;
}

int AudioEvent::countSounding() const
{
    return static_cast<int>(std::count_if(voices.begin(), voices.end(),
                                          [](const LayerVoice &voice) { return voice.state == LayerVoice::SOUNDING; }));
}

SourceSettings AudioEvent::settingsOf(const LayerVoice &voice) const
{
    const float category = plan->category ? plan->category->getGain() : 1;
    const float lowpass = curveLowpass * voice.curveLowpass * path.getLowpass();
    SourceSettings settings;
    settings.gain =
        volume * category * curveVolume * fade * path.getGain() * voice.volume * voice.curveVolume * voice.mix;
    settings.pitch = voice.pitch * voice.curvePitch * curvePitch;
    settings.position = apparentPosition();
    settings.direct = directShare;
    settings.directLowpass = lowpass;
    settings.send = std::min(1.0F, curveSend * voice.curveSend * path.getReverb() * reverbShare);
    settings.sendLowpass = lowpass;
    return settings;
}

} // namespace port
