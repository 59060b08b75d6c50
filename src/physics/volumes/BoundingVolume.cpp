#include "physics/volumes/BoundingVolume.h"

#include "physics/volumes/VolumeTraits.h"
#include "physics/grid/PartitioningGrid.h"
#include "physics/bodies/PhysicsComponent.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/Entity.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/transforms/TransformComponent.h"

#include "foundation/Logger.h"
#include "object/python/ScriptCall.h"
#include "object/reflection/PartialFunctionApplication.h"

#include <algorithm>
#include <cmath>

namespace
{

/// The last of some arguments, or all of them where there are not more.
SavedArguments lastArguments(const SavedArguments &all, std::size_t count)
{
    if (all.getArgCount() <= count)
        return all;
    SavedArguments last(count);
    for (std::size_t i = 0; i < count; ++i)
        last[i] = all[all.getArgCount() - count + i];
    return last;
}

} // namespace

void BoundingVolume::onLoadComplete()
{
    const bool isBall = VolumeTraits::of(volumeType).shape == VolumeTraits::BALL;
    const float least = isBall ? hitBox.x : std::min(hitBox.x, std::min(hitBox.y, hitBox.z));
    if (!(least > 0.f))
        KV_LOGF(Logger_::I_WARNING, "%s of %s has no extent: its hitBox is %s, and every side must be longer than 0.",
                getName().toCString(), getParent().toString().toCString(), hitBox.toString().toCString());
}

void BoundingVolume::onHierarchyChange(Handle<Object>, Handle<Object>)
{
    siblings = Siblings();
}

void BoundingVolume::doFrame()
{
    collisions.clear();
    TransformComponent *const transform = findTransform();
    if (!transform)
        return;
    const Handle<MapRootEntity> map = mapOf(*transform);
    Vec4 place = transform->getPosition();
    const float height = place.y;
    place.y = 0.f;
    const Quaternion orientation = transform->getOrientation();

    if (map != previousMap)
    {
        const auto grid = PartitioningGrid::ofMap(map).lookup();
        if (!grid)
            return; // the map counts from when it has a grid
        grid->addVolume(getHandle(this));
    }
    else if (place != previousPosition || orientation != previousOrientation || hitBoxChanged || standsInWrongList() ||
             gridLayout != PartitioningGrid::getLayoutNumber())
    {
        if (const auto grid = PartitioningGrid::ofMap(map).lookup())
            grid->moveVolume(getHandle(this), previousPosition, previousOrientation,
                             VolumeTraits::of(volumeType).isStatic);
    }
    else if (height != previousHeight || typeChanged)
    {
        if (const auto grid = PartitioningGrid::ofMap(map).lookup())
            grid->refreshOutline(getHandle(this));
    }
    previousHeight = height;
    typeChanged = hitBoxChanged = false;
    gridLayout = PartitioningGrid::getLayoutNumber();
    previousPosition = place;
    previousOrientation = orientation;
    previousMap = map;
}

/// Whether the type has changed so that the volume belongs among the static ones now, or no longer.
bool BoundingVolume::standsInWrongList() const
{
    return typeChanged && gridPlace.slot != VolumeListGrid::NO_SLOT &&
           gridPlace.isStatic != VolumeTraits::of(volumeType).isStatic;
}

void BoundingVolume::setTriggerFunc(ReflectorPtr func)
{
    triggerFunc = func;
    trigger = static_cast<bool>(func);
}

void BoundingVolume::setInteractFunc(ReflectorPtr func)
{
    triggerFunc = func;
    interact = static_cast<bool>(func);
}

void BoundingVolume::setPickupFunc(ReflectorPtr func)
{
    setInteractFunc(func);
    trigger = false;
}

void BoundingVolume::interactWithPlayer(Handle<Object> player)
{
    callTriggerFunc(SavedArguments::of(handle_cast<Entity>(getParent()), player), 1);
}

/// Calls the function with the last arguments; a call that fails is logged, and the function is not called again.
///
/// The methods that are meant for triggers take both, the toucher alone, or nothing: a bound method gets what it has
/// room for.
/// @param offered  how many any other function gets
void BoundingVolume::callTriggerFunc(const SavedArguments &entityAndToucher, std::size_t offered)
{
    const ReflectorPtr func = triggerFunc; // the function may replace itself
    if (!func)
        return;
    const bool isBound = dynamic_cast<const PartialFunctionApplication *>(func.get()) != nullptr;
    SavedArguments fitting = lastArguments(entityAndToucher, isBound ? func->getArgCount() : offered);
    if (!callOrReport(func, fitting, *this, "trigger function") && triggerFunc == func)
        triggerFunc = ReflectorPtr();
}

void BoundingVolume::findSiblings()
{
    siblings.transform = handle_cast<TransformComponent>(getSibling(ComponentKeys::transform)).lookup().ptr;
    siblings.physics = handle_cast<PhysicsComponent>(getSibling(ComponentKeys::physics)).lookup().ptr;
    const auto entity = getParent().lookup();
    siblings.map = entity ? handle_cast<MapRootEntity>(entity->getParent()) : Handle<MapRootEntity>();
    siblings.objectChanges = ObjectMap().getChangeCount();
}

/// The map that a volume beside a transform lies in.
Handle<MapRootEntity> BoundingVolume::mapOf(TransformComponent &transform) const
{
    // Only in world space does the map depend on the place.
    return transform.getNativeSpace() == TransformComponent::MAP_SPACE ? siblings.map : transform.findMap();
}

const Matrix4 &BoundingVolume::rotationOf(const TransformComponent &transform)
{
    const Quaternion orientation = transform.getOrientation();
    if (orientation.r != rotationOrientation.r || orientation.i != rotationOrientation.i ||
        orientation.j != rotationOrientation.j || orientation.k != rotationOrientation.k)
    {
        rotationOrientation = orientation;
        Quaternion turn = orientation;
        const float length = turn.r * turn.r + turn.i * turn.i + turn.j * turn.j + turn.k * turn.k;
        if (std::fabs(length - 1.f) > 1e-3f) // a script's own: it must not stretch the box
            turn.normalize();
        rotation = turn.generateRotation();
    }
    return rotation;
}

/// Where the volume stands, and how far it or what it notices reaches along the axes of the grid.
VolumeMeasure BoundingVolume::measureAt(const TransformComponent &transform)
{
    // A ball, and what lights and bullets notice of the player, is measured about the middle, whatever the box.
    const float radius = VolumeTraits::of(volumeType).reachesAsBall ? 0.5f * std::fabs(hitBox.x) : 0.f;
    const Matrix4 &turned = rotationOf(transform);
    VolumeMeasure measure;
    measure.centre = transform.getPosition();
    measure.outline.volume = this;
    for (int axis = 0; axis < 3; ++axis)
    {
        measure.boxReach[axis] = 0.5f * (std::fabs(turned[axis][0] * hitBox.x) + std::fabs(turned[axis][1] * hitBox.y) +
                                         std::fabs(turned[axis][2] * hitBox.z));
        measure.outline.centre[axis] = measure.centre[axis];
        measure.outline.reach[axis] = std::max(radius, measure.boxReach[axis]);
    }
    return measure;
}

/// What `measureAt` says of the outline; a volume without a transform can touch nothing.
VolumeOutline BoundingVolume::outline()
{
    if (const TransformComponent *const transform = findTransform())
        return measureAt(*transform).outline;
    VolumeOutline outline;
    outline.volume = this;
    std::fill(std::begin(outline.reach), std::end(outline.reach), -FARTHEST_CELL);
    return outline;
}
