// DoorState: a door of either kind, as somebody who wants to pass it sees it.
#pragma once

#include "foundation/Quaternion.h"
#include "foundation/Vector.h"
#include "object/tree/Handle.h"

class PhysicsComponent;

/// What is to be known of a leaf, whether it swings or slides; false for a body that is none.
struct DoorState
{
    explicit DoorState(PhysicsComponent &leaf);

    explicit operator bool() const { return isDoor; }

    bool isDoor = false;
    bool isOpen = false; ///< or opening
    bool isLocked = false;
    float openness = 0.f; ///< from 0, closed, to 1
    Vec4 closedMiddle;    ///< of the leaf, in the space of its transform
    Quaternion closedTurn;
};

/// Locks or unlocks a door of either kind.
void setDoorLocked(PhysicsComponent &leaf, bool locked);
