#include "engine/debug/DebugShapes.h"

#include "engine/debug/DebugCollector.h"

#include "foundation/Matrix4.h"

#include <cmath>

BoxCorners findBoxCorners(const Matrix4 &toWorld, const Vec4 &extents)
{
    BoxCorners corners;
    for (std::size_t i = 0; i < corners.size(); ++i)
        corners[i] = toWorld * Vec4(extents.x * (i & 1 ? 0.5f : -0.5f), extents.y * (i & 2 ? 0.5f : -0.5f),
                                    extents.z * (i & 4 ? 0.5f : -0.5f), 1.f);
    return corners;
}

void drawBoxEdges(DebugCollectorComponent &collector, const BoxCorners &corners, const Vec4 &color)
{
    // Corners differ in one bit of their number along each edge.
    for (std::size_t from = 0; from < corners.size(); ++from)
        for (const std::size_t axis : {1u, 2u, 4u})
            if (!(from & axis))
                collector.addLine3D(corners[from], corners[from | axis], color);
}

void drawArrow(DebugCollectorComponent &collector, const Vec4 &from, const Vec4 &along, const Vec4 &color)
{
    constexpr float head = 0.25f, barb = 0.15f; // of the length
    const Vec4 tip = from + along;
    collector.addLine3D(from, tip, color);
    Vec4 side =
        along.cross(std::fabs(along.y) > std::fabs(along.x) ? Vec4(1.f, 0.f, 0.f, 0.f) : Vec4(0.f, 1.f, 0.f, 0.f));
    side.normalize();
    side *= barb * along.magnitude();
    for (const float sign : {-1.f, 1.f})
        collector.addLine3D(tip, tip - along * head + side * sign, color);
}
