// MapDataComponent: its waypoints and the player's cell for developers.
#include "physics/grid/MapDataComponent.h"

#include "physics/grid/SquareGrid.h"

#include "engine/debug/DebugCollector.h"
#include "engine/debug/GlobalConfigSystem.h"

namespace
{
constexpr float POST_HEIGHT = 1.f; ///< metres
constexpr float LIFT = 0.03f;      ///< metres above the cells, so that neither floor nor grid hides the outline
const Vec4 WAY_COLOR(0.2f, 0.8f, 0.9f, 1.f);
const Vec4 NEXT_COLOR(1.f, 1.f, 0.3f, 1.f);
const Vec4 PLAYER_COLOR(1.f, 0.5f, 0.9f, 1.f);

void drawOutline(DebugCollectorComponent &collector, const GridCell &cell)
{
    const auto grid = cell.getGrid().lookup();
    if (!grid || !cell.isValid())
        return;
    constexpr float corners[5][2] = {{-0.5f, -0.5f}, {0.5f, -0.5f}, {0.5f, 0.5f}, {-0.5f, 0.5f}, {-0.5f, -0.5f}};
    const auto corner = [&](int i)
    {
        return Vec4(0.f, LIFT, 0.f, 0.f) + grid->getCellWorldCoords(static_cast<float>(cell.getX()) + corners[i][0],
                                                                    static_cast<float>(cell.getZ()) + corners[i][1]);
    };
    for (int i = 0; i < 4; ++i)
        collector.addLine3D(corner(i), corner(i + 1), PLAYER_COLOR);
}
} // namespace

void MapDataComponent::applyDebugDraw(const Handle<DebugCollectorComponent> &dcc)
{
    const GlobalConfigSystem &config = getSystemDeref<GlobalConfigSystem>();
    const auto collector = dcc.lookup();
    if (!collector || !config.getDebugDrawEnabled())
        return;
    if (config.getDebugDrawPathInfoEnabled())
        drawWaypoints(*collector);
    if (config.getDebugDrawPathfindingData())
        drawOutline(*collector, playerCell);
}

/// A post on every waypoint that its grid has, and lines from one to the next.
void MapDataComponent::drawWaypoints(DebugCollectorComponent &collector) const
{
    for (std::size_t i = 0; i < guideWaypoints.size(); ++i)
    {
        if (!guideWaypoints[i].isValid())
            continue;
        const Vec4 foot = guideWaypoints[i].getWorldCoords();
        collector.addLine3D(foot, foot + Vec4(0.f, POST_HEIGHT, 0.f, 0.f), i == nextWayPoint ? NEXT_COLOR : WAY_COLOR);
        if (i > 0 && guideWaypoints[i - 1].isValid())
            collector.addLine3D(guideWaypoints[i - 1].getWorldCoords(), foot, WAY_COLOR);
    }
}
