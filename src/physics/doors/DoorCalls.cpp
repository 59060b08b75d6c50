#include "physics/doors/DoorCalls.h"

#include "physics/doors/DoorPhysics.h"
#include "physics/volumes/ScriptFaults.h"
#include "physics/doors/SlidingDoorPhysics.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/GameLoop.h"

#include "foundation/Logger.h"

namespace
{

/// The player's component beside a body, or whatever was given where there is none.
Handle<Object> playerBeside(const Handle<Object> &who)
{
    const auto component = handle_cast<AbstractComponent>(who).lookup();
    const Handle<Object> player =
        component ? component->getSibling(ComponentKeys::player) : Handle<AbstractComponent>();
    return player.isValid() ? player : who;
}

// Triggers ask in every frame that they are touched: a door that is shut already is not asked to close, and a locked
// one refuses once a touch.

template <class Door>
bool refusesAgain(Door &door)
{
    return door.getLocked() && door.isAskedAgain(getSystemDeref<GameLoopSystem>().getFrameNumber());
}

void callHinged(DoorPhysics &door, const Handle<Object> &player, DoorCall call)
{
    if (call == DoorCall::OPEN)
    {
        if (!refusesAgain(door))
            door.openDoor(player);
    }
    else if (!door.getOpen())
        return;
    else if (call == DoorCall::SLAM)
        door.slamDoor(player);
    else
        door.closeDoor(player);
}

void callSliding(SlidingDoorPhysics &door, const Handle<Object> &player, DoorCall call)
{
    if (call == DoorCall::OPEN)
    {
        if (!refusesAgain(door))
            door.openDoor(player, false);
    }
    else if (door.getOpen())
        door.closeDoor(player, false);
}

} // namespace

bool callDoor(const Handle<Object> &hEntity, const Handle<Object> &who, DoorCall call)
{
    const Handle<Object> player = playerBeside(who);
    if (DoorPhysics *const hinged = componentOf<DoorPhysics>(hEntity, ComponentKeys::physics))
        callHinged(*hinged, player, call);
    else if (SlidingDoorPhysics *const sliding = componentOf<SlidingDoorPhysics>(hEntity, ComponentKeys::physics))
        callSliding(*sliding, player, call);
    else
        return false;
    return true;
}

void callParentDoor(const Handle<Object> &hEntity, const Handle<Object> &who, DoorCall call, const char *caller)
{
    const auto entity = hEntity.lookup();
    if (!entity || callDoor(entity->getParent(), who, call) || !isNewFault(hEntity, caller))
        return;
    KV_LOGF(Logger_::I_ERROR,
            "%s of %s: its parent %s is no door. Hang the trigger's entity below the door's, whose \"physics\" must be "
            "a DoorPhysics or a SlidingDoorPhysics.",
            caller, hEntity.toString().toCString(), entity->getParent().toString().toCString());
}
