#include "gameplay/light/LightLookup.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "rendering/drawn/LightComponent.h"

LightComponent *carriedLight(const Handle<Object> &entity)
{
    static const String child = SCS("flashlight");
    const auto holder = entity.lookup();
    return holder ? componentOf<LightComponent>(holder->getChild(child), ComponentKeys::graphics2) : nullptr;
}
