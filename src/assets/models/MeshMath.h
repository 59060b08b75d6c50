// MeshMath: the step between the vectors that a vertex stores and the one to calculate with.
#pragma once

#include "assets/models/MeshVectors.h"

#include "foundation/Vector.h"

#include <cmath>

inline Vec4 toDirection(const MeshVector3 &v)
{
    return Vec4(v.x, v.y, v.z, 0);
}

inline Vec4 toPosition(const MeshVector3 &v)
{
    return Vec4(v.x, v.y, v.z, 1);
}

inline MeshVector3 toMeshVector(const Vec4 &v)
{
    return {v.x, v.y, v.z};
}

/// A direction at length 1; `otherwise` when it has no length or is no number.
inline Vec4 toUnit(const Vec4 &direction, const Vec4 &otherwise)
{
    // Scaled first: the square of a very small or large component leaves the range of a float.
    const float largest = std::fmax(std::fabs(direction.x), std::fmax(std::fabs(direction.y), std::fabs(direction.z)));
    if (!(largest > 0) || !std::isfinite(largest))
        return otherwise;
    const Vec4 scaled(direction.x / largest, direction.y / largest, direction.z / largest, 0);
    return scaled / scaled.magnitude();
}

/// A direction at length 1 across `normal`, which has length 1: the x axis made square to it, or the z axis.
inline Vec4 anyAcross(const Vec4 &normal)
{
    const Vec4 axis = std::fabs(normal.x) < 0.8f ? Vec4(1, 0, 0, 0) : Vec4(0, 0, 1, 0);
    return toUnit(axis - normal * normal.dot(axis), axis);
}

/// A direction at length 1, made square to `normal`, which has length 1; any across it when the two are parallel.
inline Vec4 toUnitAcross(const Vec4 &normal, const Vec4 &direction)
{
    const Vec4 unit = toUnit(direction, normal);
    const Vec4 across = unit - normal * normal.dot(unit);
    // Of a parallel direction rounding alone is left, which points anywhere.
    if (across.magnitudeSquared() < 1e-8f)
        return anyAcross(normal);
    const Vec4 once = toUnit(across, unit);
    return toUnit(once - normal * normal.dot(once), once);
}

/// Twice the area of a triangle, along its front's normal when its corners run clockwise.
inline Vec4 faceVector(const MeshVector3 &a, const MeshVector3 &b, const MeshVector3 &c)
{
    return toDirection(b - a).cross(toDirection(c - a));
}
