#include "ai/paths/DoorState.h"

#include "physics/doors/DoorPhysics.h"
#include "physics/doors/SlidingDoorPhysics.h"

#include "engine/transforms/TransformComponent.h"

DoorState::DoorState(PhysicsComponent &leaf)
{
    const Handle<PhysicsComponent> handle = getHandle(&leaf);
    if (const auto hinged = handle_cast<DoorPhysics>(handle).lookup())
    {
        isDoor = true;
        isOpen = hinged->getOpen();
        isLocked = hinged->getLocked();
        openness = hinged->getOpenness();
        closedMiddle = hinged->getClosedMiddle();
        closedTurn = hinged->getClosedTurn();
        return;
    }
    const auto sliding = handle_cast<SlidingDoorPhysics>(handle).lookup();
    const auto place = leaf.getTransformComponent().lookup();
    if (!sliding || !place)
        return;
    isDoor = true;
    isOpen = sliding->getOpen();
    isLocked = sliding->getLocked();
    openness = sliding->getOpenness();
    closedMiddle = sliding->getClosedMiddle();
    closedTurn = place->getOrientation();
}

void setDoorLocked(PhysicsComponent &leaf, bool locked)
{
    const Handle<PhysicsComponent> handle = getHandle(&leaf);
    if (const auto hinged = handle_cast<DoorPhysics>(handle).lookup())
        hinged->setLocked(locked);
    else if (const auto sliding = handle_cast<SlidingDoorPhysics>(handle).lookup())
        sliding->setLocked(locked);
}
