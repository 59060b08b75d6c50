#include "ai/flocks/FlockingComponent.h"

#include "ai/steering/SteeringComponent.h"

#include "physics/bodies/PhysicsComponent.h"
#include "physics/volumes/FiniteProperty.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/Coordinator.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/levels/ObjectFromPattern.h"
#include "engine/time/TimeKeeper.h"
#include "engine/time/TimerNames.h"
#include "engine/transforms/TransformComponent.h"
#include "object/tree/WellKnownPaths.h"

#include "foundation/Finite.h"
#include "foundation/Logger.h"

#include <algorithm>

AllocationCategory FlockAllocation("FlockAllocation");

namespace
{

constexpr float WATCHED_DISTANCE = 55.f; ///< metres from the player up to which the flock leaves its boids alone
constexpr float CROWDED_DISTANCE = 4.f;  ///< metres from the player up to which a boid is left alone

TransformComponent *transformOf(const Handle<Entity> &h)
{
    return componentOf<TransformComponent>(h, ComponentKeys::transform);
}

float distance(const TransformComponent &one, const TransformComponent &other)
{
    return (one.getPosition() - other.getPosition()).magnitude();
}

} // namespace

void FlockingComponent::onLoadComplete()
{
    if (TransformComponent *const transform = findTransform())
        findPlayer(*transform);
    populateFlock();
}

void FlockingComponent::doFrame()
{
    dropDead();
    TransformComponent *const transform = findTransform();
    const auto level = getAncestorOfType<Coordinator>().lookup();
    if (!transform || !level || boids.empty())
        return;
    flockTarget.fTime += static_cast<float>(level->getTimer(TimerNames::master).getFrameTimeSeconds());
    const TransformComponent *const player = findPlayer(*transform);
    if (!player || !(distance(*transform, *player) > WATCHED_DISTANCE))
        return;
    const auto parent = handle_cast<Entity>(getParent()).lookup();
    if (!parent)
    {
        if (!parentMissed)
            KV_LOGF(Logger_::I_ERROR, "Unable to look up flock parent! %s stands below no entity.",
                    getName().toCString());
        parentMissed = true;
        return;
    }
    for (const Handle<Entity> &boid : boids)
    {
        const TransformComponent *const place = transformOf(boid);
        if (place && distance(*place, *player) > CROWDED_DISTANCE)
            cohesion(boid);
    }
    wasInNeighborhood = inNeighborhood;
}

/// The transform beside the flock; null for none.
TransformComponent *FlockingComponent::findTransform()
{
    return handle_cast<TransformComponent>(getSibling(ComponentKeys::transform)).lookup().ptr;
}

/// The transform of the map's player; null where there is none, which the log is told once.
TransformComponent *FlockingComponent::findPlayer(TransformComponent &transform)
{
    const auto map = transform.findMap().lookup();
    const Handle<Object> player = map ? map->getChild(WellKnownPaths::player) : Handle<Object>();
    TransformComponent *const place = componentOf<TransformComponent>(player, ComponentKeys::transform);
    if (!place && !playerMissed)
        KV_LOGF(Logger_::I_ERROR,
                "Player not found! %s of %s stands still until its map has an entity \"Player\" with a transform.",
                getName().toCString(), getParent().toString().toCString());
    playerMissed = !place;
    return place;
}

void FlockingComponent::dropDead()
{
    std::size_t kept = 0;
    for (std::size_t i = 0; i < boids.size(); ++i)
    {
        const auto boid = boids[i].lookup();
        if (!boid || boid->isDying())
            continue;
        boids[kept] = boids[i];
        inNeighborhood[kept] = inNeighborhood[i];
        wasInNeighborhood[kept] = wasInNeighborhood[i];
        ++kept;
    }
    boids.resize(kept);
    inNeighborhood.resize(kept);
    wasInNeighborhood.resize(kept);
}

void FlockingComponent::setFlockTarget(Vec4 position, Vec4 velocity)
{
    setTarget(FlockTarget{position, velocity, 0.f});
}

void FlockingComponent::setTarget(const FlockTarget &val)
{
    if (isUsable(*this, "flockTarget", val.pos) && isUsable(*this, "flockTarget", val.vel) &&
        isUsable(*this, "flockTarget", val.fTime))
        flockTarget = val;
}

bool FlockingComponent::atFlockTarget()
{
    const TransformComponent *const transform = findTransform();
    return transform && (flockTarget.pos - transform->getPosition()).magnitude() <= targetRadius;
}

void FlockingComponent::handleFlockMessage(const ReflectorPtr &, bool val)
{
    overrideTargetPos = val;
}

void FlockingComponent::populateFlock()
{
    if (population > MOST_BOIDS)
        KV_LOGF(Logger_::I_ERROR, "%s of %s: a population of %u is more than a flock bears; it gets %zu boids.",
                getName().toCString(), getParent().toString().toCString(), population, MOST_BOIDS);
    const std::size_t count = std::min<std::size_t>(population, MOST_BOIDS);
    for (std::size_t i = 0; i < count && boids.size() < MOST_BOIDS; ++i)
    {
        const Handle<Entity> boid = spawnBoid(String::format("Boid%d", boidID));
        boidID = static_cast<int>(static_cast<unsigned>(boidID) + 1u);
        if (!boid.isValid())
            return; // the log knows why, and the next one fails alike
        addBoid(boid);
    }
}

Handle<Entity> FlockingComponent::spawnBoid(String name)
{
    return handle_cast<Entity>(buildFromPattern(SCS("objects.GameObjects"), SCS("Boid"), getParent(), name));
}

void FlockingComponent::addBoid(Handle<Entity> boid)
{
    if (!boid.isValid() || boids.size() >= MOST_BOIDS || std::find(boids.begin(), boids.end(), boid) != boids.end())
        return;
    boids.push_back(boid);
    inNeighborhood.push_back(false);
    wasInNeighborhood.push_back(false);
}

void FlockingComponent::prepNeighborhood(Handle<Entity> boid)
{
    const TransformComponent *const own = transformOf(boid);
    const Vec4 heading = own ? own->getOrientation().generateRotation().getColumn(2) : Vec4();
    for (std::size_t i = 0; i < boids.size(); ++i)
    {
        inNeighborhood[i] = false;
        const TransformComponent *const other = transformOf(boids[i]);
        if (!own || !other || boids[i] == boid)
            continue;
        Vec4 way = other->getPosition() - own->getPosition();
        const bool isNear = way.magnitude() <= neighborhoodSize;
        way.normalize();
        inNeighborhood[i] = isNear && heading.dot(way) >= NEIGHBORHOOD_ANGLE;
    }
}

Vec4 FlockingComponent::getNeighborhoodCenter()
{
    Vec4 sum;
    float count = 0;
    for (std::size_t i = 0; i < boids.size(); ++i)
        if (const TransformComponent *const place = inNeighborhood[i] ? transformOf(boids[i]) : nullptr)
        {
            sum += place->getPosition();
            ++count;
        }
    return count > 0 ? sum / count : sum;
}

Vec4 FlockingComponent::getNeighborhoodAvgVel()
{
    Vec4 sum;
    float count = 0;
    for (std::size_t i = 0; i < boids.size(); ++i)
    {
        const auto *const body =
            inNeighborhood[i] ? componentOf<PhysicsComponent>(boids[i], ComponentKeys::physics) : nullptr;
        if (!body)
            continue;
        sum += body->getVelocity();
        ++count;
    }
    return count > 0 ? sum / count : sum;
}

void FlockingComponent::cohesion(Handle<Entity> boid)
{
    SteeringComponent *const steering = componentOf<SteeringComponent>(boid, ComponentKeys::steering);
    if (!steering)
        return;
    prepNeighborhood(boid);
    const TransformComponent *const home = overrideTargetPos ? findTransform() : nullptr;
    steering->updatePursue(home ? home->getPosition() : flockTarget.pos, home ? Vec4() : flockTarget.vel);
    if (std::find(inNeighborhood.begin(), inNeighborhood.end(), true) == inNeighborhood.end())
        return;
    steering->updateSeek(getNeighborhoodCenter(), cohesionWeight);
    steering->updateVelocityMatch(getNeighborhoodAvgVel(), cohesionWeight);
}

FlockingComponent::BoidContainer FlockingComponent::marked(const FlagCont &flags) const
{
    BoidContainer found;
    for (std::size_t i = 0; i < std::min(boids.size(), flags.size()); ++i)
        if (flags[i])
            found.push_back(boids[i]);
    return found;
}

void FlockingComponent::setNeighborhoodSize(float val)
{
    if (isUsable(*this, "neighborhoodSize", val))
        neighborhoodSize = val;
}

void FlockingComponent::setCohesionWeight(float val)
{
    if (isUsable(*this, "cohesionWeight", val))
        cohesionWeight = val;
}

void FlockingComponent::setTargetRadius(float val)
{
    if (isUsable(*this, "targetRadius", val))
        targetRadius = val;
}
