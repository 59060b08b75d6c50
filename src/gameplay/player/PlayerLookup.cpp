#include "gameplay/player/PlayerLookup.h"

#include "gameplay/player/PlayerComponent.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/Entity.h"
#include "engine/levels/Coordinator.h"
#include "object/tree/WellKnownPaths.h"

#include <cmath>

Handle<PlayerComponent> playerOf(Object &inLevel)
{
    const auto level = inLevel.getAncestorOfType<Coordinator>().lookup();
    const auto entity =
        level ? handle_cast<Entity>(level->getChild(WellKnownPaths::player)).lookup() : Handle<Entity>::Result{};
    return entity ? handle_cast<PlayerComponent>(entity->getComponent(ComponentKeys::player))
                  : Handle<PlayerComponent>();
}

Handle<TransformOffsetComponent> neckOf(const Handle<Object> &entity)
{
    static const String camera = SCS("camera");
    const auto body = entity.lookup();
    const auto head = body ? handle_cast<Entity>(body->getChild(camera)).lookup() : Handle<Entity>::Result{};
    return head ? handle_cast<TransformOffsetComponent>(head->getComponent(ComponentKeys::parentFollower))
                : Handle<TransformOffsetComponent>();
}

float stepLength(Seconds frameTime)
{
    if (!(frameTime > 0.0))
        return 0.f;
    return frameTime < 1.0 ? static_cast<float>(frameTime) : 1.f;
}

float easedPart(float rate, float seconds)
{
    return 1.f - std::exp(-rate * seconds);
}
