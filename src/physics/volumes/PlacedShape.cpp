#include "physics/volumes/PlacedShape.h"

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

void KeptRotation::make(const Quaternion &orientation)
{
    madeFrom = orientation;
    Quaternion turn = orientation;
    const float length = turn.r * turn.r + turn.i * turn.i + turn.j * turn.j + turn.k * turn.k;
    if (std::fabs(length - 1.f) > 1e-3f) // a script's own: it must not stretch the box
        turn.normalize();
    rotation = turn.generateRotation();
}

bool PlacedShape::boxHolds(const Vec4 &point) const
{
    constexpr float tolerance = 0.0001f; // metres squared
    const Vec4 local = intoBox(point - centre, rotation);
    return clampedToBox(local, extents).magnitudeSquared() + tolerance >= local.magnitudeSquared();
}

void PlacedShape::leaveBox(const Vec4 &point, Vec4 &outside, float &depth) const
{
    Vec4 local = intoBox(point - centre, rotation);
    int nearest = 0;
    float nearestDepth = 0.f;
    for (int axis = 0; axis < 3; ++axis)
    {
        const float axisDepth = 0.5f * extents[axis] - std::fabs(local[axis]);
        if (axis != 0 && !(axisDepth < nearestDepth))
            continue;
        nearest = axis;
        nearestDepth = axisDepth;
    }
    local[nearest] = std::copysign(0.5f * extents[nearest], local[nearest]);
    outside = centre + rotation * local;
    depth = std::fmax(nearestDepth, 0.f);
}

RayCollision PlacedShape::segmentIntoBall(const Vec4 &pos, const Vec4 &direction) const
{
    RayCollision result;
    const float radius = 0.5f * extents.x;
    const Vec4 fromCentre = pos - centre;
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
    result.normal = result.point - centre;
    result.normal.w = 0.f;
    result.normal.normalize();
    return result;
}

RayCollision PlacedShape::segmentIntoBox(const Vec4 &pos, const Vec4 &direction) const
{
    RayCollision result;
    const Vec4 start = intoBox(pos - centre, rotation), along = intoBox(direction, rotation);
    SlabClip slabs;
    for (int axis = 0; axis < 3; ++axis)
        slabs.clip(axis, start[axis], along[axis], 0.5f * extents[axis]);
    result.collided = !slabs.missed && slabs.entry <= slabs.exit;
    result.t = slabs.entry;
    result.point = pos + direction * slabs.entry;
    if (slabs.entryAxis >= 0)
        result.normal = rotation.getColumn(slabs.entryAxis) * (along[slabs.entryAxis] > 0.f ? -1.f : 1.f);
    return result;
}

Vec4 PlacedShape::nearestOnLine(const Vec4 &point) const
{
    const Vec4 along = rotation.getColumn(2);
    const float reach = 0.5f * std::fabs(extents.z);
    return centre + along * std::fmax(std::fmin(along.dot(point - centre), reach), -reach);
}

Vec4 whereEdgesMeet(const BoxEdge &one, const BoxEdge &two)
{
    constexpr float parallel = 0.0001f;
    const Vec4 between = one.middle - two.middle;
    const float lengthOne = one.direction.dot(one.direction), lengthTwo = two.direction.dot(two.direction);
    const float both = one.direction.dot(two.direction);
    const float alongOne = one.direction.dot(between), alongTwo = two.direction.dot(between);
    const float denominator = lengthOne * lengthTwo - both * both;
    if (!(std::fabs(denominator) > parallel))
        return one.middle;
    const float s = (both * alongTwo - lengthTwo * alongOne) / denominator;
    const float t = (lengthOne * alongTwo - both * alongOne) / denominator;
    if (std::fabs(s) > one.reach || std::fabs(t) > two.reach)
        return one.middle;
    return (one.middle + one.direction * s + two.middle + two.direction * t) * 0.5f;
}
