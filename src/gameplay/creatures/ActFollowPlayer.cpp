#include "gameplay/creatures/ActFollowPlayer.h"

#include "ai/perception/PerceptionComponent.h"
#include "ai/perception/Sightline.h"
#include "ai/steering/SteeringComponent.h"
#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/Coordinator.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/time/TimerNames.h"
#include "engine/transforms/TransformComponent.h"
#include "engine/transforms/TransformOffsetComponent.h"
#include "object/tree/WellKnownPaths.h"
#include "gameplay/creatures/StandingRoom.h"
#include "physics/volumes/BoundingVolume.h"
#include "physics/volumes/FiniteProperty.h"

#include <algorithm>

namespace
{

constexpr float KNEES = 0.25f; ///< of its height, below the middle

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
    // Who keeps out of sight keeps to his own floor as well, whatever height that has.
    place.y = unseenOnly ? own->getPosition().y : 0.5f * volume->getHitBox().y;
    if (unseenOnly && !isFreeToGo(place))
        return;
    own->setPosition(place);
    own->setOrientation(Quaternion(toPlayer));
    currentCoolDown = coolDownTime;
}

bool ActFollowPlayer::stepTo(Vec4 place)
{
    auto *const own = componentOf<TransformComponent>(getParent(), ComponentKeys::transform);
    if (!own || !isUsable(*this, "a place to step to", place))
        return false;
    place.y = own->getPosition().y;
    place.w = 1.f;
    PartitioningGrid *const grid = PartitioningGrid::ofMap(getAncestorOfType<MapRootEntity>()).lookup().ptr;
    const SightFilter others(getParent(), getParent());
    if (!isFreeBetween(grid, others, own->getPosition(), place) || !isFreeToGo(place))
        return false;
    own->setPosition(place);
    if (const auto player = hPlayerTransform.lookup())
        own->setOrientation(Quaternion(overGround(player->getPosition() - place)));
    return true;
}

bool ActFollowPlayer::isFreeToGo(Vec4 place)
{
    auto *const senses = componentOf<PerceptionComponent>(getParent(), ComponentKeys::perception);
    const auto *const volume = componentOf<BoundingVolume>(getParent(), ComponentKeys::boundingVolume);
    if (!senses || !volume || senses->getWatched())
        return false;
    const float radius = 0.5f * std::max(volume->getHitBox().x, volume->getHitBox().z);
    const Vec4 knees = place - Vec4(0.f, KNEES * volume->getHitBox().y, 0.f, 0.f);
    return hasStandingRoom(handle_cast<Entity>(getParent()), knees, radius) && !senses->wouldBeWatched(place);
}

String ActFollowPlayer::tell()
{
    auto *const senses = componentOf<PerceptionComponent>(getParent(), ComponentKeys::perception);
    if (!unseenOnly || !senses)
        return currentCoolDown > 0.0 ? SCS("has just moved") : SCS("waits for a back that is turned");
    return senses->getWatched() ? SCS("stands still, since it is seen") : SCS("is not seen, and may move");
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
