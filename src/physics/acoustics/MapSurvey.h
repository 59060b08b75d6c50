// MapSurvey: reads the walls and doors of a map, and notices when they change.
#pragma once

#include "physics/acoustics/DoorPlan.h"
#include "physics/acoustics/WallPlan.h"

#include "object/tree/Handle.h"

#include <cstddef>
#include <cstdint>
#include <vector>

class BoundingVolume;
class MapRootEntity;
class PartitioningGrid;
class PhysicsComponent;
class SquareGrid;

/// What stands in a map that sound meets: its volumes, and the cells of its path grid that are walls.
///
/// Borrows the map for each call. Watching is spread over frames: volumes are compared now and then, cells row by row.
class MapSurvey
{
public:
    /// The most floors of a map.
    static constexpr std::size_t MOST_FLOORS = 8;
    /// Of an ear above its floor, metres: what reaches through here is a wall.
    static constexpr float EAR = 1.5f;
    /// From this value on a cell of the path grid is a wall.
    static constexpr float WALL_VALUE = 1.f;

    /// Whether the map differs from what was read; looks at a part of it in each call.
    bool hasChanged(const Handle<MapRootEntity> &map);
    /// Whether what was read still counts.
    bool isCurrent() const { return isRead; }
    /// Lets it count no more.
    void forget() { isRead = false; }
    /// Reads walls and doors anew.
    void read(const Handle<MapRootEntity> &map, WallPlan &walls, DoorPlan &doors);

    /// Adds a floor above the map's own; false where there are too many.
    bool addFloor(float height);
    /// The floor that a height belongs to, 0 for the lowest.
    int floorAt(float height) const;
    std::size_t getFloorCount() const { return floors.size(); }

private:
    void readFloor(SquareGrid *grid);
    std::uint32_t floorsThrough(float bottom, float top) const;
    /// Walls and leaves among some volumes, and what they are, summed up.
    struct Stock
    {
        std::uint64_t sum = 0; ///< whatever their order
        std::vector<Handle<BoundingVolume>> volumes;
    };

    std::uint64_t takeStock(PartitioningGrid &grid);
    void takeStockOfWalls(PartitioningGrid &grid);
    void take(Stock &stock, const Handle<BoundingVolume> &handle) const;
    std::uint64_t stockOf(BoundingVolume &volume) const;
    void addWall(BoundingVolume &volume, WallPlan &walls) const;
    void addDoor(PhysicsComponent &leaf, const WallPlan &walls, DoorPlan &doors) const;
    void addCells(SquareGrid &grid, WallPlan &walls);

    std::vector<float> floors = {0.f};       ///< heights, ascending, metres
    std::vector<float> addedFloors;          ///< those that a script has added
    int mapFloor = 0;                        ///< which of them is the map's own
    Stock moving;                            ///< as last looked at
    Stock standing;                          ///< among the grid's static volumes, likewise
    std::uint64_t standingChanges = 0;       ///< of those volumes that `standing` takes account of
    std::uint64_t standingObjectChanges = 0; ///< births and deaths, likewise
    std::uint64_t stock = 0;                 ///< of the walls and leaves that were read
    std::vector<std::uint32_t> rowHashes;    ///< of the walls among the cells that were read
    std::uint32_t calls = 0;                 ///< of `hasChanged`
    bool isRead = false;
};
