// SteeringComponent: how those that steer keep apart.
#include "ai/steering/SteeringComponent.h"

#include "physics/bodies/RigidBody.h"
#include "physics/grid/CellRect.h"
#include "physics/grid/PartitioningGrid.h"
#include "physics/volumes/BoundingVolume.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/transforms/TransformComponent.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr float HARDEST_PUSH = 4.f;  ///< so hard that no other request outweighs it
constexpr float STALENESS = 0.5f;    ///< metres that somebody may have gone since the grid noted him
constexpr float NO_DISTANCE = 1e-4f; ///< metres; nearer than that there is no direction
constexpr float SIDESTEP = 1.f;      ///< part of the push that leads aside who walks straight towards somebody

Vec4 flat(const Vec4 &v)
{
    return Vec4(v.x, 0.f, v.z);
}

} // namespace

void SteeringComponent::updateSeparation(float weight)
{
    const Moved &mine = findMoved();
    if (!mine || !(sepThreshold > 0.f))
        return;
    SteeringOutput output;
    output.accel = findSeparation(mine) * (maxAccel * sepWeight);
    request(output, weight);
}

/// The sum of the pushes by all who are near, without unit.
Vec4 SteeringComponent::findSeparation(const Moved &mine)
{
    const auto grid = PartitioningGrid::ofMap(mine.transform->findMap()).lookup();
    if (!grid)
        return Vec4();
    const Vec4 place = mine.transform->getPosition();
    const float farthest = sepThreshold + STALENESS;
    const Vec4 reach(farthest, 0.f, farthest);
    const CellRect around = CellRect::between(grid->getCellCoords(place - reach), grid->getCellCoords(place + reach),
                                              grid->getColumns(), grid->getRows());
    Vec4 sum;
    grid->forEachMovingNear(around, place, farthest,
                            [&](int x, int z, BoundingVolume &volume)
                            {
                                const TransformComponent *const other = volume.findTransform();
                                // One that stands in several cells counts in the first of them.
                                if (!other || other == mine.transform ||
                                    x != std::max(around.minX, toCell(volume.getPreviousMin().x)) ||
                                    z != std::max(around.minZ, toCell(volume.getPreviousMin().z)))
                                    return;
                                const Vec4 way = place - other->getPosition();
                                if (flat(way).magnitude() < sepThreshold && std::fabs(way.y) < sepThreshold &&
                                    componentOf<SteeringComponent>(volume.getParent(), ComponentKeys::steering))
                                    sum += pushFrom(mine, flat(way), getHandle() < other->getHandle());
                            });
    return sum;
}

/// How somebody who is near pushes.
/// @param way       flat, from him
/// @param isFirst   which way to go where two stand in one place
Vec4 SteeringComponent::pushFrom(const Moved &mine, const Vec4 &way, bool isFirst) const
{
    const float distance = way.magnitude();
    if (distance < NO_DISTANCE)
        return Vec4(isFirst ? HARDEST_PUSH : -HARDEST_PUSH, 0.f, 0.f);
    const Vec4 away = way / distance;
    // Where it wants to go, as far as it has been asked for; who stands face to face with somebody does not go at all.
    const Vec4 wanted = flat(finalOutput.accel);
    Vec4 heading = wanted == Vec4() ? flat(mine.body->getVelocity()) : wanted;
    heading.normalize();
    const float towards = std::max(-heading.dot(away), 0.f);
    const Vec4 toTheRight(heading.z, 0.f, -heading.x);
    return (away + toTheRight * (SIDESTEP * towards)) * std::min(sepThreshold / distance - 1.f, HARDEST_PUSH);
}
