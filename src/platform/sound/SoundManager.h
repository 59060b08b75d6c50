// SoundManager: the sounds of one level, and the ears that hear them.
#pragma once

#include "platform/sound/GlobalListener.h"
#include "platform/sound/HeardSounds.h"
#include "platform/sound/SoundEvent.h"

#include "engine/entities/SimpleManager.h"
#include "engine/levels/Coordinator.h"

#include <functional>
#include <vector>

class MapRootEntity;

/// Manager of the key "sound": hears a level with the player's ears, or where there is no player with the camera's.
///
/// Runs in a stopped level, too, and holds its sound effects meanwhile; music goes on, and so does what is played while
/// the level stands still, as the sounds of a menu. With the level ends what it has changed of the whole run: low-pass
/// and categories.
class SoundManager : public SimpleManager
{
    KV_REFLECTED(SoundManager)
public:
    /// The two groups of events, which have volumes of their own.
    enum SoundType
    {
        SOUND_EFFECT = 0, ///< what things in the world do; a level that is stopped holds it
        MUSIC = 1,        ///< what nobody in the world hears; plays on in a level that is stopped
        NUM_SOUND_TYPES = 2
    };

    SoundManager() = default;

    void onAddToCoordinator() override;
    void onMurder() override;
    /// Moves the ears, then each sound with its entity, then has the audio library make its step.
    void doFrame() override;
    ReflectorPtr getComponentClass() const override;

    /// Plays an event from its beginning, also one that is paused; one that the project lacks leaves a line in the log.
    void PlayEvent(String sound, SoundEvent &rEvent);
    /// Ends an event by its fade.
    void StopEvent(String sound, SoundEvent &rEvent);
    void PauseEvent(String sound, SoundEvent &rEvent, bool pause);

    /// Sets the loudness of all sound effects of the level, 0..1; nothing while it is silenced.
    void SetGlobalSoundVolume(float vol);
    /// Sets the loudness of all music of the level, 0..1; nothing while it is silenced.
    void SetGlobalMusicVolume(float vol);
    /// Loudness of all events of a kind; 0 for what is none.
    float getGlobalVolume(SoundType type) const { return type < NUM_SOUND_TYPES ? globalVolumes[type] : 0.f; }
    /// Pauses all sound effects of the level, or lets them go on.
    void PauseSoundEffects(bool val);
    /// Pauses all music of the level, or lets it go on.
    void PauseMusic(bool val);
    /// Takes all sound of the level away, or gives it back with the volumes that the SoundSystem has by then.
    void setSilenced(bool val);
    bool getSilenced() const { return silenced; }

    /// Has all that is heard pass a low-pass, as behind a pause or after a blow; it comes and goes smoothly.
    void setMuffled(bool val);
    bool getMuffled() const { return muffled; }
    /// Sets where the low-pass begins, Hz, 10 to 22000; what is no number changes nothing.
    void setMuffledCutoff(float val);
    float getMuffledCutoff() const { return muffledCutoff; }
    /// Sets the loudness of a category of the sound project until the level ends, as "sfx/steps", 0..1.
    void setCategoryVolume(String category, float volume);
    /// Loudness of a category of the sound project.
    float getCategoryVolume(String category);

    /// The ears of the level, as of the last frame.
    const GlobalListener &getGlobalListener() const { return globalListener; }
    /// What can be heard, the loudest first.
    std::vector<HeardSound> getHeardSounds() const { return heardSounds.list(globalListener); }

    /// Runs what puts another sound project in the place of the present one, and has the level's events be of that.
    void renewEvents(const std::function<void()> &changeProject);
    /// Undoes what the level has changed of the whole run: low-pass and categories.
    void undoChanges();
    /// Takes an event over whose entity has died: what plays once plays to its end where it is, all else fades.
    void takeOver(SoundEvent &event);

private:
    Coordinator *level() const;
    void updateGlobalListener();
    void listenToRooms();
    Handle<MapRootEntity> mapOfEars() const;
    TransformComponent *findEars();
    Handle<Object> currentCamera();
    void holdWhileStopped();
    void updateOrphans();
    template <class Step>
    void forEachEvent(SoundType type, const Step &step);
    void setGlobalVolume(SoundType type, float vol);

    GlobalListener globalListener;
    bool silenced = false;

    float globalVolumes[NUM_SOUND_TYPES] = {1, 1}; ///< linear
    bool muffled = false;
    float muffledCutoff = 1000;      ///< Hz
    NameMap<float> categoriesBefore; ///< loudness of the categories that the level has changed
    bool held = false;               ///< the level is stopped, and its sound effects with it
    std::vector<SoundEvent> orphans; ///< what plays to its end without an entity
    HeardSounds heardSounds;
    Handle<Object> ears;        ///< whose transform is the listener's
    ReflectorPtr cameraOfLevel; ///< asks the level's graphics, which stand in a higher folder, for the camera
};
