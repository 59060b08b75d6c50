// SoundEvent: one sound that an entity can make.
#pragma once

#include "platform/sound/SoundParameter.h"
#include "platform/sound/WayToEars.h"

#include "engine/entities/Entity.h"

#include "foundation/KVString.h"
#include "foundation/NameMap.h"
#include "foundation/Vector.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace FMOD
{
class Event;
}

class PhysicsComponent;
class TransformComponent;
struct GlobalListener;

/// An entity's instance of an authored event: where it is, how loud, paused or not.
///
/// Places are those of the transforms, in their own space, metres. A plain value without an owner of its own: whoever
/// has it calls `release` before it goes. All operations are for nothing where the project has no such event.
class SoundEvent
{
public:
    using ParamCont = NameMap<SoundParameter>;

    SoundEvent() = default;
    /// @param name   of the event
    /// @param loops  the event plays until it is stopped
    SoundEvent(FMOD::Event *event, const String &name, bool loops) : pEvent_(event), name(name), loops(loops) {}

    /// What an event is like at one moment.
    struct Moment
    {
        bool isPlaying = false;
        std::vector<std::pair<String, float>> values; ///< of its parameters, by name
    };
    Moment getMoment() const;
    /// Takes an instance out of a project that was read anew in place of its own, which went with the old project.
    ///
    /// It is as loud, paused and placed as this was, and its parameters have the values of that moment; what played on
    /// and on then begins again.
    void renew(const SoundEvent &fresh, const Moment &before);

    /// Reads the event's parameters by name.
    void initializeParams();
    /// Takes over place and motion of the entity, and what follows from them: the distance, and the way of the sound.
    ///
    /// Without an entity that has a transform, or with one at no place at all, the event stays where it was.
    void updateEvent(const GlobalListener &listener);
    /// Sets the parameter "distance" to how far the event is from the listener, in a straight line.
    void updateParams(const GlobalListener &listener);

    /// Plays from the beginning.
    void start();
    /// Ends it by its fade.
    void stop();
    void setPaused(bool paused);
    /// Pauses it on behalf of the level, beside what its owner wants: it goes on when neither wants it any more.
    void setHeld(bool val);
    /// Sets its own loudness, linear; what is heard is this times the loudness of all of its kind.
    void setVolume(float vol);
    /// Sets the loudness of all of its kind, linear.
    void setKindVolume(float vol);
    /// Chooses whom it follows; with nobody it stays where it is.
    void setEntity(Handle<Entity> entity);
    /// Puts it at a place, where it stays until it has an entity to follow again; what is no place changes nothing.
    void place(Vec4 position);
    /// Gives it back to the audio library; a loop that still plays ends without a click.
    void release();
    /// Gives its instance away, which goes on by itself.
    FMOD::Event *detach();

    const String &getName() const { return name; }
    /// Whether the project has such an event.
    bool exists() const { return pEvent_ != nullptr; }
    FMOD::Event *getEvent() const { return pEvent_; }
    bool isPaused() const { return paused_ || held; }
    /// Whether it was started and has not come to its end; also while it is paused or fades.
    bool isPlaying() const;
    bool isLoop() const { return loops; }
    bool isPlaced() const { return placed; }
    float getVolume() const { return volume; }
    Vec4 getPosition() const { return eventPosition; }
    /// Whether it has a place in the world; what has none, as music, is everywhere.
    bool isInWorld() const { return distance_.exists(); }
    /// Tells whoever wants to know that the sound is made where it is now: sends SoundMadeMessage.
    void tellMade();
    /// The parameter of a name; null where the event has none of it.
    SoundParameter *findParam(const String &name) { return params.find(name); }

private:
    void findEntity();
    bool takePlace();
    void followWay();
    void applyVolume();
    void applyPause();

    FMOD::Event *pEvent_ = nullptr;
    String name; ///< of the event
    bool paused_ = false;
    float volume = 1; ///< its own, linear
    Vec4 eventPosition = Vec4(0, 0, 0, 1);
    Vec4 eventVelocity;
    Vec4 eventOrientation = Vec4(0, 0, 1, 0); ///< where it faces
    ParamCont params;
    SoundParameter distance_; ///< the parameter "distance"; events without it have no place in the world
    Handle<Entity> hEntity;

    bool held = false;
    bool loops = false;
    bool placed = false;                     ///< stays where it was put
    WayToEars way;                           ///< while it plays
    float kindVolume = 1;                    ///< of all effects, or all music, linear
    TransformComponent *transform = nullptr; ///< of the entity, as long as no object is born or dies
    PhysicsComponent *body = nullptr;        ///< of the entity, likewise
    Handle<Entity> found;                    ///< the entity that the two belong to
    std::uint64_t objectChanges = 0;         ///< births and deaths that the two take account of
};
