// DoorCalls: opens and closes doors of either kind for the functions that scripts set on triggers.
#pragma once

#include "object/tree/Handle.h"

class Object;

/// What is asked of a door.
enum class DoorCall
{
    OPEN,
    CLOSE,
    SLAM ///< closes, with a bang where it swings
};

/// Asks a door.
///
/// @param hEntity  whose "physics" is a DoorPhysics or SlidingDoorPhysics
/// @param who      whom it happens for: a body, a player's component or an entity; invalid for nobody
/// @return false where the entity is no door
bool callDoor(const Handle<Object> &hEntity, const Handle<Object> &who, DoorCall call);

/// Asks the door that is the parent of an entity, and names one that is none in the log, once.
/// @param caller  name of the function that a script has set, for the log
void callParentDoor(const Handle<Object> &hEntity, const Handle<Object> &who, DoorCall call, const char *caller);
