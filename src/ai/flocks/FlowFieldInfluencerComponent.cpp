#include "ai/flocks/FlowFieldInfluencerComponent.h"

#include "ai/flocks/FlowField.h"

#include "physics/bodies/PhysicsComponent.h"
#include "physics/volumes/FiniteProperty.h"

#include "engine/debug/DebugCollector.h"
#include "engine/debug/DebugShapes.h"
#include "engine/debug/GlobalConfigSystem.h"
#include "engine/entities/ComponentKeys.h"
#include "engine/levels/Coordinator.h"
#include "engine/time/TimeKeeper.h"
#include "engine/time/TimerNames.h"
#include "engine/transforms/TransformComponent.h"

#include "foundation/Assertions.h"
#include "foundation/Finite.h"

#include <algorithm>

namespace
{

constexpr Seconds AVERAGE_INTERVAL = 0.5; ///< a wake spreads by a cell in that time
constexpr float NO_FLOW = 1e-6f;
constexpr float MOST_DRAWN = 10.f; ///< metres around the object within which flows are drawn
constexpr Vec4 INFLUENCED(1.f, 0.6f, 0.2f, 1.f);
constexpr Vec4 AVERAGED(0.6f, 0.4f, 1.f, 1.f);

} // namespace

void FlowFieldInfluencerComponent::onLoadComplete()
{
    tempInit = false;
}

void FlowFieldInfluencerComponent::doFrame()
{
    if (TransformComponent *const transform = tempInit ? nullptr : findTransform())
    {
        tempInit = true;
        hFlowField = findFlowField(*transform);
    }
    updateFlowField();
    const auto level = getAncestorOfType<Coordinator>().lookup();
    timeSinceAverage += level ? level->getTimer(TimerNames::master).getFrameTimeSeconds() : 0.0;
    if (timeSinceAverage < AVERAGE_INTERVAL)
        return;
    timeSinceAverage = 0;
    averageFlowField();
}

TransformComponent *FlowFieldInfluencerComponent::findTransform()
{
    return handle_cast<TransformComponent>(getSibling(ComponentKeys::transform)).lookup().ptr;
}

/// The object's cell of the field; one that is not valid off the field and without one.
GridCell FlowFieldInfluencerComponent::findCell()
{
    const TransformComponent *const transform = findTransform();
    const auto field = hFlowField.lookup();
    return transform && field ? field->getCellFromPoint(transform->getPosition()) : GridCell();
}

void FlowFieldInfluencerComponent::updateFlowField()
{
    const auto body = handle_cast<PhysicsComponent>(getSibling(ComponentKeys::physics)).lookup();
    const GridCell cell = findCell();
    if (!body || !cell.isValid())
        return;
    SquareGrid &field = *hFlowField.lookup();
    Vec4 velocity = body->getVelocity();
    velocity.w = 0.f;
    if (!(velocity.magnitude() > NO_FLOW) || !isFinite(velocity))
        return;
    forEachCellWithin(field, cell, influenceRadius,
                      [&](int x, int z)
                      {
                          if (field.getCell(x, z).gridDistance(cell) * field.getCellSize() <= influenceRadius)
                              setFlow(field, x, z, velocity);
                      });
}

void FlowFieldInfluencerComponent::averageFlowField()
{
    const GridCell cell = findCell();
    if (!cell.isValid())
        return;
    const SquareGrid &field = *hFlowField.lookup();
    forEachCellWithin(field, cell, averageRadius, [&](int x, int z) { averageCellVector(field.getCell(x, z), cell); });
}

void FlowFieldInfluencerComponent::averageCellVector(GridCell cell, GridCell entityCell)
{
    const auto field = cell.getGrid().lookup();
    if (!field || !cell.isValid() || !(cell.getValue().magnitude() >= NO_FLOW) ||
        cell.gridDistance(entityCell) * field->getCellSize() > averageRadius)
        return;
    Vec4 sum = cell.getValue();
    float count = 1;
    for (int z = cell.getZ() - 1; z <= cell.getZ() + 1; ++z)
        for (int x = cell.getX() - 1; x <= cell.getX() + 1; ++x)
            if ((x != cell.getX() || z != cell.getZ()) && field->isCellInBounds(x, z))
            {
                sum += field->getCellValue(x, z);
                ++count;
            }
    if (isFinite(sum))
        setFlow(*field, cell.getX(), cell.getZ(), sum / count);
}

void FlowFieldInfluencerComponent::setFlow(SquareGrid &field, int x, int z, const Vec4 &flow)
{
    KV_ASSERT(field.isCellInBounds(x, z), "Attempted to set invalid grid coordinate value");
    field.setCellValue(x, z, flow);
}

void FlowFieldInfluencerComponent::calculatePerimeterDebug(float radius, std::vector<Vec4> &perimeterVecs)
{
    if (const TransformComponent *const transform = findTransform())
        layPerimeter(transform->getPosition(), radius, perimeterVecs);
}

void FlowFieldInfluencerComponent::setInfluenceRadius(float val)
{
    if (isUsable(*this, "influenceRadius", val))
        influenceRadius = val;
}

void FlowFieldInfluencerComponent::setAverageRadius(float val)
{
    if (isUsable(*this, "averageRadius", val))
        averageRadius = val;
}

void FlowFieldInfluencerComponent::applyDebugDraw(const Handle<DebugCollectorComponent> &dcc)
{
    const GlobalConfigSystem &config = getSystemDeref<GlobalConfigSystem>();
    const auto collector = dcc.lookup();
    if (!collector || !config.getDebugDrawEnabled() || !config.getDebugFlowFieldInfluenceInfoEnabled())
        return;
    calculatePerimeterDebug(influenceRadius, influencePerimeterVecs);
    calculatePerimeterDebug(averageRadius, averagePerimeterVecs);
    drawPerimeter(*collector, influencePerimeterVecs, INFLUENCED);
    drawPerimeter(*collector, averagePerimeterVecs, AVERAGED);
    const GridCell cell = findCell();
    const auto field = hFlowField.lookup();
    if (!field || !cell.isValid())
        return;
    forEachCellWithin(*field, cell, std::min(std::max(influenceRadius, averageRadius), MOST_DRAWN),
                      [&](int x, int z)
                      {
                          const Vec4 flow = field->getCellValue(x, z);
                          if (flow != Vec4())
                              drawArrow(*collector, field->getCellWorldCoords(x, z), flow, INFLUENCED);
                      });
}
