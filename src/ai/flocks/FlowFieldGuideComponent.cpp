#include "ai/flocks/FlowFieldGuideComponent.h"

#include "ai/flocks/FlowField.h"
#include "ai/paths/Walkways.h"

#include "physics/volumes/FiniteProperty.h"

#include "engine/debug/DebugCollector.h"
#include "engine/debug/DebugShapes.h"
#include "engine/debug/GlobalConfigSystem.h"
#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/Coordinator.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/time/TimeKeeper.h"
#include "engine/time/TimerNames.h"
#include "engine/transforms/TransformComponent.h"
#include "object/tree/WellKnownPaths.h"

#include "foundation/Logger.h"

#include <algorithm>
#include <functional>
#include <limits>

namespace
{

constexpr float NO_WAY = std::numeric_limits<float>::infinity();
constexpr float BESIDE_WALL = 3.f; ///< what a step beside a wall costs, against 1 in the open
constexpr int MOST_DRAWN = 4000;   ///< arrows for developers
constexpr Vec4 FLOW(0.3f, 0.7f, 1.f, 1.f);

} // namespace

void FlowFieldGuideComponent::onMurder()
{
    const auto flows = hFlows.lookup();
    for (std::size_t i = 0; flows && i < laid.size(); ++i)
        if (laid[i])
            flows->setCellValue(static_cast<int>(i) % cols, static_cast<int>(i) / cols, Vec4());
    SimpleComponent::onMurder();
}

void FlowFieldGuideComponent::doFrame()
{
    const auto level = getAncestorOfType<Coordinator>().lookup();
    sinceLook += level ? level->getTimer(TimerNames::master).getFrameTimeSeconds() : 0.0;
    if (!changed && sinceLook < static_cast<Seconds>(interval))
        return;
    sinceLook = 0;
    const Fields fields = findFields();
    if (fields && (noteWalkable(*fields.ways) || changed))
        lay();
}

/// The grids of the map that the component's entity stands in.
FlowFieldGuideComponent::Fields FlowFieldGuideComponent::findFields()
{
    const auto transform = handle_cast<TransformComponent>(getSibling(ComponentKeys::transform)).lookup();
    const auto map = transform ? transform->findMap().lookup() : Handle<MapRootEntity>::Result{};
    Fields fields;
    if (map)
    {
        Walkways::ofMap(getHandle(map.ptr)); // has what stands in the map written into its path grid
        fields.ways = componentOf<SquareGrid>(map->getChild(WellKnownPaths::mainPathGrid), ComponentKeys::grid);
        fields.flows = componentOf<SquareGrid>(map->getChild(WellKnownPaths::flowGrid), ComponentKeys::grid);
    }
    const bool alike = fields.ways && fields.flows && fields.ways->getGridCols() == fields.flows->getGridCols() &&
                       fields.ways->getGridRows() == fields.flows->getGridRows();
    if (!alike && !missingTold)
        KV_LOGF(Logger_::I_ERROR,
                "%s of %s lays no flows: it must stand in a map whose path grid and flow grid have the same cells.",
                getName().toCString(), getParent().toString().toCString());
    missingTold = !alike;
    return alike ? fields : Fields();
}

/// Takes what a step costs from the path grid.
/// @return whether that has changed
bool FlowFieldGuideComponent::noteWalkable(const SquareGrid &grid)
{
    bool isNew = cols != grid.getGridCols() || rows != grid.getGridRows();
    if (isNew)
    {
        cols = grid.getGridCols();
        rows = grid.getGridRows();
        const std::size_t count = static_cast<std::size_t>(cols) * static_cast<std::size_t>(rows);
        costs.assign(count, 0.f);
        ways.assign(count, NO_WAY);
        laid.assign(count, false);
    }
    const auto isFree = [&](int x, int z) { return grid.getCellFloatValue(x, z) == 0.f; };
    for (int z = 0; z < rows; ++z)
        for (int x = 0; x < cols; ++x)
        {
            const bool isClear = isFree(x - 1, z) && isFree(x + 1, z) && isFree(x, z - 1) && isFree(x, z + 1);
            const float cost = !isFree(x, z) ? 0.f : isClear ? 1.f : BESIDE_WALL;
            isNew |= costs[index(x, z)] != cost;
            costs[index(x, z)] = cost;
        }
    return isNew;
}

int FlowFieldGuideComponent::lay()
{
    const Fields fields = findFields();
    if (!fields)
        return 0;
    changed = false;
    hFlows = getHandle(fields.flows);
    noteWalkable(*fields.ways);
    std::fill(ways.begin(), ways.end(), NO_WAY);
    const GridCell end = fields.ways->getCellFromPoint(target);
    if (end.isValid())
        flood(end.getX(), end.getZ(), fields.ways->getCellSize());
    return writeFlows(*fields.flows, target);
}

/// Finds the ways from all cells to one.
void FlowFieldGuideComponent::flood(int startX, int startZ, float cellSize)
{
    if (!isCell(startX, startZ))
        return;
    ways[index(startX, startZ)] = 0.f;
    open.clear();
    open.emplace_back(0.f, static_cast<std::int32_t>(index(startX, startZ)));
    while (!open.empty())
    {
        std::pop_heap(open.begin(), open.end(), std::greater<>());
        const auto [way, cell] = open.back();
        open.pop_back();
        if (way <= ways[static_cast<std::size_t>(cell)])
            spread(cell % cols, cell / cols, cellSize);
    }
}

/// Takes the flood on from a cell; not across the corners of what cannot be walked on.
void FlowFieldGuideComponent::spread(int x, int z, float cellSize)
{
    if (!isCell(x, z))
        return;
    for (int dz = -1; dz <= 1; ++dz)
        for (int dx = -1; dx <= 1; ++dx)
        {
            if ((dx == 0 && dz == 0) || !isOpen(x + dx, z + dz) || !isOpen(x + dx, z) || !isOpen(x, z + dz))
                continue;
            const float length = dx != 0 && dz != 0 ? 1.41421356f : 1.f;
            const std::size_t next = index(x + dx, z + dz);
            const float way = ways[index(x, z)] + length * cellSize * costs[next];
            if (way >= ways[next] || (reach > 0.f && way > reach))
                continue;
            ways[next] = way;
            open.emplace_back(way, static_cast<std::int32_t>(next));
            std::push_heap(open.begin(), open.end(), std::greater<>());
        }
}

/// Down the slope of the ways, with no part that leads across a corner.
Vec4 FlowFieldGuideComponent::directionAt(int x, int z) const
{
    if (!isCell(x, z))
        return Vec4();
    const float own = ways[index(x, z)];
    Vec4 sum, steepest;
    float most = 0.f;
    for (int dz = -1; dz <= 1; ++dz)
        for (int dx = -1; dx <= 1; ++dx)
        {
            if (!isOpen(x + dx, z + dz) || !isOpen(x + dx, z) || !isOpen(x, z + dz))
                continue;
            const Vec4 way(static_cast<float>(dx), 0.f, static_cast<float>(dz));
            const float drop = own - ways[index(x + dx, z + dz)];
            sum += way * std::max(drop, 0.f);
            if (drop > most)
            {
                most = drop;
                steepest = way;
            }
        }
    // Behind what stands in the middle of the way both sides lead on, and against each other.
    Vec4 direction = sum.magnitude() > most / 4 ? sum : steepest;
    direction.normalize();
    return direction;
}

int FlowFieldGuideComponent::writeFlows(SquareGrid &flows, const Vec4 &end)
{
    const Matrix4 toWorld = flows.getTransformationMatrix(0);
    int count = 0;
    for (int z = 0; z < rows; ++z)
        for (int x = 0; x < cols; ++x)
        {
            const std::size_t cell = index(x, z);
            const bool leads = ways[cell] < NO_WAY;
            count += leads;
            if (!leads && !laid[cell])
                continue;
            const Vec4 centre = flows.calcCellWorldCoords(toWorld, static_cast<float>(x), static_cast<float>(z));
            const bool isThere = flatDistance(centre, end) <= targetRadius;
            flows.setCellValue(x, z, leads && !isThere ? directionAt(x, z) : Vec4());
            laid[cell] = leads;
        }
    return count;
}

float FlowFieldGuideComponent::getWayFrom(Vec4 place)
{
    const Fields fields = findFields();
    const GridCell cell = fields ? fields.ways->getCellFromPoint(place) : GridCell();
    return cell.isValid() && cell.getX() < cols && cell.getZ() < rows ? ways[index(cell.getX(), cell.getZ())] : NO_WAY;
}

void FlowFieldGuideComponent::setTarget(Vec4 val)
{
    if (!isUsable(*this, "target", val))
        return;
    changed |= target != val;
    target = val;
}

void FlowFieldGuideComponent::setTargetRadius(float val)
{
    if (!isUsable(*this, "targetRadius", val))
        return;
    changed |= targetRadius != val;
    targetRadius = val;
}

void FlowFieldGuideComponent::setReach(float val)
{
    if (!isUsable(*this, "reach", val))
        return;
    changed |= reach != val;
    reach = val;
}

void FlowFieldGuideComponent::setInterval(float val)
{
    if (isUsable(*this, "interval", val))
        interval = val;
}

void FlowFieldGuideComponent::applyDebugDraw(const Handle<DebugCollectorComponent> &dcc)
{
    const GlobalConfigSystem &config = getSystemDeref<GlobalConfigSystem>();
    const auto collector = dcc.lookup();
    if (!collector || !config.getDebugDrawEnabled() || !config.getDebugFlowFieldInfluenceInfoEnabled())
        return;
    const Fields fields = findFields();
    if (!fields || laid.empty())
        return;
    const Matrix4 toWorld = fields.flows->getTransformationMatrix(0);
    const float length = fields.flows->getCellSize() * 0.6f;
    int drawn = 0;
    for (int z = 0; z < rows; ++z)
        for (int x = 0; x < cols && drawn < MOST_DRAWN; ++x)
        {
            const Vec4 flow = fields.flows->getCellValue(x, z);
            if (!laid[index(x, z)] || flow == Vec4())
                continue;
            drawArrow(*collector,
                      fields.flows->calcCellWorldCoords(toWorld, static_cast<float>(x), static_cast<float>(z)),
                      flow * length, FLOW);
            ++drawn;
        }
}
