#include "gameplay/player/PlayerLeaves.h"

#include "gameplay/player/PlayerComponent.h"
#include "gameplay/player/PlayerLookup.h"

#include "ai/flocks/FlockingComponent.h"
#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/Coordinator.h"
#include "engine/transforms/TransformComponent.h"
#include "object/tree/WellKnownPaths.h"
#include "physics/bodies/RigidBody.h"

StatusCode IsPlayerMoving(Handle<Entity> hEntity)
{
    const auto *const player = componentOf<PlayerComponent>(hEntity, ComponentKeys::player);
    if (!player)
        return SC_InvalidHandle;
    return player->isMoving() ? SC_Success : SC_Failure;
}

StatusCode DoesPlayerHaveFlashlight(Handle<Entity> hEntity)
{
    const auto entity = hEntity.lookup();
    const auto player = entity ? playerOf(*entity).lookup() : Handle<PlayerComponent>::Result{};
    if (!player)
        return SC_InvalidHandle;
    return player->getHasFlashlight() ? SC_Success : SC_Failure;
}

ActionStatus PursuePlayer(Handle<Entity> hEntity)
{
    auto *const flock = componentOf<FlockingComponent>(hEntity, ComponentKeys::flocking);
    const auto level = flock ? flock->getAncestorOfType<Coordinator>().lookup() : Handle<Coordinator>::Result{};
    const Handle<Object> player = level ? level->getChild(WellKnownPaths::player) : Handle<Object>();
    const auto *const place = componentOf<TransformComponent>(player, ComponentKeys::transform);
    const auto *const body = componentOf<RigidBody>(player, ComponentKeys::physics);
    if (!place || !body)
        return AS_InvalidHandle;
    flock->setFlockTarget(place->getPosition(), body->getVelocity());
    return AS_InProgress;
}
