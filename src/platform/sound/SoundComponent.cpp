#include "platform/sound/SoundComponent.h"

#include "platform/sound/SoundSystem.h"
#include "platform/sound/SoundVolume.h"

#include "engine/levels/Coordinator.h"
#include "engine/systems/NameSuggestion.h"
#include "object/tree/PathBelow.h"
#include "object/tree/WellKnownPaths.h"

#include "foundation/Logger.h"

#include <cmath>

void SoundComponent::onLoadComplete()
{
    const Handle<Entity> entity = handle_cast<Entity>(getParent());
    for (SoundMap *const events : {&sounds_, &music_})
        for (auto &[name, event] : *events)
            if (!event.isPlaced())
                event.setEntity(entity);
}

void SoundComponent::onMurder()
{
    SoundManager *const manager = findManager();
    for (SoundMap *const events : {&sounds_, &music_})
        for (auto &[name, event] : *events)
        {
            if (manager)
                manager->takeOver(event);
            else
                event.release();
        }
    SimpleComponent::onMurder();
}

void SoundComponent::doFrame()
{
    const SoundManager *const manager = findManager();
    if (!manager)
        return;
    for (SoundMap *const events : {&sounds_, &music_})
        for (auto &[name, event] : *events)
            if (event.exists())
                event.updateEvent(manager->getGlobalListener());
}

void SoundComponent::addSoundEffect(String sound)
{
    addSoundEffectAs(sound, sound);
}

void SoundComponent::addSoundEffectAs(String name, String sound)
{
    if (!hasSoundEffect(name))
        setSoundEventPtr(sounds_[name], sound);
}

void SoundComponent::addMusic(String music)
{
    if (!hasMusic(music))
        setMusicEventPtr(music_[music], music);
}

void SoundComponent::setSoundEventPtr(SoundEvent &event, const String &name)
{
    SoundSystem &system = getSystemDeref<SoundSystem>();
    event = system.newSoundEffect(name);
    adopt(event, SoundType::SOUND_EFFECT);
    if (!event.exists())
        tellMissing("sound effect", name, system.getSoundEffects());
}

void SoundComponent::setMusicEventPtr(SoundEvent &event, const String &name)
{
    SoundSystem &system = getSystemDeref<SoundSystem>();
    event = system.newMusic(name);
    adopt(event, SoundType::MUSIC);
    if (!event.exists())
        tellMissing("music", name, system.getMusic());
}

/// Makes a new event one of this entity's.
void SoundComponent::adopt(SoundEvent &event, SoundType type)
{
    event.initializeParams();
    event.setEntity(handle_cast<Entity>(getParent()));
    if (const SoundManager *const manager = findManager())
        event.setKindVolume(manager->getGlobalVolume(type));
}

/// Tells of an event that the project lacks; where the project itself is missing, that was told.
void SoundComponent::tellMissing(const char *kind, const String &name, const NameMap<bool> &known) const
{
    if (known.empty())
        return;
    std::vector<String> names;
    for (const auto &[each, loops] : known)
        names.push_back(each);
    KV_LOGF(Logger_::I_WARNING, "%s: the sound project has %s", pathBelow(nullptr, *this).toCString(),
            describeUnknownName(kind, name, names).toCString());
}

SoundManager *SoundComponent::findManager() const
{
    return handle_cast<SoundManager>(getManager()).lookup().ptr;
}

SoundEvent *SoundComponent::findEvent(const String &name)
{
    SoundEvent *const effect = sounds_.find(name);
    return effect ? effect : music_.find(name);
}

void SoundComponent::play(SoundType type, const String &name)
{
    SoundEvent *const event = eventsOf(type).find(name);
    SoundManager *const manager = findManager();
    if (event && manager)
        manager->PlayEvent(name, *event);
}

void SoundComponent::stop(SoundType type, const String &name)
{
    SoundEvent *const event = eventsOf(type).find(name);
    SoundManager *const manager = findManager();
    if (event && manager)
        manager->StopEvent(name, *event);
}

void SoundComponent::pause(SoundType type, const String &name, bool paused)
{
    SoundEvent *const event = eventsOf(type).find(name);
    SoundManager *const manager = findManager();
    if (event && manager)
        manager->PauseEvent(name, *event, paused);
}

void SoundComponent::stopAll(SoundType type)
{
    for (auto &[name, event] : eventsOf(type))
        event.stop();
}

void SoundComponent::pauseAll(SoundType type, bool paused)
{
    for (auto &[name, event] : eventsOf(type))
        event.setPaused(paused);
}

void SoundComponent::playSoundEffect(String sound)
{
    play(SoundType::SOUND_EFFECT, sound);
}

void SoundComponent::stopSoundEffect(String sound)
{
    stop(SoundType::SOUND_EFFECT, sound);
}

void SoundComponent::pauseSoundEffect(String sound)
{
    pause(SoundType::SOUND_EFFECT, sound, true);
}

void SoundComponent::unpauseSoundEffect(String sound)
{
    pause(SoundType::SOUND_EFFECT, sound, false);
}

void SoundComponent::playMusic(String music)
{
    play(SoundType::MUSIC, music);
}

void SoundComponent::stopMusic(String music)
{
    stop(SoundType::MUSIC, music);
}

void SoundComponent::pauseMusic(String music)
{
    pause(SoundType::MUSIC, music, true);
}

void SoundComponent::unpauseMusic(String music)
{
    pause(SoundType::MUSIC, music, false);
}

void SoundComponent::stopAllSoundEffects()
{
    stopAll(SoundType::SOUND_EFFECT);
}

void SoundComponent::pauseAllSoundEffects()
{
    pauseAll(SoundType::SOUND_EFFECT, true);
}

void SoundComponent::unpauseAllSoundEffects()
{
    pauseAll(SoundType::SOUND_EFFECT, false);
}

void SoundComponent::stopAllMusic()
{
    stopAll(SoundType::MUSIC);
}

void SoundComponent::pauseAllMusic()
{
    pauseAll(SoundType::MUSIC, true);
}

void SoundComponent::unpauseAllMusic()
{
    pauseAll(SoundType::MUSIC, false);
}

void SoundComponent::stopAllSound()
{
    stopAllSoundEffects();
    stopAllMusic();
}

void SoundComponent::pauseAllSound()
{
    pauseAllSoundEffects();
    pauseAllMusic();
}

void SoundComponent::unpauseAllSound()
{
    unpauseAllSoundEffects();
    unpauseAllMusic();
}

void SoundComponent::setMusicVolume(float vol)
{
    const float volume = volumeFrom(vol, 1, pathBelow(nullptr, *this));
    for (auto &[name, event] : music_)
        event.setVolume(volume);
}

void SoundComponent::setSoundVolume(float vol)
{
    const float volume = volumeFrom(vol, 1, pathBelow(nullptr, *this));
    for (auto &[name, event] : sounds_)
        event.setVolume(volume);
}

void SoundComponent::setEventVolume(String eventName, float vol)
{
    if (SoundEvent *const event = findEvent(eventName))
        event->setVolume(volumeFrom(vol, event->getVolume(), eventName));
}

void SoundComponent::setParam(String sound, String paramName, float value)
{
    setParamOf(sounds_.find(sound), paramName, value);
}

void SoundComponent::setMusicParam(String music, String paramName, float value)
{
    setParamOf(music_.find(music), paramName, value);
}

void SoundComponent::setParamOf(SoundEvent *event, const String &paramName, float value)
{
    if (SoundParameter *const param = event ? event->findParam(paramName) : nullptr)
        param->SetParam(value);
}

SoundParameter::Range SoundComponent::getParamRange(const String &sound, const String &paramName)
{
    SoundEvent *const event = sounds_.find(sound);
    const SoundParameter *const param = event ? event->findParam(paramName) : nullptr;
    return param ? param->GetRange() : SoundParameter::Range();
}

void SoundComponent::placeEvent(String eventName, Vec4 position)
{
    if (SoundEvent *const event = findEvent(eventName))
        event->place(position);
}

void SoundComponent::unplaceEvent(String eventName)
{
    if (SoundEvent *const event = findEvent(eventName))
        event->setEntity(handle_cast<Entity>(getParent()));
}

void SoundComponent::setPlayerAsListener()
{
    const auto level = getAncestorOfType<Coordinator>().lookup();
    hListener = level ? handle_cast<Entity>(level->getChild(WellKnownPaths::player)) : Handle<Entity>();
}

bool SoundComponent::isPlaying(String eventName) const
{
    const SoundEvent *const effect = sounds_.find(eventName);
    const SoundEvent *const event = effect ? effect : music_.find(eventName);
    return event && event->isPlaying();
}

bool SoundComponent::playRequestedSound(const String &sound)
{
    const SoundEvent *const event = sounds_.find(sound);
    playSoundEffect(sound);
    return event && event->exists();
}
