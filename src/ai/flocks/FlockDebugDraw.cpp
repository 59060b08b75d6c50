// FlockingComponent and SwarmComponent: what holds their members together, for developers.
#include "ai/flocks/FlockingComponent.h"

#include "ai/flocks/FlowField.h"
#include "ai/flocks/SwarmComponent.h"

#include "engine/debug/DebugCollector.h"
#include "engine/debug/DebugShapes.h"
#include "engine/debug/GlobalConfigSystem.h"
#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/transforms/TransformComponent.h"

namespace
{

constexpr Vec4 NEIGHBORHOOD(0.5f, 0.5f, 0.8f, 1.f);
constexpr Vec4 NEIGHBOR(0.9f, 0.4f, 0.9f, 1.f);
constexpr Vec4 TARGET(1.f, 0.8f, 0.3f, 1.f);
constexpr Vec4 COURSE(0.6f, 1.f, 0.5f, 1.f);
constexpr float SECONDS_DRAWN = 0.2f; ///< of a member's flight

bool isFlockDrawn()
{
    const GlobalConfigSystem &config = getSystemDeref<GlobalConfigSystem>();
    return config.getDebugDrawEnabled() && config.getDebugDrawFlockInfoEnabled();
}

} // namespace

void FlockingComponent::applyDebugDraw(const Handle<DebugCollectorComponent> &dcc)
{
    const auto collector = dcc.lookup();
    if (!collector || !isFlockDrawn())
        return;
    std::vector<Vec4> circle;
    for (const Handle<Entity> &boid : boids)
    {
        const auto *const own = componentOf<TransformComponent>(boid, ComponentKeys::transform);
        if (!own)
            continue;
        layPerimeter(own->getPosition(), neighborhoodSize, circle);
        drawPerimeter(*collector, circle, NEIGHBORHOOD);
        collector->addLine3D(own->getPosition(), flockTarget.pos, TARGET);
    }
    for (const Handle<Entity> &boid : marked(wasInNeighborhood))
        if (const auto *const other = componentOf<TransformComponent>(boid, ComponentKeys::transform))
            drawArrow(*collector, other->getPosition(), Vec4(0.f, 0.5f, 0.f), NEIGHBOR);
}

void SwarmComponent::applyDebugDraw(const Handle<DebugCollectorComponent> &dcc)
{
    const auto collector = dcc.lookup();
    const TransformComponent *const anchor = findAnchor();
    if (!collector || !isFlockDrawn() || !anchor)
        return;
    std::vector<Vec4> circle;
    layPerimeter(anchor->getPosition(), look().reach, circle);
    drawPerimeter(*collector, circle, TARGET);
    for (const Member &member : members)
    {
        layPerimeter(member.place, bodySize / 2, circle);
        drawPerimeter(*collector, circle, NEIGHBORHOOD);
        drawArrow(*collector, member.place, member.velocity * SECONDS_DRAWN, COURSE);
    }
}
