// Vector: the operations of Vec4 that need matrices or text.
#include "foundation/Vector.h"

#include "foundation/Matrix4.h"
#include "foundation/Quaternion.h"

static_assert(sizeof(Vec4) == 16);

void Vec4::rotate(Vec4 axis, float angle)
{
    axis.normalize();
    const float sine = std::sin(angle / 2);
    const Quaternion rotation(std::cos(angle / 2), axis.x * sine, axis.y * sine, axis.z * sine);
    *this = rotation.generateRotation() * *this;
}

String Vec4::toString() const
{
    return String::format("Vec4(%g, %g, %g, %g)", x, y, z, w);
}

void makeOrthonormal(Vec4 &x, Vec4 &y, Vec4 &z)
{
    z = x.cross(y);
    if (z.magnitudeSquared() == 0)
        return;
    y = z.cross(x);
    x.normalize();
    y.normalize();
    z.normalize();
}
