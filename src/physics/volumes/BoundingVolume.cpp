#include "physics/volumes/BoundingVolume.h"

#include "physics/volumes/PairTests.h"
#include "physics/volumes/VolumeDrawing.h"
#include "physics/volumes/VolumeTraits.h"
#include "physics/bodies/PhysicsComponent.h"

#include "engine/debug/DebugCollector.h"
#include "engine/debug/GlobalConfigSystem.h"
#include "engine/entities/ComponentKeys.h"
#include "engine/entities/Entity.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/transforms/TransformComponent.h"

#include "foundation/Finite.h"
#include "foundation/Logger.h"

#include <algorithm>
#include <cmath>

BoundingVolume::BoundingVolume() : collisionTable(pairTestsOf(BV_NONE)) {}

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

void BoundingVolume::applyDebugDraw(const Handle<DebugCollectorComponent> &dcc)
{
    const GlobalConfigSystem &config = getSystemDeref<GlobalConfigSystem>();
    const auto collector = dcc.lookup();
    if (!collector || !config.getDebugDrawEnabled() || !config.getDebugDrawHitBoxes())
        return;
    const TransformComponent *const transform = findTransform();
    if (!transform || !isFinite(transform->getPosition()))
        return;
    const Matrix4 toWorld = transform->getOrientation().generateRotation(transform->getPosition());
    drawVolume(*collector, VolumeTraits::of(volumeType), toWorld, hitBox, trigger || interact);
}

void BoundingVolume::doFrame()
{
    collisions.clear();
    if (TransformComponent *const transform = findTransform())
        gridPlace.follow(*this, *transform, mapOf(*transform), VolumeTraits::of(volumeType).isStatic);
}

void BoundingVolume::setVolumeType(VolumeType t)
{
    if (t < 0 || t >= NUM_VOLUMES)
    {
        KV_ERROR("%d is no type of a bounding volume: they end at %d", static_cast<int>(t), NUM_VOLUMES - 1);
        return;
    }
    volumeType = t;
    gridPlace.noteType();
    if (const DetectCollision *const tests = pairTestsOf(t))
        collisionTable = tests;
}

void BoundingVolume::setHitBox(Vec4 val)
{
    hitBox = val;
    gridPlace.noteHitBox();
}

bool BoundingVolume::boxToPoint(Vec4 point)
{
    const TransformComponent *const transform = findTransform();
    return transform && shapeAt(*transform).boxHolds(point);
}

bool BoundingVolume::boxToPoint(Vec4 point, Vec4 boundingBox, Vec4 boxPos)
{
    const TransformComponent *const transform = findTransform();
    return transform && PlacedShape{rotationOf(*transform), boxPos, boundingBox}.boxHolds(point);
}

bool BoundingVolume::boxToPointWithInfo(Vec4 point, Vec4 &nonCollidingPoint, float &depth)
{
    nonCollidingPoint = point;
    depth = 0.f;
    const TransformComponent *const transform = findTransform();
    if (!transform || !shapeAt(*transform).boxHolds(point))
        return false;
    shapeAt(*transform).leaveBox(point, nonCollidingPoint, depth);
    return true;
}

RayCollision BoundingVolume::sphereToLineSegmentWithInfo(Vec4 pos, Vec4 direction)
{
    const TransformComponent *const transform = findTransform();
    return transform ? shapeAt(*transform).segmentIntoBall(pos, direction) : RayCollision();
}

RayCollision BoundingVolume::boxToLineSegmentWithInfo(Vec4 pos, Vec4 direction)
{
    const TransformComponent *const transform = findTransform();
    return transform ? shapeAt(*transform).segmentIntoBox(pos, direction) : RayCollision();
}

Vec4 BoundingVolume::closestPointToLineSeg(Vec4 point)
{
    const TransformComponent *const transform = findTransform();
    return transform ? shapeAt(*transform).nearestOnLine(point) : point;
}

Vec4 BoundingVolume::contactPoint(Vec4 pointOne, Vec4 axisOne, float sizeOne, Vec4 pointTwo, Vec4 axisTwo,
                                  float sizeTwo)
{
    return whereEdgesMeet(BoxEdge{pointOne, axisOne, sizeOne}, BoxEdge{pointTwo, axisTwo, sizeTwo});
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
    return rotation.of(transform.getOrientation());
}

PlacedShape BoundingVolume::shapeAt(const TransformComponent &transform)
{
    return PlacedShape{rotationOf(transform), transform.getPosition(), hitBox};
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
