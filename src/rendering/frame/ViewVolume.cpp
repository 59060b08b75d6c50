#include "rendering/frame/ViewVolume.h"

#include <algorithm>
#include <cmath>

namespace
{

Vec4 row(const Matrix4 &m, int index)
{
    return Vec4(m[index][0], m[index][1], m[index][2], m[index][3]);
}

/// Four components, unlike the engine's sum of points.
Vec4 combined(const Vec4 &a, const Vec4 &b, float factor)
{
    return Vec4(a.x + factor * b.x, a.y + factor * b.y, a.z + factor * b.z, a.w + factor * b.w);
}

Vec4 normalizedPlane(const Vec4 &plane)
{
    const float length = std::sqrt(plane.dot(plane));
    return length > 0.0f ? Vec4(plane.x / length, plane.y / length, plane.z / length, plane.w / length) : plane;
}

} // namespace

ViewVolume::ViewVolume(const Matrix4 &worldToView, const Matrix4 &projection)
{
    // A clip coordinate is the product of a row of this matrix with a point; what is seen has 0 <= z <= w, |x|, |y| <= w.
    const Matrix4 toClip = projection.transpose() * worldToView;
    const Vec4 x = row(toClip, 0), y = row(toClip, 1), z = row(toClip, 2), w = row(toClip, 3);
    planes = {combined(w, x, 1), combined(w, x, -1), combined(w, y, 1), combined(w, y, -1), z, combined(w, z, -1)};
    for (Vec4 &plane : planes)
        plane = normalizedPlane(plane);
}

void ViewVolume::narrowToCone(const Matrix4 &worldToView, float halfAngle)
{
    const Matrix4 viewToWorld = worldToView.inverse();
    hasCone = true;
    apex = viewToWorld * Vec4(0, 0, 0, 1);
    axis = viewToWorld * Vec4(0, 0, 1, 0);
    cosine = std::cos(halfAngle);
    sine = std::sin(halfAngle);
}

bool ViewVolume::excludes(const Vec4 &centre, float radius) const
{
    for (const Vec4 &plane : planes)
        if (plane.dot(centre) + plane.w < -radius)
            return true;
    return hasCone && isBesideCone(centre, radius);
}

bool ViewVolume::isBesideCone(const Vec4 &centre, float radius) const
{
    const Vec4 offset = centre - apex;
    const float along = offset.dot(axis);
    const float aside = std::sqrt(std::max(offset.dot(offset) - along * along, 0.0f));
    // The distance to the cone's surface, measured across it; behind the apex it is too small, which only keeps more.
    return aside * cosine - along * sine > radius;
}
