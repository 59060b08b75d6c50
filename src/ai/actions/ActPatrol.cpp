#include "ai/actions/ActPatrol.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/transforms/TransformComponent.h"
#include "object/tree/PathBelow.h"

#include "foundation/Logger.h"

#include <cstdint>

ActPatrol::ActPatrol()
{
    actionName = SCS("walks its round");
}

ActionStatus ActPatrol::update(Seconds)
{
    if (!parts().canWalk())
        return AS_InvalidHandle;
    if (isCalledOff())
    {
        stop();
        return AS_Complete;
    }
    if (!begun)
    {
        Vec4 target;
        if (!findNextPlace(target))
            return AS_Failed;
        begun = true;
        goTo(target);
    }
    const Legs at = legs();
    if (at == ON_THE_WAY)
        return AS_InProgress;
    nextPlace = static_cast<int>((static_cast<std::int64_t>(nextPlace) + 1) & INT32_MAX);
    return at == THERE ? AS_Complete : AS_Failed;
}

bool ActPatrol::findNextPlace(Vec4 &found)
{
    static const String route = SCS("route");
    const auto creature = getParent().lookup();
    const auto round = creature ? creature->getChild(route).lookup() : Handle<Object>::Result();
    const std::size_t count = round ? round->getChildCount() : 0;
    const TransformComponent *at = nullptr;
    if (count > 0)
    {
        const std::size_t index = static_cast<std::size_t>(nextPlace < 0 ? 0 : nextPlace) % count;
        const Handle<Object> stop = *(round->children_begin() + static_cast<std::ptrdiff_t>(index));
        at = componentOf<TransformComponent>(stop, ComponentKeys::transform);
    }
    if (at)
        found = at->getPosition();
    else if (!told)
        KV_LOGF(Logger_::I_ERROR,
                "%s has no round to walk: it takes a child 'route' with entities that have transforms",
                creature ? pathBelow(nullptr, *creature).toCString() : "An action");
    told = told || !at;
    return at != nullptr;
}
