#include "gameplay/player/ActEquipmentBob.h"

#include "gameplay/player/PlayerComponent.h"
#include "gameplay/player/PlayerLookup.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"

bool ActEquipmentBob::getHandles()
{
    const auto entity = handle_cast<Entity>(getParent()).lookup();
    if (!entity)
        return false;
    hPlayerComp = playerOf(*entity);
    hParentFollower = handle_cast<TransformOffsetComponent>(entity->getComponent(ComponentKeys::parentFollower));
    return hPlayerComp.isValid() && hParentFollower.isValid();
}
