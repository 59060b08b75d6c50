// ForceVolumeComponent: its outline and its force for developers.
#include "physics/triggers/ForceVolumeComponent.h"

#include "physics/volumes/BoundingVolume.h"

#include "engine/debug/DebugCollector.h"
#include "engine/debug/DebugShapes.h"
#include "engine/debug/GlobalConfigSystem.h"
#include "engine/transforms/TransformComponent.h"

namespace
{

constexpr int ARROWS = 3;                ///< along each side of the volume
constexpr float METRES_A_NEWTON = 0.03f; ///< gravity, 20 N, is drawn 0.6 m long

} // namespace

void ForceVolumeComponent::applyDebugDraw(const Handle<DebugCollectorComponent> &dcc)
{
    const GlobalConfigSystem &config = getSystemDeref<GlobalConfigSystem>();
    const auto collector = dcc.lookup();
    Field field;
    if (!collector || !config.getDebugDrawEnabled() || !config.getDebugDrawForceVolumes() || !makeField(field))
        return;
    Matrix4 toWorld = field.rotation;
    for (int row = 0; row < 3; ++row)
        toWorld[row][3] = field.centre[row];
    drawBoxEdges(*collector, findBoxCorners(toWorld, field.half * 2.f), forceDebugColor);
    for (int i = 0; i < ARROWS * ARROWS * ARROWS; ++i)
    {
        const auto part = [](int number) { return 2.f * (static_cast<float>(number % ARROWS) + 0.5f) / ARROWS - 1.f; };
        const Vec4 from = field.centre + field.rotation * Vec4(field.half.x * part(i), field.half.y * part(i / ARROWS),
                                                               field.half.z * part(i / (ARROWS * ARROWS)), 0.f);
        drawArrow(*collector, from, field.force * (field.strengthAt(from) * METRES_A_NEWTON), forceDebugColor);
    }
    for (const ProjectileInfo &info : projectiles)
    {
        const auto volume = info.hBoundingVolume.lookup();
        const TransformComponent *const place = volume ? volume->findTransform() : nullptr;
        if (place && info.inVolume)
            drawArrow(*collector, place->getPosition(), info.force * METRES_A_NEWTON, Vec4(1.f, 1.f, 1.f, 1.f));
    }
}
