#include "ai/flocks/FlowFieldMovementComponent.h"

#include "ai/flocks/FlowField.h"

#include "physics/bodies/PhysicsComponent.h"
#include "physics/volumes/FiniteProperty.h"

#include "engine/debug/DebugCollector.h"
#include "engine/debug/DebugShapes.h"
#include "engine/debug/GlobalConfigSystem.h"
#include "engine/entities/ComponentKeys.h"
#include "engine/transforms/TransformComponent.h"

#include "foundation/Finite.h"

namespace
{

constexpr float NO_FLOW = 1e-6f;
constexpr Vec4 SAMPLED(0.3f, 0.9f, 0.7f, 1.f);

} // namespace

void FlowFieldMovementComponent::onLoadComplete()
{
    tempInit = false;
}

void FlowFieldMovementComponent::doFrame()
{
    if (TransformComponent *const transform = tempInit ? nullptr : findTransform())
    {
        tempInit = true;
        hFlowField = findFlowField(*transform);
    }
    sampleFlowField();
}

TransformComponent *FlowFieldMovementComponent::findTransform()
{
    return handle_cast<TransformComponent>(getSibling(ComponentKeys::transform)).lookup().ptr;
}

void FlowFieldMovementComponent::sampleFlowField()
{
    const auto body = handle_cast<PhysicsComponent>(getSibling(ComponentKeys::physics)).lookup();
    const TransformComponent *const transform = findTransform();
    const auto field = hFlowField.lookup();
    if (!body || !transform || !field)
        return;
    const Vec4 place = transform->getPosition();
    const GridCell cell = field->getCellFromPoint(place);
    if (!cell.isValid())
        return;
    const Matrix4 toWorld = field->getTransformationMatrix(0);
    Vec4 sum;
    forEachCellWithin(*field, cell, sampleRadius,
                      [&](int x, int z)
                      {
                          const Vec4 flow = field->getCellValue(x, z);
                          const Vec4 centre =
                              field->calcCellWorldCoords(toWorld, static_cast<float>(x), static_cast<float>(z));
                          if (flow.magnitude() > 0.f && flatDistance(centre, place) <= sampleRadius)
                              sum += flow;
                      });
    if (!(sum.magnitude() > NO_FLOW) || !isFinite(sum))
        return;
    sum.normalize();
    body->setVelocity(sum * flowSpeed);
}

void FlowFieldMovementComponent::calculatePerimeterDebug()
{
    if (const TransformComponent *const transform = findTransform())
        layPerimeter(transform->getPosition(), sampleRadius, samplingPerimeterVecs);
}

void FlowFieldMovementComponent::setSampleRadius(float val)
{
    if (isUsable(*this, "sampleRadius", val))
        sampleRadius = val;
}

void FlowFieldMovementComponent::setFlowSpeed(float val)
{
    if (isUsable(*this, "flowSpeed", val))
        flowSpeed = val;
}

void FlowFieldMovementComponent::applyDebugDraw(const Handle<DebugCollectorComponent> &dcc)
{
    const GlobalConfigSystem &config = getSystemDeref<GlobalConfigSystem>();
    const auto collector = dcc.lookup();
    const TransformComponent *const transform = findTransform();
    if (!collector || !config.getDebugDrawEnabled() || !config.getDebugFlowFieldInfluenceInfoEnabled() || !transform)
        return;
    calculatePerimeterDebug();
    drawPerimeter(*collector, samplingPerimeterVecs, SAMPLED);
    const auto body = handle_cast<PhysicsComponent>(getSibling(ComponentKeys::physics)).lookup();
    if (body && body->getVelocity() != Vec4())
        drawArrow(*collector, transform->getPosition(), body->getVelocity(), SAMPLED);
}
