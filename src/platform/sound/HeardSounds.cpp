#include "platform/sound/HeardSounds.h"

#include "platform/sound/FmodVector.h"
#include "platform/sound/GlobalListener.h"
#include "platform/sound/SoundMessages.h"

#include "object/messages/PostOffice.h"
#include "object/reflection/SavedArguments.h"

#include <algorithm>

namespace
{
bool isCaptioned(const port::HeardEvent &sound)
{
    return *sound.caption && sound.loudness >= sound.leastCaption;
}

HeardSound describe(const port::HeardEvent &sound, const GlobalListener &listener)
{
    HeardSound described;
    described.name = String::copyFrom(sound.name);
    described.caption = isCaptioned(sound) ? String::copyFrom(sound.caption) : String();
    described.loudness = sound.loudness;
    if (sound.placed)
    {
        described.direction = listener.seen(placeOf(sound.apparent));
        described.distance = described.direction.magnitude();
        described.direction.normalize();
    }
    return described;
}

void send(const HeardSound &sound)
{
    Vec4 direction = sound.direction;
    direction.w = sound.distance;
    SavedArguments payload = SavedArguments::of(sound.caption, direction, sound.loudness);
    PostOffice().submitMessage(SoundHeardMessage, payload);
}
} // namespace

void HeardSounds::update(FMOD::EventSystem &system, const GlobalListener &listener)
{
    port::listHeard(system, heard);
    for (Told &each : told)
        ++each.framesSoft;
    fresh.clear();
    std::copy_if(heard.begin(), heard.end(), std::back_inserter(fresh),
                 [this](const port::HeardEvent &sound) { return isCaptioned(sound) && tell(sound); });
    std::erase_if(told, [](const Told &each) { return each.framesSoft > FORGET_FRAMES; });
    for (const port::HeardEvent &sound : fresh)
        send(describe(sound, listener));
}

/// Notes that a sound is loud enough; whether that is news.
bool HeardSounds::tell(const port::HeardEvent &sound)
{
    const auto known = std::find_if(told.begin(), told.end(),
                                    [&](const Told &each)
                                    { return each.event == sound.event && each.startOrder == sound.startOrder; });
    if (known != told.end())
    {
        known->framesSoft = 0;
        return false;
    }
    told.push_back({sound.event, sound.startOrder, 0});
    return true;
}

std::vector<HeardSound> HeardSounds::list(const GlobalListener &listener) const
{
    std::vector<HeardSound> sounds;
    sounds.reserve(heard.size());
    for (const port::HeardEvent &sound : heard)
        sounds.push_back(describe(sound, listener));
    return sounds;
}
