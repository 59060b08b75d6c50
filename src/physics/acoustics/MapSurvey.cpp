#include "physics/acoustics/MapSurvey.h"

#include "physics/bodies/PhysicsComponent.h"
#include "physics/doors/DoorPhysics.h"
#include "physics/doors/SlidingDoorPhysics.h"
#include "physics/grid/PartitioningGrid.h"
#include "physics/grid/SquareGrid.h"
#include "physics/volumes/BoundingVolume.h"
#include "physics/volumes/OrientedBox.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/transforms/TransformComponent.h"
#include "object/tree/WellKnownPaths.h"

#include "foundation/Finite.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace
{

constexpr std::uint32_t STOCK_EVERY = 32;   ///< calls: half a second until a wall that moved stands elsewhere
constexpr std::uint32_t STOCK_AT_FIRST = 4; ///< calls that look at once: a map's volumes come into its grid by and by
constexpr float UPRIGHT = 0.999f;           ///< share of an axis along y

SquareGrid *pathGridOf(const Handle<MapRootEntity> &map)
{
    const auto root = map.lookup();
    return root ? componentOf<SquareGrid>(root->getChild(WellKnownPaths::mainPathGrid), ComponentKeys::grid) : nullptr;
}

bool isLeaf(const Handle<Object> &body)
{
    return handle_cast<DoorPhysics>(body).isValid() || handle_cast<SlidingDoorPhysics>(body).isValid();
}

bool isWall(const SquareGrid &grid, int x, int z)
{
    return !(grid.getCellFloatValue(x, z) < MapSurvey::WALL_VALUE);
}

std::uint32_t hashRow(const SquareGrid &grid, int z)
{
    std::uint32_t hash = static_cast<std::uint32_t>(grid.getGridCols());
    for (int x = 0; x < grid.getGridCols(); ++x)
        hash = hash * 31u + isWall(grid, x, z);
    return hash;
}

void mix(std::uint64_t &hash, const Vec4 &numbers)
{
    for (const float number : {numbers.x, numbers.y, numbers.z, numbers.w})
        hash = (hash ^ std::bit_cast<std::uint32_t>(number)) * 0x100000001b3u;
}

/// A leaf as it stands when it is closed.
struct ClosedPose
{
    Vec4 middle;
    Quaternion turn;
};

ClosedPose closedPose(PhysicsComponent &leaf)
{
    const Handle<PhysicsComponent> handle = getHandle(&leaf);
    if (const auto hinged = handle_cast<DoorPhysics>(handle).lookup())
        return ClosedPose{hinged->getClosedMiddle(), hinged->getClosedTurn()};
    BoundingVolume *const volume = leaf.findVolume();
    const TransformComponent *const place = volume ? volume->findTransform() : nullptr;
    const auto sliding = handle_cast<SlidingDoorPhysics>(handle).lookup();
    return place && sliding ? ClosedPose{sliding->getClosedMiddle(), place->getOrientation()} : ClosedPose();
}

/// All cells of a grid.
CellRect wholeOf(const PartitioningGrid &grid)
{
    return CellRect{0, 0, grid.getColumns() - 1, grid.getRows() - 1};
}

/// The box around a volume as seen from above; its own sides where it stands upright.
WallBox boxOf(const OrientedBox &box)
{
    WallBox wall;
    wall.middle = PlanPoint(box.centre);
    float height = 0.f;
    for (int axis = 0; axis < 3; ++axis)
        height += std::fabs(box.axes[axis].y) * box.half[axis];
    wall.bottom = box.centre.y - height;
    wall.top = box.centre.y + height;
    for (int up = 0; up < 3; ++up)
    {
        if (std::fabs(box.axes[up].y) < UPRIGHT)
            continue;
        wall.along = PlanPoint(box.axes[(up + 1) % 3]).unit();
        wall.halfAlong = box.half[(up + 1) % 3];
        wall.halfAcross = box.half[(up + 2) % 3];
        return wall;
    }
    wall.along = PlanPoint(1.f, 0.f);
    for (int axis = 0; axis < 3; ++axis)
    {
        wall.halfAlong += std::fabs(box.axes[axis].x) * box.half[axis];
        wall.halfAcross += std::fabs(box.axes[axis].z) * box.half[axis];
    }
    return wall;
}

} // namespace

bool MapSurvey::addFloor(float height)
{
    if (addedFloors.size() + 1 >= MOST_FLOORS)
        return false;
    addedFloors.push_back(height);
    isRead = false;
    return true;
}

int MapSurvey::floorAt(float height) const
{
    constexpr float STEP = 0.3f; // metres: who stands on a stair's first step belongs to the floor above it
    int floor = 0;
    while (static_cast<std::size_t>(floor) + 1 < floors.size() &&
           floors[static_cast<std::size_t>(floor) + 1] <= height + STEP)
        ++floor;
    return floor;
}

std::uint32_t MapSurvey::floorsThrough(float bottom, float top) const
{
    std::uint32_t bits = 0;
    for (std::size_t floor = 0; floor < floors.size(); ++floor)
        if (bottom <= floors[floor] + EAR && top >= floors[floor] + EAR)
            bits |= 1u << floor;
    return bits;
}

bool MapSurvey::hasChanged(const Handle<MapRootEntity> &map)
{
    if (!isRead)
        return true;
    const std::uint32_t call = calls++;
    const SquareGrid *const cells = pathGridOf(map);
    const std::size_t rows = cells ? static_cast<std::size_t>(cells->getGridRows()) : 0;
    if (rows != rowHashes.size())
        return true;
    if (rows > 0 && rowHashes[call % rows] != hashRow(*cells, static_cast<int>(call % rows)))
        return true;
    const auto grid = PartitioningGrid::ofMap(map).lookup();
    const bool isDue = call < STOCK_AT_FIRST || call % STOCK_EVERY == 0;
    return isDue && (grid ? takeStock(*grid) : 0) != stock;
}

/// Lists walls and leaves, and sums up what they are.
std::uint64_t MapSurvey::takeStock(PartitioningGrid &grid)
{
    moving.sum = 0;
    moving.volumes.clear();
    grid.forEachMovingVolume(wholeOf(grid), [&](const Handle<BoundingVolume> &handle) { take(moving, handle); });
    takeStockOfWalls(grid);
    return moving.sum + standing.sum;
}

/// Looks at the many that hardly ever change only where any of them did.
void MapSurvey::takeStockOfWalls(PartitioningGrid &grid)
{
    const std::uint64_t objectChanges = ObjectMap().getChangeCount();
    if (standingChanges == grid.getStaticChanges() && standingObjectChanges == objectChanges && isRead)
        return;
    standingChanges = grid.getStaticChanges();
    standingObjectChanges = objectChanges;
    standing.sum = 0;
    standing.volumes.clear();
    grid.forEachStaticVolume(wholeOf(grid), [&](const Handle<BoundingVolume> &handle) { take(standing, handle); });
}

void MapSurvey::take(Stock &taken, const Handle<BoundingVolume> &handle) const
{
    const auto volume = handle.lookup();
    const std::uint64_t own = volume ? stockOf(*volume) : 0;
    if (own == 0)
        return;
    taken.sum += own;
    taken.volumes.push_back(handle);
}

/// What a wall or a closed leaf is, as a number; 0 for all else.
std::uint64_t MapSurvey::stockOf(BoundingVolume &volume) const
{
    // Without a body beside it a volume stops nobody: it only says where something is drawn.
    const bool isWallVolume = volume.getVolumeType() == BoundingVolume::BV_WALL && volume.findPhysics();
    const bool isLeafVolume = !isWallVolume && volume.getVolumeType() == BoundingVolume::BV_DOOR;
    const TransformComponent *const place = isWallVolume || isLeafVolume ? volume.findTransform() : nullptr;
    if (!place || volume.isDying())
        return 0;
    std::uint64_t hash = 0xcbf29ce484222325u;
    mix(hash, volume.getHitBox());
    if (isLeafVolume)
    {
        PhysicsComponent *const leaf = volume.findPhysics();
        if (!leaf || !isLeaf(getHandle(leaf)))
            return 0;
        const Vec4 shut = closedPose(*leaf).middle * 20.f; // its swing comes back within a rounding
        mix(hash, Vec4(std::round(shut.x), std::round(shut.y), std::round(shut.z), 0.f) + Vec4()); // no -0
        return (hash ^ getHandle(&volume).getNumber()) | 1u;
    }
    const Quaternion turn = place->getOrientation();
    mix(hash, place->getPosition());
    mix(hash, Vec4(turn.r, turn.i, turn.j, turn.k));
    return hash | 1u;
}

void MapSurvey::read(const Handle<MapRootEntity> &map, WallPlan &walls, DoorPlan &doors)
{
    SquareGrid *const cells = pathGridOf(map);
    const auto grid = PartitioningGrid::ofMap(map).lookup();
    readFloor(cells);
    walls.clear();
    doors.clear();
    const std::size_t countBefore = moving.volumes.size() + standing.volumes.size();
    moving = standing = Stock();
    stock = grid ? takeStock(*grid) : 0;
    // What slides along would have all read anew in each frame.
    const bool onlyMoved = moving.volumes.size() + standing.volumes.size() == countBefore;
    std::vector<Handle<BoundingVolume>> volumes = moving.volumes;
    volumes.insert(volumes.end(), standing.volumes.begin(), standing.volumes.end());
    std::sort(volumes.begin(), volumes.end());
    volumes.erase(std::unique(volumes.begin(), volumes.end()), volumes.end());
    for (const Handle<BoundingVolume> &volume : volumes)
        if (volume.lookup()->getVolumeType() == BoundingVolume::BV_WALL)
            addWall(*volume.lookup(), walls);
    rowHashes.clear();
    if (cells)
        addCells(*cells, walls);
    walls.layOut();
    for (const Handle<BoundingVolume> &volume : volumes)
        if (PhysicsComponent *const leaf = volume.lookup()->findPhysics(); leaf && isLeaf(getHandle(leaf)))
            addDoor(*leaf, walls, doors);
    doors.readLeaves();
    isRead = true;
    calls = onlyMoved ? STOCK_AT_FIRST : 1;
}

/// The map's own floor is where its path grid lies.
void MapSurvey::readFloor(SquareGrid *grid)
{
    const Vec4 middle = grid ? grid->getTransformationMatrix(0).getColumn(3) : Vec4();
    const float own = std::isfinite(middle.y) ? middle.y : 0.f;
    floors = addedFloors;
    floors.push_back(own);
    std::sort(floors.begin(), floors.end());
    mapFloor = static_cast<int>(std::lower_bound(floors.begin(), floors.end(), own) - floors.begin());
}

void MapSurvey::addWall(BoundingVolume &volume, WallPlan &walls) const
{
    const TransformComponent &place = *volume.findTransform();
    if (!isFinite(place.getPosition()) || !isFinite(place.getOrientation()) || !isFinite(volume.getHitBox()))
        return;
    OrientedBox box(place.getOrientation().generateRotation(), place.getPosition(), volume.getHitBox());
    for (int axis = 0; axis < 3; ++axis)
        box.half[axis] = std::fabs(box.half[axis]);
    WallBox wall = boxOf(box);
    wall.floors = floorsThrough(wall.bottom, wall.top);
    walls.add(wall);
}

void MapSurvey::addDoor(PhysicsComponent &leaf, const WallPlan &walls, DoorPlan &doors) const
{
    const BoundingVolume &volume = *leaf.findVolume();
    const auto [middle, turn] = closedPose(leaf);
    if (!isFinite(middle) || !isFinite(turn) || !isFinite(volume.getHitBox()))
        return;
    const Vec4 box = volume.getHitBox();
    const Matrix4 turned = turn.generateRotation();
    const bool isWide = std::fabs(box.x) >= std::fabs(box.z);
    SoundDoor door = SoundDoor::closedBy(PlanPoint(middle), PlanPoint(turned.getColumn(isWide ? 0 : 2)).unit(),
                                         std::fabs(isWide ? box.x : box.z));
    door.leaf = getHandle(&leaf);
    door.floors = floorsThrough(middle.y - std::fabs(box.y) * 0.5f, middle.y + std::fabs(box.y) * 0.5f);
    if (door.floors != 0)
        doors.add(door, walls);
}

/// The cells of the map's own floor that are walls, as few boxes.
void MapSurvey::addCells(SquareGrid &grid, WallPlan &walls)
{
    struct Run
    {
        int first, last, since;
    };
    const Matrix4 toWorld = grid.getTransformationMatrix(0);
    const float size = grid.getCellSize();
    const auto close = [&](const Run &run, int end)
    {
        WallBox wall;
        wall.middle = PlanPoint(grid.calcCellWorldCoords(toWorld, static_cast<float>(run.first + run.last) * 0.5f,
                                                         static_cast<float>(run.since + end - 1) * 0.5f));
        wall.along = PlanPoint(toWorld.getColumn(0)).unit();
        wall.halfAlong = static_cast<float>(run.last - run.first + 1) * size * 0.5f;
        wall.halfAcross = static_cast<float>(end - run.since) * size * 0.5f;
        wall.floors = 1u << mapFloor;
        walls.add(wall);
    };
    std::vector<Run> above, here;
    for (int z = 0; z < grid.getGridRows(); ++z)
    {
        rowHashes.push_back(hashRow(grid, z));
        here.clear();
        for (int x = 0; x < grid.getGridCols(); ++x)
        {
            if (!isWall(grid, x, z))
                continue;
            if (here.empty() || here.back().last != x - 1)
                here.push_back(Run{x, x, z});
            here.back().last = x;
        }
        for (const Run &run : above)
        {
            const auto same =
                std::find_if(here.begin(), here.end(),
                             [&](const Run &other) { return other.first == run.first && other.last == run.last; });
            if (same == here.end())
                close(run, z);
            else
                same->since = run.since;
        }
        above.swap(here);
    }
    for (const Run &run : above)
        close(run, grid.getGridRows());
}
