#include "physics/BoundingVolume.h"

#include "physics/PartitioningGrid.h"
#include "physics/PhysicsComponent.h"

#include "engine/Entity.h"
#include "engine/MapRootEntity.h"
#include "engine/TransformComponent.h"

#include "foundation/Logger.h"
#include "object/SavedArguments.h"

#include <algorithm>

BoundingVolume::BoundingVolume()
{
    std::fill(std::begin(collisionTable), std::end(collisionTable), &BoundingVolume::neverCollide);
}

void BoundingVolume::onLoadComplete()
{
    const float least = volumeType == BV_SPHERE ? hitBox.x : std::min(hitBox.x, std::min(hitBox.y, hitBox.z));
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
    const Handle<MapRootEntity> map = transform->findMap();
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
    else if (place != previousPosition || orientation != previousOrientation || hitBoxChanged)
    {
        if (const auto grid = PartitioningGrid::ofMap(map).lookup())
            grid->moveVolume(getHandle(this), previousPosition, previousOrientation, volumeType == BV_WALL);
    }
    else if (height != previousHeight || typeChanged)
    {
        if (const auto grid = PartitioningGrid::ofMap(map).lookup())
            grid->refreshOutline(getHandle(this));
    }
    previousHeight = height;
    typeChanged = hitBoxChanged = false;
    previousPosition = place;
    previousOrientation = orientation;
    previousMap = map;
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
    callTriggerFunc(SavedArguments::of(player));
}

/// Calls the function with its arguments; a call that fails is logged, and the function is not called again.
void BoundingVolume::callTriggerFunc(SavedArguments arguments)
{
    const ReflectorPtr func = triggerFunc; // the function may replace itself
    if (!func)
        return;
    const ErrorReturn<Variant> result = func->do_call(arguments);
    if (result.succeeded())
        return;
    KV_LOGF(Logger_::I_ERROR, "%s of %s: its function %s failed and is dropped: %s", getName().toCString(),
            getParent().toString().toCString(), func->toString().toCString(), result.code.toString().toCString());
    if (triggerFunc == func)
        triggerFunc = ReflectorPtr();
}

void BoundingVolume::findSiblings()
{
    static const String transformKey = SCS("transform");
    static const String physicsKey = SCS("physics");
    siblings.transform = handle_cast<TransformComponent>(getSibling(transformKey)).lookup().ptr;
    siblings.physics = handle_cast<PhysicsComponent>(getSibling(physicsKey)).lookup().ptr;
    siblings.objectChanges = ObjectMap().getChangeCount();
}

const Matrix4 &BoundingVolume::rotationOf(const TransformComponent &transform)
{
    const Quaternion orientation = transform.getOrientation();
    if (orientation.r != rotationOrientation.r || orientation.i != rotationOrientation.i ||
        orientation.j != rotationOrientation.j || orientation.k != rotationOrientation.k)
    {
        rotationOrientation = orientation;
        rotation = orientation.generateRotation();
    }
    return rotation;
}

/// Where the volume stands, and how far it or what it notices reaches along the axes of the grid.
VolumeOutline BoundingVolume::outline()
{
    VolumeOutline outline;
    outline.volume = this;
    const TransformComponent *const transform = findTransform();
    if (!transform)
    {
        std::fill(std::begin(outline.reach), std::end(outline.reach), -FARTHEST_CELL);
        return outline;
    }
    const Matrix4 &turned = rotationOf(*transform);
    const Vec4 centre = transform->getPosition();
    // A ball, and what lights and bullets notice of the player, is measured about the middle, whatever the box.
    const bool isBall = volumeType == BV_SPHERE || volumeType == BV_PARTITIONING_DUMMY || volumeType == BV_BULLET ||
                        volumeType == BV_CONTAINER;
    const float radius = isBall ? 0.5f * std::fabs(hitBox.x) : 0.f;
    for (int axis = 0; axis < 3; ++axis)
    {
        outline.centre[axis] = centre[axis];
        outline.reach[axis] =
            std::fmax(radius, 0.5f * (std::fabs(turned[axis][0] * hitBox.x) + std::fabs(turned[axis][1] * hitBox.y) +
                                      std::fabs(turned[axis][2] * hitBox.z)));
    }
    return outline;
}
