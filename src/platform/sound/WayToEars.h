// WayToEars: how a playing sound comes to the ears.
#pragma once

#include "physics/acoustics/SoundWays.h"

namespace FMOD
{
class Event;
}

class Entity;

/// A sound's place among those whose ways through a map are kept up to date, while it plays.
///
/// A plain value: `end` gives the place back.
class WayToEars
{
public:
    /// Chooses the map through which an entity is heard; without one, sound goes straight.
    void chooseMap(const Handle<Entity> &entity);
    /// Brings an event to the ears by its way.
    /// @param place  where it is, space of the transforms
    /// @return the way where it is another than the straight one; null in sight
    const HeardWay *follow(FMOD::Event &event, const Vec4 &place);
    /// Gives the place back.
    void end();

private:
    Handle<SoundWays> ways;
    int source = SoundWays::NO_SOURCE;
};
