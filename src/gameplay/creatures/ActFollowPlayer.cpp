#include "gameplay/creatures/ActFollowPlayer.h"

#include "ai/steering/SteeringComponent.h"
#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/Coordinator.h"
#include "engine/time/TimerNames.h"
#include "engine/transforms/TransformComponent.h"
#include "engine/transforms/TransformOffsetComponent.h"
#include "object/tree/WellKnownPaths.h"
#include "physics/volumes/BoundingVolume.h"
#include "physics/volumes/FiniteProperty.h"

namespace
{

/// A component of an entity by its key; invalid where it is none of the class.
template <class Component>
Handle<Component> partOf(const Handle<Object> &holder, const String &key)
{
    const auto entity = handle_cast<Entity>(holder).lookup();
    return entity ? handle_cast<Component>(entity->getComponent(key)) : Handle<Component>();
}

/// A direction over the ground, of length 1.
Vec4 overGround(Vec4 way)
{
    way.y = way.w = 0.f;
    way.normalize();
    return way;
}

} // namespace

void ActFollowPlayer::onLoadComplete()
{
    static const String headName = SCS("MannequinHead");
    const auto level = getAncestorOfType<Coordinator>().lookup();
    const auto entity = getParent().lookup();
    if (!level || !entity)
        return;
    hPlayerTransform = partOf<TransformComponent>(level->getChild(WellKnownPaths::player), ComponentKeys::transform);
    const Handle<Object> head = entity->getChild(headName);
    hTransform = partOf<TransformComponent>(head, ComponentKeys::transform);
    hSteering = partOf<SteeringComponent>(head, ComponentKeys::steering);
    hParentFollower = partOf<TransformOffsetComponent>(head, ComponentKeys::parentFollower);
}

void ActFollowPlayer::doFrame()
{
    const auto level = getAncestorOfType<Coordinator>().lookup();
    const Seconds frameTime = level ? level->getTimer(TimerNames::master).getFrameTimeSeconds() : 0.0;
    currentCoolDown -= frameTime;
    const auto player = hPlayerTransform.lookup();
    const auto head = hTransform.lookup();
    const auto steering = hSteering.lookup();
    if (player && head && steering)
        steering->updateAlignWithVector(head->getPosition() - player->getPosition(), frameTime);
}

void ActFollowPlayer::followPlayer()
{
    const auto level = getAncestorOfType<Coordinator>().lookup();
    const auto *const player =
        level ? componentOf<TransformComponent>(level->getChild(WellKnownPaths::player), ComponentKeys::transform)
              : nullptr;
    auto *const own = componentOf<TransformComponent>(getParent(), ComponentKeys::transform);
    const auto *const volume = componentOf<BoundingVolume>(getParent(), ComponentKeys::boundingVolume);
    if (currentCoolDown > 0.0 || !player || !own || !volume)
        return;
    const Vec4 toPlayer = overGround(player->getPosition() - own->getPosition());
    const Matrix4 axes = player->getOrientation().generateRotation();
    if (!(overGround(axes.getColumn(2)).dot(toPlayer) > 0.f))
        return;
    Vec4 place = player->getPosition() + axes * positionOffset;
    place.y = 0.5f * volume->getHitBox().y;
    own->setPosition(place);
    own->setOrientation(Quaternion(toPlayer));
    currentCoolDown = coolDownTime;
}

void ActFollowPlayer::setPositionOffset(Vec4 val)
{
    if (isUsable(*this, "positionOffset", val))
        positionOffset = val;
}

void ActFollowPlayer::setCoolDownTime(double val)
{
    if (isUsable(*this, "coolDownTime", static_cast<float>(val)))
        coolDownTime = val;
}
