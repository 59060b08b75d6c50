#include "platform/sound/SoundSystem.h"

#include "platform/sound/SoundEvent.h"
#include "platform/sound/SoundManager.h"
#include "platform/sound/SoundVolume.h"

#include "engine/levels/GameLoop.h"
#include "engine/systems/NameSuggestion.h"
#include "engine/systems/SystemSystem.h"
#include "port/fmod/FmodExtras.h"

#include "foundation/Logger.h"
#include "foundation/Random.h"
#include "foundation/TextLines.h"

#include <algorithm>

namespace
{
constexpr const char *MEDIA_PATH = "..\\assets\\sound\\fmod\\";
constexpr const char *PROJECT_FILE = "kaVel.fev";
constexpr const char *SOUND_EFFECT_GROUP = "kaVel/sfx";
constexpr const char *MUSIC_GROUP = "kaVel/music";
constexpr int CHANNELS = 64;
constexpr FMOD_INITFLAGS INIT_FLAGS = 26; ///< as published: the listener's axes and how voices become virtual
constexpr float DEFAULT_VOLUME = 0.9f;
constexpr float LOWPASS_CUTOFF = 1000; ///< Hz, where the global low-pass begins
constexpr int BEHIND_SOUND_MANAGERS = 1001;

void logNotice(const std::string &text, bool isProblem)
{
    KV_LOG(isProblem ? Logger_::I_WARNING : Logger_::I_INFO, text.c_str());
}

bool isPlaying(FMOD::Event &event)
{
    FMOD_EVENT_STATE state = 0;
    event.getState(&state);
    return state & (FMOD_EVENT_STATE_PLAYING | FMOD_EVENT_STATE_CHANNELSACTIVE);
}

SoundEvent newEvent(FMOD::EventGroup *group, const SoundSystem::EventList &known, const String &name)
{
    FMOD::Event *event = nullptr;
    if (group)
        group->getEvent(name.toCString(), FMOD_EVENT_DEFAULT, &event);
    const bool *const loops = known.find(name);
    return SoundEvent(event, name, loops && *loops);
}
} // namespace

void SoundSystem::systemStartup()
{
    if (soundEffectVolume == UNCHOSEN)
        soundEffectVolume = DEFAULT_VOLUME;
    if (musicVolume == UNCHOSEN)
        musicVolume = DEFAULT_VOLUME;
    isStarted = true;
    port::setAudioNotice(logNotice);
    port::setAudioSeed(engineSeed());
    port::setAudioOverlays(linesOf(overlays));
    if (offline || headphones || mono || !device.empty())
    {
        port::AudioOutput output;
        output.kind = offline ? port::AudioOutput::MEMORY : port::AudioOutput::DEVICE;
        output.sampleRate = SoundRecording::SAMPLE_RATE;
        output.headRelated = headphones;
        output.mono = mono;
        output.device = device.toCString();
        port::setAudioOutput(output);
    }
    InitFMOD();
    if (offline && !recordFile.empty())
        recording.start(recordFile);
}

void SoundSystem::InitFMOD()
{
    if (pEventSystem_)
        return;
    openEventSystem();
    if (!pEventSystem_ || !pFMODSystem_)
    {
        KV_LOG(Logger_::I_ERROR, "The game is silent: there is no audio library.");
        return;
    }
    loadProject();
    makeGlobalLowpass();
}

void SoundSystem::openEventSystem()
{
    FMOD_EventSystem_Create(&pEventSystem_);
    if (pEventSystem_)
        pEventSystem_->getSystemObject(&pFMODSystem_);
    if (!pFMODSystem_)
        return;
    FMOD_CAPS caps = 0;
    int outputRate = 0;
    FMOD_SPEAKERMODE speakerMode = FMOD_SPEAKERMODE_STEREO;
    pFMODSystem_->getDriverCaps(0, &caps, &outputRate, &speakerMode);
    pFMODSystem_->setSpeakerMode(speakerMode);
    pEventSystem_->init(CHANNELS, INIT_FLAGS, nullptr, FMOD_EVENT_INIT_NORMAL);
    // Neither doppler nor roll-off: what distance does to an event is authored by its parameter "distance".
    pFMODSystem_->set3DSettings(0, 1, 0);
}

void SoundSystem::loadProject()
{
    pEventSystem_->setMediaPath(MEDIA_PATH);
    pEventSystem_->load(PROJECT_FILE, nullptr, &pFMODProject_);
    if (!pFMODProject_)
    {
        KV_LOGF(Logger_::I_WARNING, "The game is silent: the sound project %s%s could not be loaded.", MEDIA_PATH,
                PROJECT_FILE);
        return;
    }
    pFMODProject_->getGroup(SOUND_EFFECT_GROUP, false, &pSoundEffects_);
    pFMODProject_->getGroup(MUSIC_GROUP, false, &pMusic_);
    listEvents();
    for (const auto &[category, part] : playersVolumes)
        applyPlayersVolume(category, part);
}

void SoundSystem::dropProject()
{
    for (FMOD::Event *const event : fading)
        event->release();
    fading.clear();
    if (pFMODProject_)
        pFMODProject_->release();
    pFMODProject_ = nullptr;
    pSoundEffects_ = pMusic_ = nullptr;
}

String SoundSystem::reloadProject()
{
    std::string faults;
    for (const std::string &each : port::projectProblems(MEDIA_PATH, PROJECT_FILE))
        faults += (faults.empty() ? "" : "\n") + each;
    if (!faults.empty() || !pEventSystem_)
        return String::copyFrom(faults);
    const auto change = [this]
    {
        dropProject();
        loadProject();
    };
    if (SoundManager *const manager = managerInCharge())
        manager->renewEvents(change);
    else
        change();
    return String();
}

void SoundSystem::listEvents()
{
    soundEffects = EventList();
    music = EventList();
    captions = NameMap<String>();
    if (!pFMODProject_)
        return;
    const auto endsWith = [](const std::string &text, const char *end) { return text.ends_with(end); };
    for (const port::EventFacts &facts : port::listEvents(*pFMODProject_))
    {
        const String name = String::copyFrom(facts.name).intern();
        (endsWith(facts.group, "music") ? music : soundEffects).insert(name, facts.loops);
        captions.insert(name, String::copyFrom(facts.caption));
    }
}

String SoundSystem::getCaption(const String &name) const
{
    const String *const caption = captions.find(name);
    return caption ? *caption : String();
}

void SoundSystem::makeGlobalLowpass()
{
    pFMODSystem_->createDSPByType(FMOD_DSP_TYPE_LOWPASS, &pGlobalLowpass);
    if (!pGlobalLowpass)
        return;
    setLowpass(false, LOWPASS_CUTOFF);
    pFMODSystem_->addDSP(pGlobalLowpass, nullptr);
}

void SoundSystem::systemShutdown()
{
    dropProject();
    if (pEventSystem_)
    {
        pEventSystem_->unload();
        pEventSystem_->release();
    }
    if (pFMODSystem_)
        pFMODSystem_->release();
    pEventSystem_ = nullptr;
    pFMODSystem_ = nullptr;
    pGlobalLowpass = nullptr;
    port::setAudioNotice(nullptr);
}

System::DependencyList SoundSystem::systemDependencies()
{
    return {SystemSystem::staticType};
}

UpdaterList SoundSystem::getUpdaters()
{
    return {Updater(SCS("SoundSystem::endFrame"), bind(SCS("endFrame")), BEHIND_SOUND_MANAGERS, true)};
}

void SoundSystem::setSoundEffectVolume(float volume)
{
    soundEffectVolume = volumeFrom(volume, soundEffectVolume, SCS("all sound effects"));
    applyVolumes();
}

void SoundSystem::setMusicVolume(float volume)
{
    musicVolume = volumeFrom(volume, musicVolume, SCS("all music"));
    applyVolumes();
}

void SoundSystem::setSilent(bool val)
{
    silent = val;
    applyVolumes();
}

void SoundSystem::applyVolumes()
{
    SoundManager *const manager = isStarted ? managerInCharge() : nullptr;
    if (!manager)
        return;
    manager->SetGlobalSoundVolume(soundEffectVolumeNow());
    manager->SetGlobalMusicVolume(musicVolumeNow());
}

/// The sounds of the level in charge; null where it has none. Making them now would be early: most levels are silent.
SoundManager *SoundSystem::managerInCharge() const
{
    static const String managerName = SCS("soundManager");
    const auto level = getSystemDeref<GameLoopSystem>().getCurrentlyActiveCoordinator().lookup();
    return level ? handle_cast<SoundManager>(level->getChild(managerName)).lookup().ptr : nullptr;
}

void SoundSystem::followManager(Handle<SoundManager> manager)
{
    // The level before is only cremated behind this one's load, and would take this one's changes with it.
    const auto last = lastManager.lookup();
    if (last && last->isDying())
        last->undoChanges();
    lastManager = manager;
}

void SoundSystem::setHeadphones(bool val)
{
    headphones = val;
    if (pEventSystem_ && !port::setHeadRelated(*pEventSystem_, val) && val)
        KV_LOG(Logger_::I_INFO, "This sound device has no directions for headphones.");
}

void SoundSystem::setMono(bool val)
{
    mono = val;
    if (pEventSystem_)
        port::setMono(*pEventSystem_, val);
}

void SoundSystem::setDevice(const String &name)
{
    if (name == device)
        return;
    device = name;
    if (pEventSystem_)
        port::setAudioDevice(*pEventSystem_, name.toCString());
}

int SoundSystem::getNumDevices() const
{
    return static_cast<int>(port::audioDevices().size());
}

String SoundSystem::getDeviceName(int index) const
{
    const std::vector<std::string> names = port::audioDevices();
    const bool isThere = index >= 0 && index < static_cast<int>(names.size());
    return isThere ? String::copyFrom(names[static_cast<std::size_t>(index)]) : String();
}

void SoundSystem::setLowpass(bool on, float cutoff)
{
    if (!pGlobalLowpass)
        return;
    pGlobalLowpass->setParameter(FMOD_DSP_LOWPASS_CUTOFF, cutoff);
    pGlobalLowpass->setBypass(!on);
}

void SoundSystem::setCategoryVolume(const String &name, float volume)
{
    FMOD::EventCategory *category = nullptr;
    if (pEventSystem_)
        pEventSystem_->getCategory(name.toCString(), &category);
    if (category)
        category->setVolume(volumeFrom(volume, getCategoryVolume(name), name));
    else if (pFMODProject_)
        KV_LOGF(Logger_::I_ERROR, "setCategoryVolume: %s%s has no category \"%s\".", MEDIA_PATH, PROJECT_FILE,
                name.toCString());
}

void SoundSystem::setPlayersVolume(const String &category, float part)
{
    float &wanted = playersVolumes[category];
    wanted = volumeFrom(part, wanted, category);
    applyPlayersVolume(category, wanted);
}

void SoundSystem::applyPlayersVolume(const String &category, float part)
{
    if (!pFMODProject_)
        return;
    if (!authoredVolumes.find(category))
        authoredVolumes.insert(category, getCategoryVolume(category));
    setCategoryVolume(category, *authoredVolumes.find(category) * part);
}

float SoundSystem::getCategoryVolume(const String &name)
{
    FMOD::EventCategory *category = nullptr;
    float volume = 1;
    if (pEventSystem_)
        pEventSystem_->getCategory(name.toCString(), &category);
    if (category)
        category->getVolume(&volume);
    return volume;
}

SoundEvent SoundSystem::newSoundEffect(const String &name)
{
    return newEvent(pSoundEffects_, soundEffects, name);
}

SoundEvent SoundSystem::newMusic(const String &name)
{
    return newEvent(pMusic_, music, name);
}

void SoundSystem::fadeOut(SoundEvent &event)
{
    if (!event.exists() || event.isPaused())
        return event.release(); // what stands still cannot fade
    event.stop();
    fading.push_back(event.detach());
}

void SoundSystem::releaseFaded()
{
    std::erase_if(fading,
                  [](FMOD::Event *event)
                  {
                      const bool ended = !isPlaying(*event);
                      if (ended)
                          event->release();
                      return ended;
                  });
}

void SoundSystem::updateFMOD()
{
    if (pEventSystem_)
        pEventSystem_->update();
    updated = true;
}

void SoundSystem::endFrame()
{
    if (!updated)
        updateFMOD();
    updated = false;
    if (!pEventSystem_)
        return;
    releaseFaded();
    if (offline)
        render();
}

/// Takes sound on by the time of the frame, once a frame: while a level loads, the loading screen runs within one.
void SoundSystem::render()
{
    GameLoopSystem &gameLoop = getSystemDeref<GameLoopSystem>();
    if (renderedFrame == gameLoop.getFrameNumber())
        return;
    renderedFrame = gameLoop.getFrameNumber();
    const Seconds seconds = gameLoop.getTime().lookup()->getFrameTimeSeconds();
    if (!recording.isRunning())
        return port::passAudioTime(*pEventSystem_, seconds);
    port::renderAudio(*pEventSystem_, seconds, rendered);
    recording.add(rendered);
}

int SoundSystem::getVoiceCount() const
{
    return pEventSystem_ ? port::audioCounters(*pEventSystem_).voices : 0;
}

int SoundSystem::getPlayingCount() const
{
    return pEventSystem_ ? port::audioCounters(*pEventSystem_).playing : 0;
}
