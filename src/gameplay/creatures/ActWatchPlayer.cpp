#include "gameplay/creatures/ActWatchPlayer.h"

#include "ai/perception/PerceptionComponent.h"
#include "ai/steering/SteeringComponent.h"
#include "engine/debug/DebugCollector.h"
#include "engine/debug/GlobalConfigSystem.h"
#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/Coordinator.h"
#include "engine/systems/SystemSystem.h"
#include "engine/transforms/TransformComponent.h"
#include "engine/transforms/TransformOffsetComponent.h"
#include "object/tree/WellKnownPaths.h"

#include <cmath>

namespace
{
constexpr float FAR_AND_WIDE = 12.f; ///< metres: across the largest room
constexpr int CORNERS = 24;          ///< of the circle that is drawn
const Vec4 CIRCLE_COLOR(0.8f, 0.6f, 0.3f, 1.f);
} // namespace

ActionStatus ActWatchPlayer::update(Seconds frameTime)
{
    if (elapsedTime == 0.0)
    {
        findParts();
        incrementTime(frameTime);
    }
    const auto player = hPlayerTransform.lookup();
    const auto head = hTransform.lookup();
    const auto steering = hSteering.lookup();
    if (!player || !head || !steering)
        return AS_InvalidHandle;
    const Vec4 toPlayer = player->getPosition() - head->getPosition();
    if (!mayTurn(toPlayer))
        return AS_InProgress;
    steering->updateAlignWithVector(toPlayer, frameTime);
    const auto neck = hParentFollower.lookup();
    const auto body = neck ? handle_cast<Entity>(getParent().lookup()->getParent()) : Handle<Entity>();
    if (const auto *const below = componentOf<TransformComponent>(body, ComponentKeys::transform))
        neck->setOrientationOffset(below->getOrientation().inverse() * head->getOrientation());
    return AS_InProgress;
}

void ActWatchPlayer::findParts()
{
    const auto level = getAncestorOfType<Coordinator>().lookup();
    const auto entity = handle_cast<Entity>(getParent()).lookup();
    if (!level || !entity)
        return;
    if (const auto player = handle_cast<Entity>(level->getChild(WellKnownPaths::player)).lookup())
        hPlayerTransform = handle_cast<TransformComponent>(player->getComponent(ComponentKeys::transform));
    hTransform = handle_cast<TransformComponent>(entity->getComponent(ComponentKeys::transform));
    hSteering = handle_cast<SteeringComponent>(entity->getComponent(ComponentKeys::steering));
    hParentFollower = handle_cast<TransformOffsetComponent>(entity->getComponent(ComponentKeys::parentFollower));
    calculateWatchRadius();
}

void ActWatchPlayer::calculateWatchRadius()
{
    const auto steering = hSteering.lookup();
    const float ahead = steering ? steering->getLookAhead() : 0.f;
    watchRadius = ahead > 0.f ? ahead : FAR_AND_WIDE;
    watchRadiusVecs.clear();
    for (int corner = 0; corner <= CORNERS; ++corner)
    {
        const float angle = 2.f * PI * static_cast<float>(corner) / CORNERS;
        watchRadiusVecs.emplace_back(watchRadius * std::sin(angle), 0.f, watchRadius * std::cos(angle), 0.f);
    }
}

PerceptionComponent *ActWatchPlayer::findSenses() const
{
    if (auto *const own = componentOf<PerceptionComponent>(getParent(), ComponentKeys::perception))
        return own;
    const auto entity = getParent().lookup();
    return entity ? componentOf<PerceptionComponent>(entity->getParent(), ComponentKeys::perception) : nullptr;
}

bool ActWatchPlayer::mayTurn(const Vec4 &toPlayer) const
{
    if (!(std::hypot(toPlayer.x, toPlayer.z) <= watchRadius))
        return false;
    PerceptionComponent *const senses = findSenses();
    return !senses || !senses->getWatched();
}

void ActWatchPlayer::applyDebugDraw(const Handle<DebugCollectorComponent> &dcc)
{
    const auto collector = dcc.lookup();
    const auto head = hTransform.lookup();
    if (!collector || !head || !getSystemDeref<GlobalConfigSystem>().getDebugDrawSteerInfoEnabled())
        return;
    for (std::size_t corner = 1; corner < watchRadiusVecs.size(); ++corner)
        collector->addLine3D(head->getPosition() + watchRadiusVecs[corner - 1],
                             head->getPosition() + watchRadiusVecs[corner], CIRCLE_COLOR);
}
