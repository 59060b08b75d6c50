// SoundComponent: the sounds that an entity can make.
#pragma once

#include "platform/sound/SoundEvent.h"
#include "platform/sound/SoundManager.h"

#include "engine/entities/SimpleComponent.h"
#include "object/tree/PythonObject.h"
#include "physics/bodies/SoundRequest.h"

/// An entity's sound effects and music, by the names of their events, under the component key "sound".
///
///     sound = kaVel.addComponent(fireplace, 'sound', 'SoundComponent', soundList=['Fire'])
///     sound.playSoundEffect('Fire')
///
/// Each is an instance of its own, which follows the entity; a name is added before it is played. Names that were not
/// added are passed over by all that play, stop and pause. Where the entity dies, what it plays once plays to its end
/// where it was, and what it plays on and on fades; where the level ends, all fades.
class SoundComponent : public SimpleComponent, public ISoundPlayer
{
    KV_REFLECTED(SoundComponent)
public:
    using SoundMap = NameMap<SoundEvent>;

    SoundComponent() = default;

    /// Has the sounds follow the entity that the component has come to stand in.
    void onLoadComplete() override;
    /// Leaves what still plays to the level, to be played to its end or faded.
    void onMurder() override;
    /// Takes the sounds to where the entity is.
    void doFrame() override;

    /// Adds a sound effect that can be played from now on; one that the sound project lacks is told in the log.
    void addSoundEffect(String sound);
    /// Adds another instance of a sound effect under a name of its own, for what sounds more than once at a time.
    void addSoundEffectAs(String name, String sound);
    /// Adds a piece of music that can be played from now on; one that the sound project lacks is told in the log.
    void addMusic(String music);
    /// Adds the sound effects of these names, a sequence of texts.
    void setSoundList(const PythonObject &sounds);
    /// Adds the pieces of music of these names, a sequence of texts.
    void setMusicList(const PythonObject &music);

    /// Plays a sound effect from its beginning, also one that is paused.
    void playSoundEffect(String sound);
    /// Ends a sound effect by its fade.
    void stopSoundEffect(String sound);
    void pauseSoundEffect(String sound);
    void unpauseSoundEffect(String sound);
    /// Plays a piece of music from its beginning, also one that is paused.
    void playMusic(String music);
    /// Ends a piece of music by its fade.
    void stopMusic(String music);
    void pauseMusic(String music);
    void unpauseMusic(String music);

    void stopAllSoundEffects();
    void pauseAllSoundEffects();
    void unpauseAllSoundEffects();
    void stopAllMusic();
    void pauseAllMusic();
    void unpauseAllMusic();
    /// Ends sound effects and music.
    void stopAllSound();
    /// Pauses sound effects and music.
    void pauseAllSound();
    /// Lets sound effects and music go on.
    void unpauseAllSound();

    /// Sets the loudness of each piece of music of this component, 0..1.
    void setMusicVolume(float vol);
    /// Sets the loudness of each sound effect of this component, 0..1.
    void setSoundVolume(float vol);
    /// Sets the loudness of one sound effect, or else piece of music, 0..1.
    void setEventVolume(String eventName, float vol);
    /// Sets a parameter of a sound effect, cut to the range that it was authored with.
    ///
    /// A name that was not added, a parameter that the event lacks and a value that is no number are passed over.
    void setParam(String sound, String paramName, float value);
    /// Sets a parameter of a piece of music, such as its "tension"; as `setParam` does for sound effects.
    void setMusicParam(String music, String paramName, float value);
    /// Puts a sound effect, or else a piece of music, at a place where it stays, apart from the entity.
    void placeEvent(String eventName, Vec4 position);

    /// Has a sound effect, or else a piece of music, follow the entity again.
    void unplaceEvent(String eventName);

    /// Notes who listens, for scripts that ask for it; a level is heard with the one `GlobalListener` of its manager.
    void setListener(Handle<Entity> listener) { hListener = listener; }
    Handle<Entity> getListener() const { return hListener; }
    /// Notes the object "Player" of the level as who listens.
    void setPlayerAsListener();

    /// Whether a sound effect of this name was added.
    bool hasSoundEffect(String sound) const { return sounds_.find(sound) != nullptr; }
    /// Whether a piece of music of this name was added.
    bool hasMusic(String music) const { return music_.find(music) != nullptr; }
    /// Whether a sound effect, or else a piece of music, was started and has not come to its end.
    bool isPlaying(String eventName) const;
    /// Value range of a parameter of a sound effect; 0 to 0 for one that there is not.
    SoundParameter::Range getParamRange(const String &sound, const String &paramName);

    /// Plays a sound effect that a body asks for; false where it was not added.
    bool playRequestedSound(const String &sound) override;

    /// The events of a kind, for the manager.
    SoundMap &eventsOf(SoundManager::SoundType type) { return type == SoundManager::MUSIC ? music_ : sounds_; }

private:
    using SoundType = SoundManager::SoundType;

    void setSoundEventPtr(SoundEvent &event, const String &name);
    void setMusicEventPtr(SoundEvent &event, const String &name);
    void adopt(SoundEvent &event, SoundType type);
    void tellMissing(const char *kind, const String &name, const NameMap<bool> &known) const;
    SoundManager *findManager() const;
    SoundEvent *findEvent(const String &name);
    static void setParamOf(SoundEvent *event, const String &paramName, float value);
    void play(SoundType type, const String &name);
    void stop(SoundType type, const String &name);
    void pause(SoundType type, const String &name, bool paused);
    void stopAll(SoundType type);
    void pauseAll(SoundType type, bool paused);

    SoundMap sounds_;
    SoundMap music_;
    Handle<Entity> hListener;
};
