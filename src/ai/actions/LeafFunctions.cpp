#include "ai/actions/LeafFunctions.h"

#include "ai/paths/PathComponent.h"
#include "ai/perception/PerceptionComponent.h"
#include "physics/bodies/RigidBody.h"
#include "physics/grid/MapDataComponent.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/Coordinator.h"
#include "engine/levels/MapRootEntity.h"

#include <cmath>

namespace
{
constexpr float STANDING = 0.01f; ///< metres a second along an axis, up to which a body counts as at rest

MapDataComponent *mapDataAround(const Handle<Entity> &hEntity)
{
    const auto entity = hEntity.lookup();
    const Handle<MapRootEntity> map = entity ? entity->getAncestorOfType<MapRootEntity>() : Handle<MapRootEntity>();
    return componentOf<MapDataComponent>(map, ComponentKeys::mapData);
}
} // namespace

StatusCode IsObjectMoving(Handle<Entity> hEntity)
{
    const auto *const body = componentOf<RigidBody>(hEntity, ComponentKeys::physics);
    if (!body)
        return SC_InvalidHandle;
    const Vec4 velocity = body->getVelocity();
    const bool moves = std::abs(velocity[0]) > STANDING || std::abs(velocity[2]) > STANDING;
    return moves ? SC_Success : SC_Failure;
}

StatusCode KnowsOfTarget(Handle<Entity> hEntity)
{
    const auto *const senses = componentOf<PerceptionComponent>(hEntity, ComponentKeys::perception);
    if (!senses)
        return SC_InvalidHandle;
    return senses->getKnows() ? SC_Success : SC_Failure;
}

StatusCode RemembersTarget(Handle<Entity> hEntity)
{
    const auto *const senses = componentOf<PerceptionComponent>(hEntity, ComponentKeys::perception);
    if (!senses)
        return SC_InvalidHandle;
    return senses->getRemembers() ? SC_Success : SC_Failure;
}

ActionStatus GuideGetNextWayPoint(Handle<Entity> hEntity)
{
    auto *const paths = componentOf<PathComponent>(hEntity, ComponentKeys::path);
    const MapDataComponent *const map = mapDataAround(hEntity);
    if (!paths || !map)
        return AS_InvalidHandle;
    const GridCell next = map->getNextWaypoint();
    if (!next.isValid())
        return AS_Failed;
    paths->setPathTarget(next);
    return AS_Complete;
}

ActionStatus GuideWayPointReached(Handle<Entity> hEntity)
{
    MapDataComponent *const map = mapDataAround(hEntity);
    if (!map)
        return AS_InvalidHandle;
    map->wayPointReached();
    return AS_Complete;
}

ErrorReturn<Seconds> getFrameTimeSeconds(Handle<Coordinator> hCoord, String timer)
{
    const auto level = hCoord.lookup();
    if (!level)
        return ErrorCode(ErrorCode::BAD_HANDLE);
    return level->getTimer(timer).getFrameTimeSeconds();
}
