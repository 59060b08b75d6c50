// PlanPoint: a point or a direction of a map, seen from above.
#pragma once

#include "foundation/Vector.h"

#include <cmath>

/// A point or a direction in the x/z plane, metres.
struct PlanPoint
{
    float x = 0.f;
    float z = 0.f;

    PlanPoint() = default;
    constexpr PlanPoint(float x, float z) : x(x), z(z) {}
    explicit PlanPoint(const Vec4 &place) : x(place.x), z(place.z) {}

    PlanPoint operator+(const PlanPoint &rhs) const { return PlanPoint(x + rhs.x, z + rhs.z); }
    PlanPoint operator-(const PlanPoint &rhs) const { return PlanPoint(x - rhs.x, z - rhs.z); }
    PlanPoint operator*(float factor) const { return PlanPoint(x * factor, z * factor); }
    float dot(const PlanPoint &rhs) const { return x * rhs.x + z * rhs.z; }
    /// Positive where the other direction lies a quarter turn from +x towards +z.
    float cross(const PlanPoint &rhs) const { return x * rhs.z - z * rhs.x; }
    float length() const { return std::sqrt(x * x + z * z); }
    /// With the length 1; (0, 0) stays.
    PlanPoint unit() const
    {
        const float size = length();
        return size > 0.f ? *this * (1.f / size) : PlanPoint();
    }
    /// A quarter turn from +x towards +z.
    PlanPoint turned() const { return PlanPoint(-z, x); }
};
