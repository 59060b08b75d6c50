// Quaternion: construction from directions, integration and the rotation matrix.
#include "foundation/Quaternion.h"

static_assert(sizeof(Quaternion) == 16);

namespace
{

constexpr Vec4 UP(0, 1, 0);
constexpr Vec4 FORWARD(0, 0, 1);

/// Rotation whose frame is made of a direction of length 1 and an up vector.
Quaternion facing(const Vec4 &target, const Vec4 &up)
{
    const Vec4 right = up.cross(target);
    const Vec4 newUp = target.cross(right);
    Matrix4 frame;
    frame.basis(right, newUp, target);
    return frame.toQuaternion();
}

float withoutNoise(float value)
{
    return std::fabs(value) < 1e-6f ? 0.0f : value;
}

} // namespace

Quaternion::Quaternion(Vec4 target)
{
    target.normalize();
    *this = facing(target, UP);
}

Quaternion Quaternion::fromAxisAngle(Vec4 axis, float angle)
{
    axis.w = 0;
    axis.normalize();
    const float sine = std::sin(angle / 2);
    return Quaternion(std::cos(angle / 2), axis.x * sine, axis.y * sine, axis.z * sine);
}

Quaternion Quaternion::fromDirectionWithAdaptingUpVector(Vec4 vec)
{
    constexpr float SINE_OF_45_DEGREES = 1.41421356f * 0.5f;
    vec.normalize();
    return facing(vec, SINE_OF_45_DEGREES > std::fabs(vec.y) ? UP : FORWARD);
}

void Quaternion::normalize()
{
    const float d = r * r + i * i + j * j + k * k;
    if (d == 0)
    {
        r = 1;
        return;
    }
    const float factor = 1 / std::sqrt(d);
    *this = Quaternion(r * factor, i * factor, j * factor, k * factor);
}

void Quaternion::update(const Vec4 &angVel, float frameTime)
{
    Quaternion turn(0, withoutNoise(angVel.x * frameTime), withoutNoise(angVel.y * frameTime),
                    withoutNoise(angVel.z * frameTime));
    turn *= *this;
    r += turn.r * 0.5f;
    i += turn.i * 0.5f;
    j += turn.j * 0.5f;
    k += turn.k * 0.5f;
    normalize();
}

Matrix4 Quaternion::generateRotation() const
{
    return Matrix4(1 - 2 * (j * j + k * k), 2 * (i * j - r * k), 2 * (i * k + r * j), //
                   2 * (i * j + r * k), 1 - 2 * (i * i + k * k), 2 * (j * k - r * i), //
                   2 * (i * k - r * j), 2 * (j * k + r * i), 1 - 2 * (i * i + j * j));
}

Matrix4 Quaternion::generateRotation(const Vec4 &pos) const
{
    Matrix4 result = generateRotation();
    result.data[0][3] = pos.x;
    result.data[1][3] = pos.y;
    result.data[2][3] = pos.z;
    return result;
}
