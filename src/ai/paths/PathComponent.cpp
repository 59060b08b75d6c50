#include "ai/paths/PathComponent.h"

#include "ai/paths/PathManager.h"
#include "physics/grid/SquareGrid.h"

#include "engine/debug/DebugCollector.h"
#include "engine/debug/GlobalConfigSystem.h"
#include "engine/entities/ComponentKeys.h"
#include "engine/levels/Coordinator.h"

namespace
{

constexpr float LIFT = 0.05f;       ///< metres above the cells, so that no floor hides the lines
constexpr float MARK_REACH = 0.25f; ///< of a cell's edge
const Vec4 PATH_COLOR(1.f, 1.f, 0.3f, 1.f);
const Vec4 OPEN_COLOR(0.2f, 1.f, 0.4f, 1.f);
const Vec4 CLOSED_COLOR(0.5f, 0.5f, 0.55f, 1.f);

/// The manager that serves a component's level; invalid outside of a level.
Handle<PathManager> managerOf(PathComponent &component)
{
    const auto level = component.getAncestorOfType<Coordinator>().lookup();
    return handle_cast<PathManager>(level ? level->getManager(ComponentKeys::path) : Handle<AbstractManager>());
}

Vec4 placeOf(const GridCell &cell)
{
    return cell.getWorldCoords() + Vec4(0.f, LIFT, 0.f, 0.f);
}

void drawMarks(DebugCollectorComponent &collector, const HexCont &cells, const Vec4 &color)
{
    for (const GridCell &cell : cells)
    {
        const auto grid = cell.getGrid().lookup();
        if (!grid || !cell.isValid())
            continue;
        const float reach = grid->getCellSize() * MARK_REACH;
        const Vec4 middle = placeOf(cell);
        collector.addLine3D(middle - Vec4(reach, 0.f, 0.f, 0.f), middle + Vec4(reach, 0.f, 0.f, 0.f), color);
        collector.addLine3D(middle - Vec4(0.f, 0.f, reach, 0.f), middle + Vec4(0.f, 0.f, reach, 0.f), color);
    }
}

void drawLine(DebugCollectorComponent &collector, const HexCont &cells, const Vec4 &color)
{
    for (std::size_t i = 1; i < cells.size(); ++i)
        if (cells[i - 1].isValid() && cells[i].isValid())
            collector.addLine3D(placeOf(cells[i - 1]), placeOf(cells[i]), color);
}

} // namespace

void PathComponent::submitPathRequest(PathRequest request)
{
    requestPending = true;
    pathCancelled = false;
    if (const auto manager = managerOf(*this).lookup())
        manager->submitRequest(request);
}

void PathComponent::cancelPathRequest()
{
    if (!requestPending)
        return;
    if (const auto manager = managerOf(*this).lookup())
        manager->removeRequest(handle_cast<Entity>(getParent()));
    requestPending = false;
    status = PS_Unknown;
    pathCancelled = true;
}

void PathComponent::acceptPath(const HexCont &calculatedPath)
{
    path = calculatedPath;
    currPath = path;
    currNode = currPath.size();
}

void PathComponent::acceptOutcome(PathStatus status_)
{
    status = status_;
    requestPending = false;
}

void PathComponent::acceptDebugNodes(const HexCont &openList, const HexCont &closedList, const HexCont &calculatedPath)
{
    debugOpenNodes = openList;
    debugClosedNodes = closedList;
    debugPathNodes = calculatedPath;
}

GridCell PathComponent::getNextPathStep()
{
    return pathRemaining() ? currPath[--currNode] : GridCell();
}

void PathComponent::clearPath()
{
    path.clear();
    currPath.clear();
    currNode = 0;
}

void PathComponent::cancelCurrentPath()
{
    clearPath();
    pathCancelled = true;
}

void PathComponent::applyDebugDraw(const Handle<DebugCollectorComponent> &dcc)
{
    const GlobalConfigSystem &config = getSystemDeref<GlobalConfigSystem>();
    const auto collector = dcc.lookup();
    if (!collector || !config.getDebugDrawEnabled())
        return;
    if (config.getDebugDrawPathInfoEnabled())
        drawLine(*collector, path, PATH_COLOR);
    if (!config.getDebugDrawPathfindingData())
        return;
    drawMarks(*collector, debugOpenNodes, OPEN_COLOR);
    drawMarks(*collector, debugClosedNodes, CLOSED_COLOR);
    drawLine(*collector, debugPathNodes, PATH_COLOR);
}
