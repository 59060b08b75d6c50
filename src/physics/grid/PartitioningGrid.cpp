#include "physics/grid/PartitioningGrid.h"

#include "physics/volumes/BoundingVolume.h"
#include "physics/volumes/VolumeTraits.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/transforms/TransformComponent.h"
#include "object/tree/WellKnownPaths.h"

#include "foundation/Logger.h"

namespace
{

/// Name of a grid's map, for messages.
String mapNameOf(const PartitioningGrid &grid)
{
    const auto entity = grid.getParent().lookup();
    const auto map = entity ? entity->getParent().lookup() : Handle<Object>::Result{};
    return map ? map->getName() : SCS("no map");
}

/// The last answer of `ofMap`.
struct LastGrid
{
    Handle<MapRootEntity> map;
    Handle<PartitioningGrid> grid;
    bool isCertain = false; ///< given in the present GridWalk
};
LastGrid lastGrid;

/// Whether cell coordinates are numbers.
bool isWhere(const Vec4 &cell)
{
    return std::isfinite(cell.x) && std::isfinite(cell.z);
}

/// Whole cells along one side, before any limit; negative for numbers that make none.
double cellsAlong(float extent, float cellSize)
{
    const float cells = extent * (1.f / cellSize);
    return cellSize > 0.f && cells >= 1.f ? std::trunc(static_cast<double>(cells)) : -1.0;
}

} // namespace

Handle<PartitioningGrid> PartitioningGrid::ofMap(const Handle<MapRootEntity> &map)
{
    // Every volume asks in every frame, and maps have thousands of children: the last answer is tried first.
    if (lastGrid.isCertain && lastGrid.map == map)
        return lastGrid.grid;
    lastGrid.isCertain = GridWalk::isActive();
    lastGrid.map = map;
    const auto standsRight = [&](const Object &grid)
    {
        const auto entity = grid.getParent().lookup();
        return entity && entity->getParent() == map && entity->getName() == WellKnownPaths::partitioningGrid &&
               grid.getName() == ComponentKeys::partitioning;
    };
    if (const auto grid = lastGrid.grid.lookup(); grid && standsRight(*grid))
        return lastGrid.grid;
    const auto root = map.lookup();
    const auto entity = root ? root->getChild(WellKnownPaths::partitioningGrid).lookup() : Handle<Object>::Result{};
    lastGrid.grid = entity ? handle_cast<PartitioningGrid>(entity->getChild(ComponentKeys::partitioning))
                           : Handle<PartitioningGrid>();
    return lastGrid.grid;
}

GridWalk::~GridWalk()
{
    --count;
    lastGrid.isCertain = false;
}

PartitioningGrid::~PartitioningGrid()
{
    dropCollisions();
}

void PartitioningGrid::onLoadBegin()
{
    updateSize();
}

void PartitioningGrid::updateSize()
{
    const int oldRows = rows, oldColumns = columns;
    const double newRows = cellsAlong(size.z, cellSize), newColumns = cellsAlong(size.x, cellSize);
    const bool usable = newRows > 0 && newColumns > 0 && newRows * newColumns <= MOST_CELLS;
    if (!usable)
        KV_LOGF(Logger_::I_ERROR,
                "The partitioning grid of %s has no cells: a size of %g x %g m in cells of %g m must give at least one "
                "and at most %d. Nothing in it is seen or hit; set its size and cellSize.",
                mapNameOf(*this).toCString(), static_cast<double>(size.x), static_cast<double>(size.z),
                static_cast<double>(cellSize), MOST_CELLS);
    rows = usable ? static_cast<int>(newRows) : 0;
    columns = usable ? static_cast<int>(newColumns) : 0;
    grid.resize(columns, rows);
    staticGrid.resize(columns, rows);

    RequestMarkGrid marks(static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns), 0);
    for (int z = 0; z < std::min(oldRows, rows); ++z)
        for (int x = 0; x < std::min(oldColumns, columns); ++x)
            marks[static_cast<std::size_t>(cellIndex(x, z))] =
                lastRequestMarkings[static_cast<std::size_t>(oldColumns) * static_cast<std::size_t>(z) +
                                    static_cast<std::size_t>(x)];
    lastRequestMarkings.swap(marks);

    if (size != laidOutSize || position != laidOutPosition || cellSize != laidOutCellSize)
        ++layoutNumber;
    laidOutSize = size;
    laidOutPosition = position;
    laidOutCellSize = cellSize;
}

Vec4 PartitioningGrid::getCellCoords(Vec4 p) const
{
    const float cellsPerMetre = 1.f / cellSize;
    return Vec4((p.x - position.x + size.x * 0.5f) * cellsPerMetre, 0.f,
                (p.z - position.z + size.z * 0.5f) * cellsPerMetre, 1.f);
}

Vec4 PartitioningGrid::calcCellWorldCoords(unsigned x, unsigned z) const
{
    const auto centre = [this](unsigned cell, double extent, double middle)
    { return static_cast<float>((cell + 0.5) * static_cast<double>(cellSize) - extent * 0.5 + middle); };
    return Vec4(centre(x, size.x, position.x), 0.f, centre(z, size.z, position.z), 1.f);
}

VolumeList PartitioningGrid::getGridCellList(int x, int z)
{
    return isCell(x, z) ? grid.list(cellIndex(x, z)) : VolumeList();
}

VolumeList PartitioningGrid::getStaticGridCellList(int x, int z)
{
    return isCell(x, z) ? staticGrid.list(cellIndex(x, z)) : VolumeList();
}

RequestHandle PartitioningGrid::getCellLastRequest(int x, int z) const
{
    return isCell(x, z) ? lastRequestMarkings[static_cast<std::size_t>(cellIndex(x, z))] : 0;
}

void PartitioningGrid::setCellLastRequest(int x, int z, RequestHandle request)
{
    if (isCell(x, z))
        lastRequestMarkings[static_cast<std::size_t>(cellIndex(x, z))] = request;
}

/// Stores in a volume the rectangle that it covers where it stands now.
/// @return its cells of this grid
CellRect PartitioningGrid::placeRectangle(BoundingVolume &volume, const VolumeMeasure &measure) const
{
    // The extreme of eight turned corners, each as far out as the whole extents.
    const Vec4 reaches(2.f * measure.boxReach.x, 0.f, 2.f * measure.boxReach.z, 0.f);
    const Vec4 min = getCellCoords(measure.centre - reaches), max = getCellCoords(measure.centre + reaches);
    if (columns > 0 && !isWhere(min) && isWhere(volume.gridPlace.previousMin))
        KV_LOGF(Logger_::I_ERROR,
                "%s of %s stands nowhere: its position, orientation or hit box is no number. It is left out of the "
                "partitioning grid of %s until that changes.",
                volume.getName().toCString(), volume.getParent().toString().toCString(), mapNameOf(*this).toCString());
    volume.gridPlace.previousMin = min;
    volume.gridPlace.previousMax = max;
    return CellRect::between(min, max, columns, rows);
}

void PartitioningGrid::addVolume(Handle<BoundingVolume> vol)
{
    const auto volume = vol.lookup();
    const TransformComponent *const transform = volume ? volume->findTransform() : nullptr;
    if (!transform)
        return;
    const VolumeMeasure measure = volume->measureAt(*transform);
    const CellRect cells = placeRectangle(*volume, measure);
    fillCells(cells, vol, measure.outline, VolumeTraits::of(*volume).isStatic);
    volume->gridPlace.cells = cells;
}

void PartitioningGrid::addWall(Handle<BoundingVolume> vol)
{
    if (const auto volume = vol.lookup())
        volume->findTransform();
}

void PartitioningGrid::moveVolume(Handle<BoundingVolume> vol, Vec4, Quaternion, bool staticVol)
{
    const auto volume = vol.lookup();
    const TransformComponent *const transform = volume ? volume->findTransform() : nullptr;
    if (!transform)
        return;
    GridPlace &place = volume->gridPlace;
    const Vec4 oldMin = place.previousMin, oldMax = place.previousMax;
    const VolumeMeasure measure = volume->measureAt(*transform);
    const CellRect cells = placeRectangle(*volume, measure);
    const bool isKnown = place.grid == getHandle(this) && !place.several;
    if (!isKnown || place.isStatic != staticVol ||
        !(staticVol ? staticGrid : grid).move(vol, place.slot, place.cells, cells, measure.outline))
    {
        // A wall that is none any more, or the other way round, still stands among the others.
        const bool wasStatic = isKnown && place.slot != VolumeListGrid::NO_SLOT ? place.isStatic : staticVol;
        removeCells(CellRect::between(oldMin, oldMax, columns, rows), vol, wasStatic);
        fillCells(cells, vol, measure.outline, staticVol);
    }
    place.cells = cells;
}

void PartitioningGrid::refreshOutline(Handle<BoundingVolume> vol)
{
    const auto volume = vol.lookup();
    if (!volume)
        return;
    const GridPlace &place = volume->gridPlace;
    if (place.slot == VolumeListGrid::NO_SLOT && !place.several)
        return;
    const bool known = place.grid == getHandle(this) && !place.several;
    const VolumeOutline outline = volume->outline();
    if (!known || !place.isStatic)
        grid.setOutline(vol, outline, known ? place.slot : VolumeListGrid::NO_SLOT);
    if (!known || place.isStatic)
        staticGrid.setOutline(vol, outline, known ? place.slot : VolumeListGrid::NO_SLOT);
}

void PartitioningGrid::removeVolume(const Vec4 &min, const Vec4 &max, Handle<BoundingVolume> vol, bool staticVol)
{
    removeCells(CellRect::between(min, max, columns, rows), vol, staticVol);
}

void PartitioningGrid::withdraw(Handle<BoundingVolume> vol)
{
    const auto volume = vol.lookup();
    if (!volume)
        return;
    GridPlace &place = volume->gridPlace;
    if (const auto home = place.grid.lookup())
    {
        const CellRect all{0, 0, home->columns - 1, home->rows - 1};
        (place.isStatic ? home->staticGrid : home->grid).remove(vol, all, place.slot);
        if (place.several)
            (place.isStatic ? home->grid : home->staticGrid).remove(vol, all);
    }
    place = GridPlace();
}

void PartitioningGrid::fillRectangle(Vec4 minPos, Vec4 maxPos, Handle<BoundingVolume> vol, bool staticVol)
{
    fillCells(CellRect::between(getCellCoords(minPos), getCellCoords(maxPos), columns, rows), vol, outlineOf(vol),
              staticVol);
}

void PartitioningGrid::moveRectangle(Vec4 oldMinPos, Vec4 oldMaxPos, Vec4 minPos, Vec4 maxPos,
                                     Handle<BoundingVolume> vol, bool staticVol)
{
    const CellRect before = CellRect::between(getCellCoords(oldMinPos), getCellCoords(oldMaxPos), columns, rows);
    const CellRect after = CellRect::between(getCellCoords(minPos), getCellCoords(maxPos), columns, rows);
    if (before == after)
        return;
    VolumeListGrid &lists = staticVol ? staticGrid : grid;
    if (!before.isEmpty())
        before.forEachPieceOutside(after, [&](const CellRect &left) { lists.removeFirst(vol, left); });
    if (!after.isEmpty())
        after.forEachPieceOutside(before,
                                  [&](const CellRect &entered) { fillCells(entered, vol, outlineOf(vol), staticVol); });
}

/// The outline of a volume; an empty one for a volume that no longer lives.
VolumeOutline PartitioningGrid::outlineOf(const Handle<BoundingVolume> &vol)
{
    const auto volume = vol.lookup();
    return volume ? volume->outline() : VolumeOutline();
}

void PartitioningGrid::fillCells(const CellRect &cells, const Handle<BoundingVolume> &vol, const VolumeOutline &outline,
                                 bool staticVol)
{
    VolumeListGrid &lists = staticVol ? staticGrid : grid;
    const auto volume = vol.lookup();
    if (volume && volume->gridPlace.slot != VolumeListGrid::NO_SLOT)
        volume->gridPlace.several = true;
    if (!volume || volume->gridPlace.several)
        lists.expectSeveral(vol);
    const VolumeListGrid::Slot slot = lists.add(vol, cells, outline);
    if (volume && slot != VolumeListGrid::NO_SLOT)
    {
        GridPlace &place = volume->gridPlace;
        place.grid = getHandle(this);
        place.slot = slot;
        place.cells = CellRect();
        place.isStatic = staticVol;
    }
}

void PartitioningGrid::removeCells(const CellRect &cells, const Handle<BoundingVolume> &vol, bool staticVol)
{
    VolumeListGrid &lists = staticVol ? staticGrid : grid;
    const auto volume = vol.lookup();
    if (!volume || volume->gridPlace.grid != getHandle(this) || volume->gridPlace.isStatic != staticVol)
        return lists.remove(vol, cells);
    VolumeListGrid::Slot &slot = volume->gridPlace.slot;
    lists.remove(vol, cells, slot);
    if (!lists.holds(slot, vol))
        slot = VolumeListGrid::NO_SLOT;
}
