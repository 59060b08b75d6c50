#include "physics/volumes/Plane.h"

Plane::Plane(const Vec4 &one, const Vec4 &two, const Vec4 &three)
    : normal((two - one).cross(three - one)), points{one, two, three}
{
    normal.normalize();
    d = -normal.dot(one);
}

RayCollision Plane::planeToLineSegment(const Vec4 &pos, const Vec4 &direction) const
{
    RayCollision result;
    const float along = normal.dot(direction);
    if (along == 0.f)
        return result;
    result.t = -(normal.dot(pos) + d) / along;
    result.collided = result.t >= 0.f && result.t <= 1.f;
    result.point = pos + direction * result.t;
    result.normal = normal;
    return result;
}
