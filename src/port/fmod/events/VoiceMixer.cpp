#include "port/fmod/events/VoiceMixer.h"

#include <algorithm>

namespace port
{

namespace
{

constexpr float AUDIBLE = 0.0003F;  ///< -70 dB; below it nothing is given a channel
constexpr float KEPT = 0.7F;        ///< of that, for who has one
constexpr float PREFERENCE = 1.25F; ///< of who is heard, so that equals do not take turns

} // namespace

void VoiceMixer::collect(const AudioEvents &events)
{
    candidates.clear();
    for (const auto &event : events)
    {
        const bool heard = event->chosen;
        event->chosen = false;
        if (!event->isUnderWay() || event->isOrphan() || event->isHeld())
            continue;
        event->getPlan().heard = 0;
        const float loudness = event->loudness();
        if (loudness < (heard ? AUDIBLE * KEPT : AUDIBLE))
            continue;
        const float score = loudness * event->getPlan().weight * (heard ? PREFERENCE : 1);
        candidates.push_back({score, loudness, event.get(), heard});
    }
}

void VoiceMixer::give(const Candidate &candidate)
{
    AudioEvent &event = *candidate.event;
    EventPlan &plan = event.getPlan();
    const int wanted = event.countSounding();
    event.chosen = given + wanted <= channels && plan.heard < plan.data->voices;
    if (event.chosen)
    {
        given += wanted;
        ++plan.heard;
    }
    else if (candidate.heard)
        ++stolen;
}

void VoiceMixer::choose(const AudioEvents &events)
{
    collect(events);
    // Between equals the one that began earlier, so that runs repeat.
    const auto isWorse = [](const Candidate &a, const Candidate &b)
    { return a.score != b.score ? a.score < b.score : a.event->getStartOrder() > b.event->getStartOrder(); };
    std::make_heap(candidates.begin(), candidates.end(), isWorse);
    given = 0;
    auto end = candidates.end();
    while (end != candidates.begin() && given < channels)
    {
        std::pop_heap(candidates.begin(), end, isWorse);
        give(*--end);
    }
    stolen +=
        static_cast<int>(std::count_if(candidates.begin(), end, [](const Candidate &each) { return each.heard; }));
}

void VoiceMixer::begin(AudioEvent &event, std::size_t layer, double now)
{
    EventPlan &plan = event.getPlan();
    const LayerPlan &layerPlan = plan.layers[layer];
    LayerVoice &voice = event.getVoices()[layer];
    const TrackEntry &entry = voice.entryOf(layerPlan);
    const bool streamed = layerPlan.streams || plan.bank->isLong(entry.sample);
    const ALuint buffer = streamed ? 0 : plan.bank->bufferOf(entry.sample, plan.useOf(entry));
    if (!streamed && !buffer)
        return voice.end();
    if (!pool.take(voice.source))
        return;
    const bool loops = entry.next == voice.entry;
    if (streamed)
    {
        SampleStream stream(*plan.bank, layerPlan.entries, voice.entry, voice.position, plan.placed);
        pool.load(*voice.source, std::make_unique<StreamQueue>(std::move(stream)), loops);
    }
    else
        pool.load(*voice.source, buffer, loops, voice.position);
    const bool beginsInside = !voice.isAtStart() || (loops && plan.beat == 0);
    pool.play(*voice.source, plan.placed, beginsInside, now);
}

void VoiceMixer::hearOne(AudioEvent &event, float lowpass, double now)
{
    std::vector<LayerVoice> &voices = event.getVoices();
    const bool flows =
        std::all_of(voices.begin(), voices.end(),
                    [](const LayerVoice &voice) { return !voice.source || SourcePool::isFlowing(*voice.source); });
    // After a hitch that was longer than what was read ahead all layers begin again together, to stay in step.
    if (!flows)
        silence(event, true);
    for (std::size_t i = 0; i < voices.size(); ++i)
    {
        if (voices[i].state == LayerVoice::SOUNDING && !voices[i].source)
            begin(event, i, now);
        if (!voices[i].source)
            continue;
        SourceSettings settings = event.settingsOf(voices[i]);
        settings.directLowpass *= lowpass;
        settings.sendLowpass *= lowpass;
        pool.set(*voices[i].source, settings, now);
    }
}

void VoiceMixer::silence(AudioEvent &event, bool exact)
{
    for (LayerVoice &voice : event.getVoices())
    {
        if (!voice.source)
            continue;
        if (!exact && !voice.source->stream && voice.state == LayerVoice::SOUNDING)
            voice.position = SourcePool::positionOf(*voice.source);
        SourcePool::leave(voice.source);
    }
}

void VoiceMixer::hear(const AudioEvents &events, float lowpass, double now, bool exact)
{
    for (const auto &event : events)
        if (!event->chosen)
            silence(*event, exact);
    pool.tend(now);
    for (const auto &event : events)
        if (event->chosen)
            hearOne(*event, lowpass, now);
    pool.startPlayed();
}

} // namespace port
