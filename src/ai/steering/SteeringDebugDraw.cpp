// SteeringComponent: what it asks for, for developers.
#include "ai/steering/SteeringComponent.h"

#include "engine/debug/DebugCollector.h"
#include "engine/debug/DebugShapes.h"
#include "engine/debug/GlobalConfigSystem.h"
#include "engine/transforms/TransformComponent.h"

namespace
{

constexpr Vec4 ACCELERATION(1.f, 0.9f, 0.1f, 1.f);
constexpr Vec4 VELOCITY(0.2f, 1.f, 0.2f, 1.f);
constexpr Vec4 ORIENTATION(0.3f, 0.5f, 1.f, 1.f);
constexpr Vec4 WHISKER(0.2f, 0.9f, 0.9f, 1.f);
constexpr Vec4 STRUCK(1.f, 0.2f, 0.1f, 1.f);
constexpr Vec4 TARGET(0.8f, 0.8f, 0.8f, 1.f);
constexpr float METRES_A_SECOND_SQUARED = 0.1f; ///< length of the arrow of an acceleration, seconds squared
constexpr float FACING_LENGTH = 0.6f;           ///< metres

} // namespace

void SteeringComponent::applyDebugDraw(const Handle<DebugCollectorComponent> &dcc)
{
    const GlobalConfigSystem &config = getSystemDeref<GlobalConfigSystem>();
    const auto collector = dcc.lookup();
    const Moved &mine = findMoved();
    if (!collector || !config.getDebugDrawEnabled() || !config.getDebugDrawSteerInfoEnabled() || !mine)
        return;
    const Vec4 place = mine.transform->getPosition();
    const auto draw = [&](Vec4 along, const Vec4 &color)
    {
        along.w = 0.f;
        if (along != Vec4())
            drawArrow(*collector, place, along, color);
    };
    Vec4 facing = finalOrientation;
    facing.normalize();
    draw(finalAccel * METRES_A_SECOND_SQUARED, ACCELERATION);
    draw(finalVel, VELOCITY);
    draw(facing * FACING_LENGTH, ORIENTATION);
    for (const AvoidRay &ray : {centralRay, whisker1, whisker2})
        draw(ray.ray, ray.collision.collided ? STRUCK : WHISKER);
    for (const Vec4 &target : {wanderTarget, steeringTarget})
        if (target != Vec4())
            collector->addLine3D(place, Vec4(target.x, target.y, target.z, 1.f), TARGET);
}
