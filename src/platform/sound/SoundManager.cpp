#include "platform/sound/SoundManager.h"

#include "platform/sound/FmodVector.h"
#include "platform/sound/SoundComponent.h"
#include "platform/sound/SoundSystem.h"
#include "platform/sound/SoundVolume.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/transforms/TransformComponent.h"
#include "object/reflection/SavedArguments.h"
#include "object/tree/WellKnownPaths.h"
#include "physics/acoustics/ReverbManager.h"
#include "physics/acoustics/SoundWays.h"
#include "physics/bodies/RigidBody.h"
#include "port/fmod/FmodExtras.h"

#include "foundation/Finite.h"
#include "foundation/Logger.h"
#include "foundation/ProfilerScope.h"

#include <algorithm>
#include <cmath>

namespace
{
const String profilerCategory = SCS("Sound");
constexpr float LEAST_CUTOFF = 10, MOST_CUTOFF = 22000; ///< Hz, that a low-pass takes

FMOD_REVERB_PROPERTIES toFmod(const ReverbPreset &preset)
{
    FMOD_REVERB_PROPERTIES room;
    room.Room = preset.room;
    room.RoomHF = preset.roomHF;
    room.DecayTime = preset.decayTime;
    room.DecayHFRatio = preset.decayHFRatio;
    room.Reflections = preset.reflections;
    room.ReflectionsDelay = preset.reflectionsDelay;
    room.Reverb = preset.reverb;
    room.ReverbDelay = preset.reverbDelay;
    room.Diffusion = preset.diffusion;
    room.Density = preset.density;
    return room;
}
} // namespace

void SoundManager::onAddToCoordinator()
{
    SoundSystem &system = getSystemDeref<SoundSystem>();
    system.followManager(getTypedHandle());
    globalVolumes[SOUND_EFFECT] = system.soundEffectVolumeNow();
    globalVolumes[MUSIC] = system.musicVolumeNow();
}

void SoundManager::onMurder()
{
    SoundSystem &system = getSystemDeref<SoundSystem>();
    for (SoundEvent &event : orphans)
        system.fadeOut(event);
    orphans.clear();
    undoChanges();
    SimpleManager::onMurder();
}

void SoundManager::undoChanges()
{
    setMuffled(false);
    for (const auto &[category, volume] : categoriesBefore)
        getSystemDeref<SoundSystem>().setCategoryVolume(category, volume);
    categoriesBefore.clear();
}

ReflectorPtr SoundManager::getComponentClass() const
{
    return SoundComponent::staticType;
}

Coordinator *SoundManager::level() const
{
    return handle_cast<Coordinator>(getParent()).lookup().ptr;
}

void SoundManager::doFrame()
{
    static const String listenerStep = SCS("listener"), eventStep = SCS("events"), libraryStep = SCS("library");
    {
        const ProfilerScope scope(profilerCategory, listenerStep);
        updateGlobalListener();
        listenToRooms();
    }
    {
        const ProfilerScope scope(profilerCategory, eventStep);
        holdWhileStopped();
        SimpleManager::doFrame();
        updateOrphans();
    }
    const ProfilerScope scope(profilerCategory, libraryStep);
    SoundSystem &system = getSystemDeref<SoundSystem>();
    system.updateFMOD();
    if (FMOD::EventSystem *const events = system.getEventSystem())
        heardSounds.update(*events, globalListener);
}

void SoundManager::updateGlobalListener()
{
    TransformComponent *const transform = findEars();
    if (!transform || !isFinite(transform->getPosition()) || !isFinite(transform->getOrientation()))
        return;
    const RigidBody *const body = componentOf<RigidBody>(ears, ComponentKeys::physics);
    const Matrix4 rotation = transform->getOrientation().generateRotation();
    globalListener.position = transform->getPosition();
    globalListener.velocity = body && isFinite(body->getVelocity()) ? body->getVelocity() : Vec4();
    globalListener.directionVector = rotation * Vec4(0, 0, 1, 0);
    globalListener.upVector = rotation * Vec4(0, 1, 0, 0);

    FMOD::EventSystem *const events = getSystemDeref<SoundSystem>().getEventSystem();
    if (!events)
        return;
    const FMOD_VECTOR position = toFmod(globalListener.position), velocity = toFmod(globalListener.velocity),
                      forward = toFmod(globalListener.directionVector), up = toFmod(globalListener.upVector);
    events->set3DListenerAttributes(0, &position, &velocity, &forward, &up);
}

/// Has the maps find the ways to the ears, and the room around the ears resound.
void SoundManager::listenToRooms()
{
    static const String waysName = SCS("soundWaysManager"), reverbName = SCS("reverbManager");
    const Coordinator *const coordinator = level();
    FMOD::EventSystem *const events = getSystemDeref<SoundSystem>().getEventSystem();
    if (!coordinator || !events)
        return;
    if (const auto ways = handle_cast<SimpleManager>(coordinator->getChild(waysName)).lookup())
        for (const Handle<SimpleComponent> &h : ways->getComponents())
            if (const auto map = handle_cast<SoundWays>(h).lookup())
                map->setListener(globalListener.position);
    if (const auto rooms = handle_cast<ReverbManager>(coordinator->getChild(reverbName)).lookup())
    {
        const ReverbShare zones = rooms->zonesAt(globalListener.position, mapOfEars());
        port::setReverbZones(*events, toFmod(*zones.first), toFmod(*zones.second), zones.share);
    }
}

/// The map around the ears; invalid in a level without maps.
Handle<MapRootEntity> SoundManager::mapOfEars() const
{
    Coordinator *const coordinator = level();
    const auto isMap = [](const Handle<Object> &h) { return handle_cast<MapRootEntity>(h).isValid(); };
    const bool hasMap = std::any_of(coordinator->children_begin(), coordinator->children_end(), isMap);
    return hasMap ? coordinator->findMap(globalListener.position) : Handle<MapRootEntity>();
}

/// The transform of who hears the level: the player's, or where there is none, or he has no place, the camera's.
TransformComponent *SoundManager::findEars()
{
    const Coordinator *const coordinator = level();
    if (!coordinator)
        return nullptr;
    ears = coordinator->getChild(WellKnownPaths::player);
    TransformComponent *const players = componentOf<TransformComponent>(ears, ComponentKeys::transform);
    if (players)
        return players;
    ears = currentCamera();
    return componentOf<TransformComponent>(ears, ComponentKeys::transform);
}

Handle<Object> SoundManager::currentCamera()
{
    static const String graphicsName = SCS("graphics2Manager"), currentCameraName = SCS("getCurrentCamera");
    if (!cameraOfLevel)
    {
        const auto graphics = level()->getChild(graphicsName).lookup();
        if (!graphics || !graphics->getType()->getMember(currentCameraName))
            return Handle<Object>();
        cameraOfLevel = graphics->bind(currentCameraName);
    }
    const ErrorReturn<Variant> camera = cameraOfLevel->call();
    return camera.succeeded() ? camera.value.get<Handle<Object>>().value : Handle<Object>();
}

template <class Step>
void SoundManager::forEachEvent(SoundType type, const Step &step)
{
    for (const Handle<SimpleComponent> &h : getComponents())
        if (const auto component = handle_cast<SoundComponent>(h).lookup())
            for (auto &[name, event] : component->eventsOf(type))
                step(event);
}

void SoundManager::renewEvents(const std::function<void()> &changeProject)
{
    struct Kept
    {
        SoundEvent *event;
        SoundEvent::Moment moment;
        SoundType type;
    };
    std::vector<Kept> kept;
    for (const SoundType type : {SOUND_EFFECT, MUSIC})
        forEachEvent(type, [&](SoundEvent &event) { kept.push_back({&event, event.getMoment(), type}); });
    for (SoundEvent &event : orphans)
        event.release();
    orphans.clear();
    changeProject();
    SoundSystem &system = getSystemDeref<SoundSystem>();
    for (const Kept &each : kept)
    {
        const String &name = each.event->getName();
        each.event->renew(each.type == MUSIC ? system.newMusic(name) : system.newSoundEffect(name), each.moment);
    }
}

/// Holds the sound effects of a level that was stopped, and lets them go on with it.
void SoundManager::holdWhileStopped()
{
    const Coordinator *const coordinator = level();
    const bool stopped = coordinator && coordinator->getLoopState() <= Coordinator::LOOP_STOP;
    if (stopped == held)
        return;
    held = stopped;
    const auto hold = [stopped](SoundEvent &event) { event.setHeld(stopped); };
    forEachEvent(SOUND_EFFECT, hold);
    std::for_each(orphans.begin(), orphans.end(), hold);
}

void SoundManager::updateOrphans()
{
    for (SoundEvent &event : orphans)
    {
        if (event.isPlaying())
            event.updateEvent(globalListener);
        else
            event.release();
    }
    std::erase_if(orphans, [](const SoundEvent &event) { return !event.exists(); });
}

void SoundManager::takeOver(SoundEvent &event)
{
    const Coordinator *const coordinator = level();
    const bool levelEnds = isDying() || !coordinator || coordinator->isDying();
    if (!event.isPlaying())
        event.release();
    else if (levelEnds || event.isLoop())
        getSystemDeref<SoundSystem>().fadeOut(event);
    else
    {
        event.setEntity(Handle<Entity>());
        orphans.push_back(event);
        event = SoundEvent();
    }
}

void SoundManager::PlayEvent(String sound, SoundEvent &rEvent)
{
    static const String place = SCS("SoundManager");
    if (!rEvent.exists())
    {
        Logger().writeFormatted(Logger_::I_DEBUG, place, __LINE__, "pEvent value: %p",
                                static_cast<const void *>(rEvent.getEvent()));
        return;
    }
    if (rEvent.isPaused())
    {
        rEvent.stop();
        rEvent.setHeld(false);
        rEvent.setPaused(false);
    }
    rEvent.start();
    rEvent.tellMade();
}

void SoundManager::StopEvent(String sound, SoundEvent &rEvent)
{
    rEvent.stop();
}

void SoundManager::PauseEvent(String sound, SoundEvent &rEvent, bool pause)
{
    rEvent.setPaused(pause);
}

void SoundManager::SetGlobalSoundVolume(float vol)
{
    setGlobalVolume(SOUND_EFFECT, vol);
}

void SoundManager::SetGlobalMusicVolume(float vol)
{
    setGlobalVolume(MUSIC, vol);
}

void SoundManager::setGlobalVolume(SoundType type, float vol)
{
    if (silenced)
        return;
    static const String effectsName = SCS("all sound effects"), musicName = SCS("all music");
    const float volume = volumeFrom(vol, globalVolumes[type], type == MUSIC ? musicName : effectsName);
    globalVolumes[type] = volume;
    const auto set = [volume](SoundEvent &event) { event.setKindVolume(volume); };
    forEachEvent(type, set);
    if (type == SOUND_EFFECT)
        std::for_each(orphans.begin(), orphans.end(), set);
}

void SoundManager::PauseSoundEffects(bool val)
{
    forEachEvent(SOUND_EFFECT, [val](SoundEvent &event) { event.setPaused(val); });
}

void SoundManager::PauseMusic(bool val)
{
    forEachEvent(MUSIC, [val](SoundEvent &event) { event.setPaused(val); });
}

void SoundManager::setSilenced(bool val)
{
    const SoundSystem &system = getSystemDeref<SoundSystem>();
    if (val)
    {
        SetGlobalSoundVolume(0);
        SetGlobalMusicVolume(0);
    }
    silenced = val;
    if (!val)
    {
        SetGlobalSoundVolume(system.soundEffectVolumeNow());
        SetGlobalMusicVolume(system.musicVolumeNow());
    }
}

void SoundManager::setMuffled(bool val)
{
    if (muffled == val)
        return;
    muffled = val;
    getSystemDeref<SoundSystem>().setLowpass(muffled, muffledCutoff);
}

void SoundManager::setMuffledCutoff(float val)
{
    if (!std::isfinite(val))
        return;
    muffledCutoff = std::clamp(val, LEAST_CUTOFF, MOST_CUTOFF);
    if (muffled)
        getSystemDeref<SoundSystem>().setLowpass(muffled, muffledCutoff);
}

void SoundManager::setCategoryVolume(String category, float volume)
{
    SoundSystem &system = getSystemDeref<SoundSystem>();
    categoriesBefore.insert(category, system.getCategoryVolume(category));
    system.setCategoryVolume(category, volume);
}

float SoundManager::getCategoryVolume(String category)
{
    return getSystemDeref<SoundSystem>().getCategoryVolume(category);
}
