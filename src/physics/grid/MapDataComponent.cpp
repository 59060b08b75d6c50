#include "physics/grid/MapDataComponent.h"

#include "physics/grid/SquareGrid.h"
#include "physics/volumes/BoundingVolume.h"
#include "physics/grid/PartitioningGrid.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/Coordinator.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/levels/ObjectFromPattern.h"
#include "engine/transforms/ParentFollowerComponent.h"
#include "object/tree/PathBelow.h"
#include "engine/transforms/TransformComponent.h"
#include "object/tree/TreeWalk.h"
#include "object/tree/WellKnownPaths.h"

#include "foundation/Finite.h"
#include "foundation/Logger.h"

#include <algorithm>
#include <cmath>

namespace
{
bool isDerived(const Object &child)
{
    return child.getName().startsWith(WellKnownPaths::mapDataPrefix);
}

/// Whether a name can lead to a child: it is not empty, no path, and no step to the parent or the object itself.
bool namesChild(const String &name)
{
    static const String here = SCS("."), above = SCS("..");
    return !name.empty() && name != here && name != above && std::find(name.begin(), name.end(), '/') == name.end();
}

/// Whether two numbers are equal; what is no number equals itself, since a map would otherwise change in every frame.
bool isSame(float one, float two)
{
    return one == two || (std::isnan(one) && std::isnan(two));
}

bool isSame(const Vec4 &one, const Vec4 &two)
{
    return isSame(one.x, two.x) && isSame(one.y, two.y) && isSame(one.z, two.z) && isSame(one.w, two.w);
}

/// Gives a grid the look in which developers see it: nothing where its value is 0, except for what can be walked on.
void giveDebugLook(SquareGrid &grid, const String &name)
{
    if (name == WellKnownPaths::mainPathGrid)
    {
        grid.setDebugColor0(Vec4(0.1f, 0.5f, 0.2f, 0.5f));
        grid.setDebugColor1(Vec4(0.9f, 0.2f, 0.1f, 1.f));
        return;
    }
    if (name == WellKnownPaths::flowGrid)
        grid.setValueRepresentation(SquareGrid::VECTORFIELD);
    grid.setDebugColor0(Vec4(0.2f, 0.4f, 0.9f, 0.f));
    grid.setDebugColor1(Vec4(0.9f, 0.8f, 0.2f, 1.f));
}

/// Begins a grid with the cells of the one that it depends on.
void beginLike(const Handle<Entity> &hEntity)
{
    static const String mainGridPath = SCS("../") + WellKnownPaths::mainPathGrid + SCS("/") + ComponentKeys::grid;
    const auto entity = hEntity.lookup();
    const Handle<SquareGrid> model = handle_cast<SquareGrid>(entity->getDescendantByPath(mainGridPath));
    const auto main = model.lookup();
    SquareGrid *const grid = componentOf<SquareGrid>(hEntity, ComponentKeys::grid);
    if (!main || !grid || main.ptr == grid)
        return;
    const auto from = componentOf<TransformComponent>(main->getParent(), ComponentKeys::transform);
    const auto to = componentOf<TransformComponent>(hEntity, ComponentKeys::transform);
    if (from && to)
    {
        to->setPosition(from->getPosition());
        to->setScale(from->getScale());
    }
    grid->setCellSize(main->getCellSize());
    grid->updateSize();
}
} // namespace

void MapDataComponent::onLoadComplete()
{
    updateSize();
}

void MapDataComponent::doFrame()
{
    Fit now;
    if (measure(now) && !now.isSame(fitted))
        updateSize();
    const GridCell cell = findPlayerCell();
    playerMovedHex = cell != playerCell;
    playerCell = cell;
}

bool MapDataComponent::Fit::isSame(const Fit &other) const
{
    return ::isSame(position, other.position) && ::isSame(scale, other.scale) && ::isSame(cellSize, other.cellSize);
}

bool MapDataComponent::Fit::isUsable() const
{
    return isFinite(position) && isFinite(scale) && scale.x >= 0.f && scale.y >= 0.f && scale.z >= 0.f;
}

bool MapDataComponent::measure(Fit &fit)
{
    const auto transform = handle_cast<TransformComponent>(getSibling(ComponentKeys::transform)).lookup();
    if (!transform)
        return false;
    fit.position = transform->getPosition();
    fit.scale = transform->getScale();
    fit.cellSize = gridCellSize;
    return true;
}

void MapDataComponent::updateSize()
{
    const auto map = getParent().lookup();
    if (!map || !measure(fitted))
        return;
    const Fit fit = fitted;
    if (!fit.isUsable())
        complainOf(fit, *map);
    if (fit.saysSize())
        fitSlabs(fit);
    fitGrids(*map, fit);
    fitPartitioning(constructPartitioning(WellKnownPaths::partitioningGrid), fit);
}

void MapDataComponent::complainOf(const Fit &fit, const Object &map)
{
    KV_LOGF(Logger_::I_ERROR,
            "The map %s says nothing of its size: its transform's position %s and scale %s must be numbers, and no "
            "scale may be negative. Set them to the map's centre and extent in metres.",
            map.getName().toCString(), fit.position.toString().toCString(), fit.scale.toString().toCString());
}

void MapDataComponent::fitSlabs(const Fit &fit)
{
    static const String floorPattern = SCS("Floor");
    static const String ceilingPattern = SCS("Ceiling");
    fitSlab(constructSlab(WellKnownPaths::floor, floorPattern), fit, -1.f);
    if (fit.scale.y > 0.f)
        fitSlab(constructSlab(WellKnownPaths::ceiling, ceilingPattern), fit, 1.f);
    else if (const auto ceiling = getParent().lookup()->getChild(WellKnownPaths::ceiling).lookup())
        ceiling->murder();
}

/// Lays a floor (side -1) or a ceiling (side 1) against the map's lower or upper face.
void MapDataComponent::fitSlab(const Handle<Entity> &entity, const Fit &fit, float side)
{
    float thickness = 0.f;
    if (BoundingVolume *const volume = componentOf<BoundingVolume>(entity, ComponentKeys::boundingVolume))
    {
        thickness = volume->getHitBox().y;
        volume->setHitBox(Vec4(fit.scale.x, thickness, fit.scale.z, 0.f));
    }
    const Vec4 offset(0.f, side * (fit.scale.y + thickness) * 0.5f, 0.f, 0.f);
    if (ParentFollowerComponent *const follower =
            componentOf<ParentFollowerComponent>(entity, ComponentKeys::parentFollower))
        follower->setPositionOffset(offset);
    if (TransformComponent *const transform = componentOf<TransformComponent>(entity, ComponentKeys::transform))
    {
        transform->setPosition(fit.position + offset);
        transform->setScale(Vec4(fit.scale.x, 1.f, fit.scale.z, 0.f));
    }
}

void MapDataComponent::fitGrids(Object &map, const Fit &fit)
{
    const auto main = constructGrid(WellKnownPaths::mainPathGrid).lookup();
    mainGrid = main ? handle_cast<SquareGrid>(main->getComponent(ComponentKeys::grid)) : Handle<SquareGrid>();
    constructGrid(WellKnownPaths::pathSaturationGrid);
    constructGrid(WellKnownPaths::flowGrid);
    for (auto child = map.children_begin(); child != map.children_end(); ++child)
    {
        const auto entity = handle_cast<Entity>(*child);
        if (entity.isValid() && isDerived(*entity.lookup()))
            fitGrid(entity, fit);
    }
}

/// Lays a grid on the map's lower face, where those who ask it walk. Nothing for a child without one.
void MapDataComponent::fitGrid(const Handle<Entity> &entity, const Fit &fit)
{
    SquareGrid *const grid = componentOf<SquareGrid>(entity, ComponentKeys::grid);
    TransformComponent *const transform = componentOf<TransformComponent>(entity, ComponentKeys::transform);
    if (!grid || !transform)
        return;
    if (fit.saysSize())
    {
        transform->setPosition(fit.position - Vec4(0.f, fit.scale.y * 0.5f, 0.f, 0.f));
        transform->setScale(Vec4(fit.scale.x, 1.f, fit.scale.z, 0.f));
    }
    grid->setCellSize(fit.cellSize);
    grid->updateSize();
}

void MapDataComponent::fitPartitioning(const Handle<Entity> &entity, const Fit &fit)
{
    PartitioningGrid *const grid = componentOf<PartitioningGrid>(entity, ComponentKeys::partitioning);
    if (!grid)
        return;
    if (fit.saysSize())
    {
        grid->setPosition(fit.position);
        grid->setSize(fit.scale);
    }
    grid->updateSize();
}

Handle<Entity> MapDataComponent::constructGrid(String name)
{
    const Handle<Entity> child = constructChild(name);
    const auto entity = child.lookup();
    if (!entity || entity->getComponent(ComponentKeys::grid).isValid())
        return child;
    if (const auto grid =
            handle_cast<SquareGrid>(entity->addComponent(ComponentKeys::grid, SquareGrid::staticType)).lookup())
    {
        giveDebugLook(*grid, name);
        beginLike(child);
    }
    return child;
}

Handle<Entity> MapDataComponent::constructPartitioning(String name)
{
    const Handle<Entity> child = constructChild(name);
    const auto entity = child.lookup();
    if (entity && !entity->getComponent(ComponentKeys::partitioning).isValid())
        entity->addComponent(ComponentKeys::partitioning, PartitioningGrid::staticType);
    return child;
}

/// The map's child of this name; made, with a transform, where it is missing.
Handle<Entity> MapDataComponent::constructChild(const String &name)
{
    const auto map = getParent().lookup();
    if (!map)
        return Handle<Entity>();
    if (!namesChild(name))
    {
        KV_LOGF(Logger_::I_ERROR, "'%s' is no name for a grid below the map %s: it must be one that a child can have.",
                name.toCString(), map->getName().toCString());
        return Handle<Entity>();
    }
    const Handle<Entity> present = handle_cast<Entity>(map->getChild(name));
    if (present.isValid())
        return present;
    const Handle<Entity> made = construct<Entity>(defaultAllocationCategory);
    const auto entity = made.lookup();
    entity->setName(name);
    entity->setParent(getParent());
    entity->addComponent(ComponentKeys::transform, TransformComponent::staticType);
    return made;
}

/// The map's floor or ceiling; built by its script where it is missing.
Handle<Entity> MapDataComponent::constructSlab(const String &name, const String &pattern)
{
    static const String module = SCS("objects.GameObjects");
    const Handle<Object> present = getParent().lookup()->getChild(name);
    const bool stays = present.isValid() && !present.lookup()->isDying();
    return handle_cast<Entity>(stays ? present : buildFromPattern(module, pattern, getParent(), name));
}

void MapDataComponent::setGuideWaypoints(const HexCont &waypoints)
{
    guideWaypoints = waypoints;
    nextWayPoint = 0;
}

GridCell MapDataComponent::getNextWaypoint() const
{
    return nextWayPoint < guideWaypoints.size() ? guideWaypoints[nextWayPoint] : GridCell();
}

void MapDataComponent::wayPointReached()
{
    if (nextWayPoint < guideWaypoints.size())
        ++nextWayPoint;
}

void MapDataComponent::setGridCellSize(float val)
{
    if (val > 0.f && std::isfinite(val))
        gridCellSize = val;
    else
        KV_LOGF(Logger_::I_ERROR,
                "%s cannot have grids with cells of %g m and keeps those of %g m. Set gridCellSize to "
                "a number above 0.",
                pathBelow(nullptr, *this).toCString(), static_cast<double>(val), static_cast<double>(gridCellSize));
}

/// Looks for the player, again only when an object was born or has died.
void MapDataComponent::findPlayer()
{
    const std::uint64_t objectChanges = ObjectMap().getChangeCount();
    if (player.isValid() || searched == objectChanges)
        return;
    searched = objectChanges;
    player = getParent().lookup()->getChild(WellKnownPaths::player);
    const auto level = getAncestorOfType<Coordinator>().lookup();
    if (!player.isValid() && level)
        player = level->getChild(WellKnownPaths::player);
}

GridCell MapDataComponent::findPlayerCell()
{
    const auto grid = mainGrid.lookup();
    if (!grid)
        return GridCell();
    findPlayer();
    TransformComponent *const transform = componentOf<TransformComponent>(player, ComponentKeys::transform);
    return transform ? grid->getCellFromPoint(transform->getPosition()) : GridCell();
}
