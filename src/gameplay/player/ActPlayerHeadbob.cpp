#include "gameplay/player/ActPlayerHeadbob.h"

#include "gameplay/player/PlayerComponent.h"
#include "gameplay/player/PlayerLookup.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"

bool ActPlayerHeadbob::getHandles()
{
    const auto entity = handle_cast<Entity>(getParent()).lookup();
    hPlayerComp =
        entity ? handle_cast<PlayerComponent>(entity->getComponent(ComponentKeys::player)) : Handle<PlayerComponent>();
    hParentFollower = neckOf(getParent());
    return hPlayerComp.isValid() && hParentFollower.isValid();
}
