#include "ai/flocks/FlowField.h"

#include "engine/debug/DebugCollector.h"
#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/transforms/TransformComponent.h"
#include "object/tree/WellKnownPaths.h"

#include <numbers>

Handle<SquareGrid> findFlowField(TransformComponent &transform)
{
    const auto map = transform.findMap().lookup();
    if (!map)
        return Handle<SquareGrid>();
    return getHandle(componentOf<SquareGrid>(map->getChild(WellKnownPaths::flowGrid), ComponentKeys::grid));
}

float flatDistance(const Vec4 &one, const Vec4 &other)
{
    return std::hypot(one.x - other.x, one.z - other.z);
}

void layPerimeter(const Vec4 &centre, float radius, std::vector<Vec4> &points)
{
    constexpr int POINTS = 24;
    points.clear();
    if (!(radius > 0.f))
        return;
    for (int i = 0; i < POINTS; ++i)
    {
        const float angle = 2 * std::numbers::pi_v<float> * static_cast<float>(i) / POINTS;
        points.push_back(centre + Vec4(radius * std::cos(angle), 0.f, radius * std::sin(angle), 0.f));
    }
}

void drawPerimeter(DebugCollectorComponent &collector, const std::vector<Vec4> &points, const Vec4 &color)
{
    for (std::size_t i = 0; i < points.size(); ++i)
        collector.addLine3D(points[i], points[(i + 1) % points.size()], color);
}
