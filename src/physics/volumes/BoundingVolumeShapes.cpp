// BoundingVolume: points and segments against its shape, and where edges meet.
#include "physics/volumes/BoundingVolume.h"

#include "engine/transforms/TransformComponent.h"

#include <cmath>
#include <utility>

namespace
{

/// Below this a direction counts as lying in a slab's plane, metres.
constexpr float PARALLEL_TO_SLAB = 0.0001f;

Vec4 clampedToBox(const Vec4 &point, const Vec4 &extents)
{
    Vec4 clamped = point;
    for (int axis = 0; axis < 3; ++axis)
        clamped[axis] = std::fmax(std::fmin(point[axis], 0.5f * extents[axis]), -0.5f * extents[axis]);
    return clamped;
}

/// A world direction, or the way from a centre to a point, along a box's own axes.
Vec4 intoBox(const Vec4 &direction, const Matrix4 &rotation)
{
    return Vec4(direction.x, direction.y, direction.z, 0.f) * rotation;
}

/// Cuts a segment in box space by the box's three slabs.
struct SlabClip
{
    float entry = 0.f;
    float exit = 1.f;
    int entryAxis = -1; ///< of the face that the segment enters by; -1 where it starts inside
    bool missed = false;

    void clip(int axis, float position, float direction, float halfExtent)
    {
        if (std::fabs(direction) < PARALLEL_TO_SLAB)
        {
            missed = missed || !(std::fabs(position) <= halfExtent);
            return;
        }
        float in = (-halfExtent - position) / direction, out = (halfExtent - position) / direction;
        if (in > out)
            std::swap(in, out);
        if (in > entry)
        {
            entry = in;
            entryAxis = axis;
        }
        exit = std::fmin(exit, out);
    }
};

} // namespace

bool BoundingVolume::boxToPoint(Vec4 point)
{
    const TransformComponent *const transform = findTransform();
    return transform && boxToPoint(point, hitBox, transform->getPosition());
}

bool BoundingVolume::boxToPoint(Vec4 point, Vec4 boundingBox, Vec4 boxPos)
{
    constexpr float tolerance = 0.0001f; // metres squared
    const TransformComponent *const transform = findTransform();
    if (!transform)
        return false;
    const Vec4 local = intoBox(point - boxPos, rotationOf(*transform));
    const Vec4 clamped = clampedToBox(local, boundingBox);
    return clamped.magnitudeSquared() + tolerance >= local.magnitudeSquared();
}

bool BoundingVolume::boxToPointWithInfo(Vec4 point, Vec4 &nonCollidingPoint, float &depth)
{
    nonCollidingPoint = point;
    depth = 0.f;
    const TransformComponent *const transform = findTransform();
    if (!transform || !boxToPoint(point))
        return false;
    const Matrix4 &rotation = rotationOf(*transform);
    Vec4 local = intoBox(point - transform->getPosition(), rotation);
    int nearest = 0;
    float nearestDepth = 0.f;
    for (int axis = 0; axis < 3; ++axis)
    {
        const float axisDepth = 0.5f * hitBox[axis] - std::fabs(local[axis]);
        if (axis != 0 && !(axisDepth < nearestDepth))
            continue;
        nearest = axis;
        nearestDepth = axisDepth;
    }
    local[nearest] = std::copysign(0.5f * hitBox[nearest], local[nearest]);
    nonCollidingPoint = transform->getPosition() + rotation * local;
    depth = std::fmax(nearestDepth, 0.f);
    return true;
}

RayCollision BoundingVolume::sphereToLineSegmentWithInfo(Vec4 pos, Vec4 direction)
{
    RayCollision result;
    const TransformComponent *const transform = findTransform();
    if (!transform)
        return result;
    const float radius = 0.5f * hitBox.x;
    const Vec4 fromCentre = pos - transform->getPosition();
    const float a = direction.dot(direction), b = 2.f * direction.dot(fromCentre);
    const float discriminant = b * b - 4.f * a * (fromCentre.dot(fromCentre) - radius * radius);
    if (!(a > 0.f) || !(discriminant >= 0.f))
        return result;
    const float root = std::sqrt(discriminant);
    result.t = (-b - root) / (2.f * a);
    if (result.t < 0.f)
        result.t = (-b + root) / (2.f * a);
    result.collided = result.t >= 0.f && result.t <= 1.f;
    result.point = pos + direction * result.t;
    result.normal = result.point - transform->getPosition();
    result.normal.w = 0.f;
    result.normal.normalize();
    return result;
}

RayCollision BoundingVolume::boxToLineSegmentWithInfo(Vec4 pos, Vec4 direction)
{
    RayCollision result;
    const TransformComponent *const transform = findTransform();
    if (!transform)
        return result;
    const Matrix4 &rotation = rotationOf(*transform);
    const Vec4 start = intoBox(pos - transform->getPosition(), rotation), along = intoBox(direction, rotation);
    SlabClip slabs;
    for (int axis = 0; axis < 3; ++axis)
        slabs.clip(axis, start[axis], along[axis], 0.5f * hitBox[axis]);
    result.collided = !slabs.missed && slabs.entry <= slabs.exit;
    result.t = slabs.entry;
    result.point = pos + direction * slabs.entry;
    if (slabs.entryAxis >= 0)
        result.normal = rotation.getColumn(slabs.entryAxis) * (along[slabs.entryAxis] > 0.f ? -1.f : 1.f);
    return result;
}

Vec4 BoundingVolume::closestPointToLineSeg(Vec4 point)
{
    const TransformComponent *const transform = findTransform();
    if (!transform)
        return point;
    const Vec4 along = rotationOf(*transform).getColumn(2);
    const float reach = 0.5f * std::fabs(hitBox.z);
    const float wanted = along.dot(point - transform->getPosition());
    return transform->getPosition() + along * std::fmax(std::fmin(wanted, reach), -reach);
}

Vec4 BoundingVolume::contactPoint(Vec4 pointOne, Vec4 axisOne, float sizeOne, Vec4 pointTwo, Vec4 axisTwo,
                                  float sizeTwo)
{
    constexpr float parallel = 0.0001f;
    const Vec4 between = pointOne - pointTwo;
    const float one = axisOne.dot(axisOne), two = axisTwo.dot(axisTwo), both = axisOne.dot(axisTwo);
    const float alongOne = axisOne.dot(between), alongTwo = axisTwo.dot(between);
    const float denominator = one * two - both * both;
    if (!(std::fabs(denominator) > parallel))
        return pointOne;
    const float s = (both * alongTwo - two * alongOne) / denominator;
    const float t = (one * alongTwo - both * alongOne) / denominator;
    if (std::fabs(s) > sizeOne || std::fabs(t) > sizeTwo)
        return pointOne;
    return (pointOne + axisOne * s + pointTwo + axisTwo * t) * 0.5f;
}
