// EventTriggerVolume: a place that calls a script when the player is in it.
#pragma once

#include "engine/entities/SimpleComponent.h"

#include "foundation/KVString.h"
#include "object/tree/ReflectorPtr.h"

#include <vector>

class BoundingVolume;

/// Calls a function while the player touches the volume beside it, under the component key "scriptedSequence".
///
/// Contacts are made between entities that both have a body. What lets the player through is a wall that is a trigger;
/// it stops crates, balls and bullets all the same, so it hangs where none comes by:
///
///     kaVel.addComponent(threshold, 'boundingVolume', 'BoundingVolume', hitBox=kaVel.Vec4(1, 2, 0.3, 0),
///                        volumeType='BV_WALL', trigger=True)
///     kaVel.addComponent(threshold, 'physics', 'WallPhysics')
///     event = kaVel.addComponent(threshold, 'scriptedSequence', 'EventTriggerVolume', eventFunc=lightsOut,
///                                eventEntityNames='chandelier, hall/clock')
///
///     def lightsOut(chandelier, clock):
///         event.eventFunc = None  # once
///         ...
///
/// The function is called in every frame of a contact. For once and for all it starts by taking itself off, as above;
/// for once an entry it keeps a note of the time. The first call, whoever makes it, is noted in the level's persistent
/// state, which makes it again when the map is loaded again: what the event did stays done.
class EventTriggerVolume : public SimpleComponent
{
    KV_REFLECTED(EventTriggerVolume)
public:
    EventTriggerVolume() = default;

    /// Says in the log where the volume cannot work: under a key that nothing runs.
    void onLoadComplete() override;
    /// Fires the event if the player has touched the volume since it last moved.
    void doFrame() override;
    /// Calls the function, whoever stands where.
    ///
    /// A function that fails is logged and not called again.
    void fireEvent();

    /// What is called; null for nothing.
    ReflectorPtr getEventFunc() const { return eventFunc; }
    void setEventFunc(ReflectorPtr func) { eventFunc = func; }
    /// Names of the entities that the event is about, with commas between them.
    String getEventEntityNames() const { return eventEntityNames; }
    /// Sets the entities that the function is called with, in this order; at most maxCallArgs.
    ///
    /// Each is a path from the map, or else from the level. One that is not there is a null handle to the function.
    void setEventEntityNames(String entityNames);

private:
    bool touchesPlayer() const;
    Handle<Object> findEntity(const String &name) const;

    ReflectorPtr eventFunc;
    String eventEntityNames;
    std::vector<String> names; ///< eventEntityNames, one by one
    bool noted = false;        ///< in the persistent state
};
