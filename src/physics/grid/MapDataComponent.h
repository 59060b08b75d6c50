// MapDataComponent: what a map derives from its size, and where the player stands in it.
#pragma once

#include "physics/grid/GridCell.h"

#include "engine/entities/SimpleComponent.h"

#include "foundation/KVString.h"
#include "foundation/Vector.h"

#include <cstddef>
#include <cstdint>

class Entity;
class SquareGrid;
class TransformComponent;

/// Builds and keeps the children of a map that follow from its size, under the component key "mapData" of its root.
///
/// All of them have names that begin with ".MapData_": they are made anew rather than saved. They are the grids of what
/// can be walked on, ".MapData_mainPathGrid", of how crowded paths are, ".MapData_pathSaturationGrid", and of flows,
/// ".MapData_flowGrid"; ".MapData_partitioningGrid", in which volumes are found; and the script's ".MapData_floor" and
/// ".MapData_ceiling". Also knows the map's waypoints, and the cell of the player: the child "Player" of the map, or
/// else of the level. Metres, in the space in which the transforms of the map's objects hold their numbers.
class MapDataComponent : public SimpleComponent
{
    KV_REFLECTED(MapDataComponent)
public:
    MapDataComponent() = default;

    /// Fits the derived children to the map.
    void onLoadComplete() override;
    /// Fits the derived children to a map whose place or size has changed, and notes the player's cell.
    void doFrame() override;
    /// Draws the way along the waypoints with the switch of path information, and the player's cell with that of path
    /// searches. The grids draw themselves, with the switch of grids.
    void applyDebugDraw(const Handle<DebugCollectorComponent> &dcc) override;

    /// Fits the derived children to the map's transform: its position is the centre, its scale the extent in metres.
    ///
    /// Makes those that are missing. Cells that both sizes have keep their values. A map whose scale was left at 1 says
    /// nothing of its size: its grids keep the place and size that they have, and it is given neither floor nor
    /// ceiling. One without height has no ceiling. A place or size that is no number, or a negative size, is logged as
    /// an error and says nothing either.
    void updateSize();
    /// The map's child of this name with a grid of values; made where it is missing.
    ///
    /// What is no name of a child is logged as an error and gives an invalid handle. One besides the main path grid
    /// depends on that one: it begins with the same place, size and cells.
    Handle<Entity> constructGrid(String name);
    /// The map's child of this name with a partitioning grid; made, with a transform, where it is missing.
    ///
    /// What is no name of a child is logged as an error and gives an invalid handle.
    Handle<Entity> constructPartitioning(String name);

    /// Sets the cells that lead through the map, in order; the first one is the next.
    void setGuideWaypoints(const HexCont &waypoints);
    /// The waypoint to go to; no cell when all have been reached.
    GridCell getNextWaypoint() const;
    /// Goes on to the waypoint behind the next one.
    void wayPointReached();

    /// Whether the player came into another cell between the last two frames of this component.
    bool hasPlayerMoved() const { return playerMovedHex; }
    /// The cell of the main path grid under the player, which the grid need not have; no cell without a player.
    GridCell getPlayerHex() const { return playerCell; }
    /// Edge of a cell of the grids of values, metres.
    float getGridCellSize() const { return gridCellSize; }
    /// Sets the edge of a cell, which counts from the next frame or `updateSize` on.
    ///
    /// What is no positive number is logged as an error and changes nothing.
    void setGridCellSize(float val);

private:
    /// What the derived children follow from.
    struct Fit
    {
        Vec4 position; ///< centre, metres
        Vec4 scale;    ///< extent, metres
        float cellSize = 0.f;

        bool isSame(const Fit &other) const;
        bool isUsable() const;
        bool saysSize() const { return isUsable() && (scale.x != 1.f || scale.z != 1.f); }
    };

    static void complainOf(const Fit &fit, const Object &map);
    bool measure(Fit &fit);
    Handle<Entity> constructChild(const String &name);
    Handle<Entity> constructSlab(const String &name, const String &pattern);
    void fitSlabs(const Fit &fit);
    static void fitSlab(const Handle<Entity> &entity, const Fit &fit, float side);
    static void fitGrid(const Handle<Entity> &entity, const Fit &fit);
    static void fitPartitioning(const Handle<Entity> &entity, const Fit &fit);
    void fitGrids(Object &map, const Fit &fit);
    void findPlayer();
    GridCell findPlayerCell();
    void drawWaypoints(DebugCollectorComponent &collector) const;

    HexCont guideWaypoints;
    std::size_t nextWayPoint = 0; ///< index into guideWaypoints
    GridCell playerCell;
    bool playerMovedHex = false;
    float gridCellSize = 1.f;    ///< metres: about what a person takes
    Fit fitted;                  ///< that the children have now
    Handle<SquareGrid> mainGrid; ///< what can be walked on
    Handle<Object> player;       ///< found so far
    std::uint64_t searched = 0;  ///< births and deaths of objects when a player was looked for last
};
