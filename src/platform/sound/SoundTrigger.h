// SoundTrigger: a sound that a trigger volume plays or ends.
#pragma once

#include "object/tree/Object.h"

#include "foundation/Vector.h"

class PhysicsComponent;
class SoundComponent;

/// Holds the name of a sound, and the functions that a trigger volume calls with the body that touched it:
///
///     creak = kaVel.make('SoundTrigger', parent=stair, sound='StairCreak')
///     volume.setTriggerFunc(creak.playSound)
///
/// The sound is that of the entity that fired: it comes from there, and goes with it. With `positional` it comes from
/// `position` instead, and stays there. An entity that has no "sound" component leaves it to the nearest one above the
/// trigger that has one. The sound need not have been added to the component.
class SoundTrigger : public Object
{
    KV_REFLECTED(SoundTrigger)
public:
    SoundTrigger() = default;

    /// Name of the event.
    String getSound() const { return sound; }
    void setSound(String val) { sound = val; }
    /// Whether `playSound` and `stopSound` mean a sound effect, as they do at first, or else a piece of music.
    bool getSfx() const { return sfx; }
    void setSfx(bool val) { sfx = val; }
    /// Whether the sound comes from `position` rather than from the entity that fired.
    bool getPositional() const { return positional; }
    void setPositional(bool val) { positional = val; }
    /// Where the sound comes from if it is positional, in the space of the transforms, metres.
    Vec4 getPosition() const { return position; }
    /// Sets where the sound comes from if it is positional; what is no place is logged as an error and changes nothing.
    void setPosition(Vec4 val);

    /// Plays the sound from its beginning.
    void playSound(Handle<PhysicsComponent> phys);
    /// Plays the sound as a piece of music, whatever `sfx` says.
    void playMusic(Handle<PhysicsComponent> phys);
    /// Ends the sound by its fade.
    void stopSound(Handle<PhysicsComponent> phys);
    /// Ends the sound as a piece of music, whatever `sfx` says.
    void stopMusic(Handle<PhysicsComponent> phys);

private:
    SoundComponent *findPlayer(const Handle<PhysicsComponent> &phys);
    void play(const Handle<PhysicsComponent> &phys, bool asMusic);
    void stop(const Handle<PhysicsComponent> &phys, bool asMusic);

    bool sfx = true;
    String sound;
    bool positional = false;
    Vec4 position = Vec4(0, 0, 0, 1);
    bool told = false; ///< the log knows that nothing plays it
};
