// SoundSystem: owns the audio library, and with it all that outlives a level.
#pragma once

#include "platform/sound/SoundRecording.h"

#include "engine/systems/System.h"

#include "foundation/KVString.h"
#include "foundation/NameMap.h"

#include <cstdint>
#include <vector>

namespace FMOD
{
class DSP;
class Event;
class EventGroup;
class EventProject;
class EventSystem;
class System;
} // namespace FMOD

class SoundEvent;
class SoundManager;

/// The audio library of the whole run: the project with its two groups of events, the device, and the player's volumes.
///
/// What the audio library answers is not looked at: where the project or a group is missing, the pointers stay null and
/// the game is silent, which is told once. Levels are heard through their `SoundManager`.
class SoundSystem : public System
{
    KV_REFLECTED(SoundSystem)
public:
    /// The events of a group: name -> whether it plays until it is stopped.
    using EventList = NameMap<bool>;

    SoundSystem() = default;

    /// Brings up the audio library and loads the project "kaVel.fev"; nothing where that has been done.
    void InitFMOD();

    /// Sets the loudness of all sound effects, 0..1, in the level in charge and those to come.
    void setSoundEffectVolume(float volume);
    float getSoundEffectVolume() const { return soundEffectVolume; }
    /// Sets the loudness of all music, 0..1, in the level in charge and those to come.
    void setMusicVolume(float volume);
    float getMusicVolume() const { return musicVolume; }
    /// Takes all sound away and gives it back, as when another window comes in front; the volumes stay what they are.
    void setSilent(bool val);
    bool getSilent() const { return silent; }
    /// Loudness that the sound effects of a level begin with: the player's, or 0 in silence.
    float soundEffectVolumeNow() const { return silent ? 0 : soundEffectVolume; }
    /// Loudness that the music of a level begins with: the player's, or 0 in silence.
    float musicVolumeNow() const { return silent ? 0 : musicVolume; }
    /// Gives directions by the shape of a head, which is right for headphones and wrong for loudspeakers.
    void setHeadphones(bool val);
    bool getHeadphones() const { return headphones; }
    /// Gives both ears the same, for who hears with one.
    void setMono(bool val);
    bool getMono() const { return mono; }
    /// Has the sound come from a device by its name, see `getDeviceName`; empty for the computer's usual one.
    void setDevice(const String &name);
    String getDevice() const { return device; }
    /// Devices that sound can come from now.
    int getNumDevices() const;
    /// Name of one of them, from 0; empty for a number that is none's.
    String getDeviceName(int index) const;
    /// Folders whose project "kaVel.fev" and samples stand in for the game's, or beside them, one a line; for before the
    /// start. Of several the last one counts.
    void setOverlays(const String &folders) { overlays = folders; }
    String getOverlays() const { return overlays; }
    /// Has the sound rendered in the time of the frames, unheard, in place of a device; for before the start.
    void setOffline(bool val) { offline = val; }
    bool getOffline() const { return offline; }
    /// Writes what is heard into a file as the run ends, a WAV of 16 bit in stereo; for before the start, offline.
    void setRecordFile(const String &file) { recordFile = file; }
    String getRecordFile() const { return recordFile; }

    /// Reads the sound project and its samples anew; what plays on and on in the level in charge begins again.
    ///
    /// Where the project or one of its samples has a fault, all stays as it is.
    /// @return the faults, one a line, each with file, line and cause; empty on success
    String reloadProject();

    /// Has all that is heard pass a low-pass, or takes it out.
    /// @param cutoff  Hz
    void setLowpass(bool on, float cutoff);
    /// Sets the loudness of a category of the project, as "sfx/steps", linear 0..1; one that there is not is told.
    void setCategoryVolume(const String &name, float volume);
    /// Loudness of a category of the project; 1 for one that there is not.
    float getCategoryVolume(const String &name);

    /// Sets how loud the player wants a category of the project, as "sfx/steps", as a part of what was authored, 0..1.
    ///
    /// Holds for the whole run; may be set before the start.
    void setPlayersVolume(const String &category, float part);

    /// Told of a level's manager when it is made: what a level that has been murdered before it has changed ends now.
    void followManager(Handle<SoundManager> manager);

    /// A new instance of a sound effect; without an event where the project has none of the name.
    SoundEvent newSoundEffect(const String &name);
    /// A new instance of a piece of music; without an event where the project has none of the name.
    SoundEvent newMusic(const String &name);
    const EventList &getSoundEffects() const { return soundEffects; }
    const EventList &getMusic() const { return music; }
    /// What an event is called where it is written that it is heard, as "A door creaks"; empty where it has no caption.
    String getCaption(const String &name) const;
    /// Ends an event by its fade and gives it back afterwards; it has no owner any more.
    void fadeOut(SoundEvent &event);
    /// The audio library's step of a frame.
    void updateFMOD();
    /// Ends a frame of sound: makes up for a level without a manager of sounds, and renders. Frame step, after that.
    void endFrame();
    /// Sounding voices, at most 64.
    int getVoiceCount() const;
    /// Instances of events under way, heard or not.
    int getPlayingCount() const;
    FMOD::EventSystem *getEventSystem() const { return pEventSystem_; }

protected:
    void systemStartup() override;
    void systemShutdown() override;
    DependencyList systemDependencies() override;
    UpdaterList getUpdaters() override;

private:
    static constexpr float UNCHOSEN = -1; ///< a volume that nobody has set before the start

    void openEventSystem();
    void loadProject();
    void makeGlobalLowpass();
    void dropProject();
    void listEvents();
    SoundManager *managerInCharge() const;
    void applyVolumes();
    void applyPlayersVolume(const String &category, float part);
    void releaseFaded();
    void render();

    FMOD::System *pFMODSystem_ = nullptr;
    FMOD::EventSystem *pEventSystem_ = nullptr;
    FMOD::EventProject *pFMODProject_ = nullptr;
    FMOD::EventGroup *pSoundEffects_ = nullptr; ///< "kaVel/sfx"
    FMOD::EventGroup *pMusic_ = nullptr;        ///< "kaVel/music"
    FMOD::DSP *pGlobalLowpass = nullptr;
    float soundEffectVolume = UNCHOSEN; ///< linear, 0..1
    float musicVolume = UNCHOSEN;       ///< linear, 0..1

    bool isStarted = false;
    bool silent = false;
    bool headphones = false;
    bool mono = false;
    String device; ///< empty for the usual one
    String overlays;
    bool offline = false;
    String recordFile;
    SoundRecording recording;
    Handle<SoundManager> lastManager; ///< the one that was made last
    EventList soundEffects;
    EventList music;
    NameMap<String> captions;
    NameMap<float> playersVolumes;     ///< category -> part of what was authored
    NameMap<float> authoredVolumes;    ///< of the categories that the player has set, linear
    std::vector<FMOD::Event *> fading; ///< to be given back when they have come to their end
    bool updated = false;              ///< the audio library has made its step of this frame
    std::int64_t renderedFrame = 0;    ///< number of the last frame that was rendered
    std::vector<float> rendered;       ///< of the last frame, interleaved stereo
};
