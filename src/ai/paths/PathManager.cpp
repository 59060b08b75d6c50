#include "ai/paths/PathManager.h"

#include "ai/paths/PathComponent.h"
#include "ai/paths/RubberBand.h"
#include "ai/paths/Walkways.h"
#include "physics/grid/SquareGrid.h"

#include "engine/debug/DebugCollector.h"
#include "engine/debug/GlobalConfigSystem.h"
#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/Coordinator.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/time/TimerNames.h"
#include "engine/transforms/TransformComponent.h"
#include "object/tree/WellKnownPaths.h"

#include "foundation/Logger.h"

#include <algorithm>
#include <cmath>

namespace
{

/// The grid below a map's child of this name; null for none.
SquareGrid *gridOf(const Handle<MapRootEntity> &map, const String &name)
{
    const auto root = map.lookup();
    return root ? componentOf<SquareGrid>(root->getChild(name), ComponentKeys::grid) : nullptr;
}

} // namespace

void PathManager::doFrame()
{
    const auto level = getAncestorOfType<Coordinator>().lookup();
    if (!level)
        return;
    frameSeconds = level->getTimer(TimerNames::master).getFrameTimeSeconds();
    if (!singleStep || frameCount >= stepFrameCount)
    {
        timeSinceSatUpdate += frameSeconds;
        if (timeSinceSatUpdate >= satRelaxTime)
            timeSinceSatUpdate = 0.0;
    }
    processRequest();
    maintainQueue();
}

Handle<AbstractComponent> PathManager::constructComponent(const ReflectorPtr &type)
{
    return constructDerived(type, PathComponent::staticType);
}

void PathManager::removeComponentFromManager(Handle<AbstractComponent>, Handle<Entity> entity)
{
    const auto isHers = [&](const Waiting &waiting) { return waiting.request.hEntity == entity; };
    dropServed();
    pathRequests.erase(std::remove_if(pathRequests.begin(), pathRequests.end(), isHers), pathRequests.end());
}

void PathManager::destroyComponent(Handle<AbstractComponent> component)
{
    const auto doomed = component.lookup();
    if (doomed && !doomed->isDying())
        doomed->murder();
}

void PathManager::maintainQueue()
{
    sortRequests();
    // The urgent ones stand in front and rise no more: a long queue costs what has come in the last second.
    for (std::size_t i = pathRequests.size(); i > firstRequest && pathRequests[i - 1].request.priority < RP_Urgent; --i)
    {
        PathRequest &request = pathRequests[i - 1].request;
        request.timeInQueue += frameSeconds;
        if (!(request.timeInQueue > MAX_REQUEST_WAIT_TIME))
            continue;
        ++request.priority;
        request.timeInQueue = 0.0;
        unsorted = true;
    }
    sortRequests();
}

void PathManager::submitRequest(PathRequest request)
{
    // Sorted when somebody asks for the order: thousands of requests in a frame cost one sorting.
    if (getRequestCount() > 0 && pathRequests.back().request.priority < request.priority)
        unsorted = true;
    pathRequests.push_back(Waiting{request});
}

void PathManager::removeRequest(Handle<Entity> hEntity)
{
    if (!hEntity.isValid())
        return;
    sortRequests();
    const auto first =
        std::find_if(pathRequests.begin() + static_cast<std::ptrdiff_t>(firstRequest), pathRequests.end(),
                     [&](const Waiting &waiting) { return waiting.request.hEntity == hEntity; });
    if (first != pathRequests.end())
        pathRequests.erase(first);
}

PathRequest PathManager::getRequest(int place)
{
    sortRequests();
    return place >= 0 && place < getRequestCount()
               ? pathRequests[firstRequest + static_cast<std::size_t>(place)].request
               : PathRequest();
}

/// Puts the more urgent requests in front; equal ones keep their order.
void PathManager::sortRequests()
{
    if (!unsorted)
        return;
    dropServed();
    for (std::size_t i = 0; i < pathRequests.size(); ++i)
        pathRequests[i].place = i;
    std::sort(pathRequests.begin(), pathRequests.end(), SortObject());
    unsorted = false;
}

void PathManager::dropServed()
{
    pathRequests.erase(pathRequests.begin(), pathRequests.begin() + static_cast<std::ptrdiff_t>(firstRequest));
    firstRequest = 0;
}

PathComponent *PathManager::findComponent(const Handle<Entity> &hEntity) const
{
    return componentOf<PathComponent>(hEntity, ComponentKeys::path);
}

void PathManager::processRequest()
{
    if (prevStatus == PS_Succeeded || prevStatus == PS_Failed)
    {
        handOver();
        currentPath.clear();
        search.clear();
        prevStatus = PS_Unknown;
    }
    if (prevStatus == PS_InProgress)
        return doAStar();
    if (takeRequest())
        doAStar();
}

void PathManager::handOver()
{
    PathComponent *const receiver = findComponent(currRequest.hEntity);
    if (!receiver)
        return;
    receiver->acceptOutcome(prevStatus);
    if (prevStatus == PS_Succeeded)
        receiver->acceptPath(currentPath);
}

/// Takes the next request of a creature that lives and can be told of its path; false where there is none.
bool PathManager::takeRequest()
{
    constexpr std::size_t SERVED_KEPT = 64; // so that a long queue is not moved up for each that is served
    sortRequests();
    while (getRequestCount() > 0)
    {
        currRequest = pathRequests[firstRequest++].request;
        if (getRequestCount() == 0 || (firstRequest > SERVED_KEPT && firstRequest * 2 > pathRequests.size()))
            dropServed();
        if (!findComponent(currRequest.hEntity))
            continue;
        prevStatus = PS_InProgress;
        return true;
    }
    return false;
}

PathManager::Surroundings PathManager::findSurroundings() const
{
    Surroundings around;
    TransformComponent *const transform =
        componentOf<TransformComponent>(currRequest.hEntity, ComponentKeys::transform);
    if (!transform)
        return around;
    const Handle<MapRootEntity> map = transform->findMap();
    around.main = gridOf(map, WellKnownPaths::mainPathGrid);
    around.saturation = gridOf(map, WellKnownPaths::pathSaturationGrid);
    around.ways = Walkways::ofMap(map);
    return around;
}

/// One slice of the search at work.
void PathManager::doAStar()
{
    const Surroundings around = findSurroundings();
    if (!around.main)
    {
        prevStatus = PS_Failed;
        return;
    }
    PathGround ground{*around.main, around.saturation};
    if (search.isEmpty() && !beginSearch(ground))
    {
        prevStatus = PS_Failed;
        return;
    }
    if (singleStep && frameCount < stepFrameCount)
    {
        ++frameCount;
        return;
    }
    frameCount = 0;
    if (!around.ways || around.ways->getThingCount() == 0)
        return searchOn(ground);
    const GridCell start = search.getStart();
    const WalkRule rule(*around.ways, Walker::of(currRequest.hEntity), start.getX(), start.getZ());
    ground.rule = &rule;
    searchOn(ground);
}

void PathManager::searchOn(const PathGround &ground)
{
    prevStatus = search.run(ground, MAX_PASSES_PER_FRAME);
    if (prevStatus == PS_Succeeded)
        finishPath(ground);
    const GlobalConfigSystem &config = getSystemDeref<GlobalConfigSystem>();
    if (config.getDebugDrawEnabled() && config.getDebugDrawPathfindingData())
        showSearch();
}

bool PathManager::beginSearch(const PathGround &ground)
{
    const TransformComponent &transform =
        *componentOf<TransformComponent>(currRequest.hEntity, ComponentKeys::transform);
    const GridCell start = ground.main.getCellFromPoint(transform.getPosition());
    return start.isValid() && search.begin(ground, start, currRequest.destination);
}

/// Marks the path that was found, pulls it tight and keeps it for the creature.
void PathManager::finishPath(const PathGround &ground)
{
    PathNode *const finalNode = search.layOutPath();
    std::size_t count = 0;
    for (const PathNode *node = finalNode; node; node = node->parent, ++count)
        if (currRequest.saturation && ground.saturation)
            saturation.mark(*ground.saturation, node->hex.getX(), node->hex.getZ(), maxSatMapVal);
    if (count >= 3 && currRequest.rubberbanding)
        doRubberbanding(ground.main, finalNode, ground.rule);
    for (const PathNode *node = finalNode; node; node = node->parent)
        currentPath.push_back(node->hex);
}

/// Gives the creature the cells of its search, to draw them.
void PathManager::showSearch()
{
    PathComponent *const receiver = findComponent(currRequest.hEntity);
    if (!receiver)
        return;
    HexCont open, closed;
    search.listCells(true, open);
    search.listCells(false, closed);
    receiver->acceptDebugNodes(open, closed, currentPath);
}

void PathManager::setMaxSatMapVal(float val)
{
    if (val > 0.f && std::isfinite(val))
        maxSatMapVal = val;
    else
        KV_LOGF(Logger_::I_ERROR,
                "%s: a path cannot add %g to its cells; it adds %g as before. Set maxSatMapVal to a "
                "number above 0.",
                getName().toCString(), static_cast<double>(val), static_cast<double>(maxSatMapVal));
}

void PathManager::setSatRelaxTime(double time)
{
    if (time > 0.0 && std::isfinite(time))
        satRelaxTime = time;
    else
        KV_LOGF(Logger_::I_ERROR,
                "%s: the saturation's clock cannot beat every %g seconds; it beats every %g as "
                "before. Set satRelaxTime to a number above 0.",
                getName().toCString(), time, satRelaxTime);
}

bool PathManager::moveCutsCorner(const PathNode &parentNode, const GridCell &nextHex)
{
    const GridCell &from = parentNode.hex;
    if (from.getX() == nextHex.getX() || from.getZ() == nextHex.getZ())
        return false;
    return !isWalkable(GridCell(from.getGrid(), nextHex.getX(), from.getZ())) ||
           !isWalkable(GridCell(from.getGrid(), from.getX(), nextHex.getZ()));
}

bool PathManager::isValidMove(const GridCell &hex1, const GridCell &hex2)
{
    return isWalkable(hex1) && isWalkable(hex2);
}

void PathManager::updateSatMap(Handle<SquareGrid> pSatMap)
{
    if (const auto grid = pSatMap.lookup())
        PathSaturation::updateSatMap(*grid, maxSatMapVal);
}

bool PathManager::sampleSatMap(Handle<SquareGrid> pSatMap, const GridCell &hex) const
{
    const auto grid = pSatMap.lookup();
    return grid && PathSaturation::sampleSatMap(*grid, hex, maxSatMapVal);
}

void PathManager::applyDebugDraw(const Handle<DebugCollectorComponent> &dcc)
{
    const GlobalConfigSystem &config = getSystemDeref<GlobalConfigSystem>();
    const auto collector = dcc.lookup();
    if (!collector || !config.getDebugDrawEnabled() || !config.getDebugDrawGridsEnabled() ||
        !config.getDebugDrawPathfindingData())
        return;
    if (SquareGrid *const grid = findSurroundings().saturation)
        colorSaturationMap(*collector, *grid);
}

/// Puts a cross on each cell that paths have marked, from yellow for a little to red for all that a cell can have.
void PathManager::colorSaturationMap(DebugCollectorComponent &collector, SquareGrid &grid) const
{
    constexpr float REACH = 0.3f, LIFT = 0.04f; // of a cell, and metres
    const Matrix4 toWorld = grid.getTransformationMatrix(0);
    int drawn = 0;
    for (int z = 0; z < grid.getGridRows(); ++z)
        for (int x = 0; x < grid.getGridCols() && drawn < SquareGrid::MOST_DRAWN_CELLS; ++x)
        {
            const float value = grid.getCellFloatValue(x, z);
            if (!(value > 0.f))
                continue;
            const Vec4 color(1.f, 1.f - saturate(value / (2.f * maxSatMapVal)), 0.1f, 1.f);
            const float column = static_cast<float>(x), row = static_cast<float>(z);
            const Vec4 lift(0.f, LIFT, 0.f, 0.f);
            collector.addLine3D(lift + grid.calcCellWorldCoords(toWorld, column - REACH, row - REACH),
                                lift + grid.calcCellWorldCoords(toWorld, column + REACH, row + REACH), color);
            collector.addLine3D(lift + grid.calcCellWorldCoords(toWorld, column - REACH, row + REACH),
                                lift + grid.calcCellWorldCoords(toWorld, column + REACH, row - REACH), color);
            ++drawn;
        }
}
