// BoundingVolume: its outline for developers.
#include "physics/BoundingVolume.h"

#include "engine/DebugCollector.h"
#include "engine/GlobalConfigSystem.h"
#include "engine/TransformComponent.h"

namespace
{

/// What stands still is blue, what answers to the player green, the rest yellow.
Vec4 outlineColor(const BoundingVolume &volume)
{
    if (volume.getTrigger() || volume.getInteract())
        return Vec4(0.2f, 1.f, 0.3f, 1.f);
    return volume.getVolumeType() == BoundingVolume::BV_WALL ? Vec4(0.3f, 0.5f, 1.f, 1.f) : Vec4(1.f, 0.9f, 0.2f, 1.f);
}

void drawBox(DebugCollectorComponent &collector, const Matrix4 &toWorld, const Vec4 &extents, const Vec4 &color)
{
    Vec4 corners[8];
    for (int i = 0; i < 8; ++i)
        corners[i] = toWorld * Vec4(extents.x * (i & 1 ? 0.5f : -0.5f), extents.y * (i & 2 ? 0.5f : -0.5f),
                                    extents.z * (i & 4 ? 0.5f : -0.5f), 1.f);
    // Corners differ in one bit of their number along each edge.
    for (int from = 0; from < 8; ++from)
        for (const int axis : {1, 2, 4})
            if (!(from & axis))
                collector.addLine3D(corners[from], corners[from | axis], color);
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

void BoundingVolume::applyDebugDraw(const Handle<DebugCollectorComponent> &dcc)
{
    const GlobalConfigSystem &config = getSystemDeref<GlobalConfigSystem>();
    const auto collector = dcc.lookup();
    if (!collector || !config.getDebugDrawEnabled() || !config.getDebugDrawHitBoxes())
        return;
    TransformComponent *const transform = findTransform();
    if (!transform)
        return;
    if (volumeType == BV_SPHERE)
        drawSphere(*collector, transform->getPosition(), hitBox.x * 0.5f, outlineColor(*this));
    else
        drawBox(*collector, transform->getOrientation().generateRotation(transform->getPosition()), hitBox,
                outlineColor(*this));
}
