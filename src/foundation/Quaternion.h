// Quaternion: rotations in space.
#pragma once

#include "foundation/Matrix4.h"
#include "foundation/Vector.h"
#include "port/d3dx9/D3DXMath.h"

#include <cmath>

/// Used for determining the rotation of an object.
class Quaternion
{
public:
    float r; ///< real part
    float i;
    float j;
    float k;

    constexpr Quaternion(float r = 1, float i = 0, float j = 0, float k = 0) : r(r), i(i), j(j), k(k) {}
    /// Rotation that faces along a direction, with +y as up vector.
    explicit Quaternion(Vec4 target);
    explicit Quaternion(const D3DXQUATERNION &rotation) : r(rotation.w), i(rotation.x), j(rotation.y), k(rotation.z) {}

    /// Rotation by an angle around an axis.
    /// @param axis   need not be normalised; its w is ignored
    /// @param angle  radians
    static Quaternion fromAxisAngle(Vec4 axis, float angle);
    /// Rotation that faces along a direction; nearly straight up or down, +z serves as up vector.
    static Quaternion fromDirectionWithAdaptingUpVector(Vec4 vec);

    /// Makes the length 1; where it is exactly 0, r becomes 1.
    void normalize();
    /// clamp the quaternion to try to reduce floating point error
    void clamp()
    {
        for (float *component : {&r, &i, &j, &k})
            if (*component > -1e-6f && *component < 1e-6f)
                *component = 0;
    }
    /// updates the quaternion by the angular velocity
    /// @param angVel     radians a second
    /// @param frameTime  seconds
    void update(const Vec4 &angVel, float frameTime);

    Quaternion inverse() const
    {
        const float d = r * r + i * i + j * j + k * k;
        return Quaternion(r / d, -i / d, -j / d, -k / d);
    }
    Matrix4 generateRotation() const;
    /// Rotation matrix with a non-origin center.
    Matrix4 generateRotation(const Vec4 &pos) const;
    D3DXQUATERNION directXQuaternion() const { return {i, j, k, r}; }

    friend Quaternion operator*(const Quaternion &lhs, const Quaternion &rhs)
    {
        return Quaternion(lhs.r * rhs.r - lhs.i * rhs.i - lhs.j * rhs.j - lhs.k * rhs.k,
                          lhs.r * rhs.i + lhs.i * rhs.r + lhs.j * rhs.k - lhs.k * rhs.j,
                          lhs.r * rhs.j + lhs.j * rhs.r + lhs.k * rhs.i - lhs.i * rhs.k,
                          lhs.r * rhs.k + lhs.k * rhs.r + lhs.i * rhs.j - lhs.j * rhs.i);
    }
    /// Product whose left operand is clamped first, unlike that of `*`.
    Quaternion &operator*=(const Quaternion &rhs)
    {
        Quaternion left = *this;
        left.clamp();
        return *this = left * rhs;
    }
    /// Whether each component differs by at most 1e-6.
    friend bool operator==(const Quaternion &lhs, const Quaternion &rhs)
    {
        return std::fabs(lhs.r - rhs.r) <= 1e-6f && std::fabs(lhs.i - rhs.i) <= 1e-6f &&
               std::fabs(lhs.j - rhs.j) <= 1e-6f && std::fabs(lhs.k - rhs.k) <= 1e-6f;
    }
    friend bool operator!=(const Quaternion &lhs, const Quaternion &rhs) { return !(lhs == rhs); }
};

/// Rotation between a (t 0) and b (t 1) on the shorter arc, normalised.
template <class Factor>
Quaternion lerp(const Quaternion &a, const Quaternion &b, Factor t)
{
    const float dot = a.r * b.r + a.i * b.i + a.j * b.j + a.k * b.k;
    const float u = static_cast<float>(t);
    const float toB = dot < 0 ? -u : u;
    const float toA = 1.0f - u;
    Quaternion result(a.r * toA + b.r * toB, a.i * toA + b.i * toB, a.j * toA + b.j * toB, a.k * toA + b.k * toB);
    result.normalize();
    return result;
}
