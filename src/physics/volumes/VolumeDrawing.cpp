#include "physics/volumes/VolumeDrawing.h"

#include "physics/volumes/VolumeTraits.h"

#include "engine/debug/DebugCollector.h"
#include "engine/debug/DebugShapes.h"

#include <cmath>

namespace
{

/// Of what answers to the player: a trigger, or what he can use.
const Vec4 ANSWER_COLOR(0.2f, 1.f, 0.3f, 1.f);

/// A short line from each corner towards the middle: walls are large, and whole diagonals would fill the picture.
void markCorners(DebugCollectorComponent &collector, const BoxCorners &corners, const Vec4 &color)
{
    constexpr float length = 0.25f; // metres
    for (std::size_t from = 0; from < corners.size(); ++from)
    {
        const Vec4 inwards = (corners[7 - from] - corners[from]) * 0.5f;
        const float way = inwards.magnitude();
        collector.addLine3D(corners[from], corners[from] + inwards * (way > length ? length / way : 1.f), color);
    }
}

/// Three great circles, one about each axis.
void drawSphere(DebugCollectorComponent &collector, const Vec4 &centre, float radius, const Vec4 &color)
{
    constexpr int parts = 24;
    for (int axis = 0; axis < 3; ++axis)
    {
        const auto onCircle = [&](int part)
        {
            const float angle = 2.f * PI * static_cast<float>(part) / parts;
            Vec4 point = centre;
            point[(axis + 1) % 3] += radius * std::cos(angle);
            point[(axis + 2) % 3] += radius * std::sin(angle);
            return point;
        };
        for (int part = 0; part < parts; ++part)
            collector.addLine3D(onCircle(part), onCircle(part + 1), color);
    }
}

} // namespace

void drawVolume(DebugCollectorComponent &collector, const VolumeTraits &traits, const Matrix4 &toWorld,
                const Vec4 &hitBox, bool answers)
{
    const Vec4 color = traits.debugColor, place = toWorld.getColumn(3);
    const BoxCorners corners = findBoxCorners(toWorld, hitBox);
    if (traits.shape == VolumeTraits::BALL)
        drawSphere(collector, place, hitBox.x * 0.5f, color);
    else if (traits.shape == VolumeTraits::LINE)
    {
        const Vec4 half = toWorld.getColumn(2) * (0.5f * hitBox.z);
        collector.addLine3D(place - half, place + half, color);
    }
    else
        drawBoxEdges(collector, corners, color);
    if (answers)
        markCorners(collector, corners, ANSWER_COLOR);
}
