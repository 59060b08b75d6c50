#include "physics/PartitioningGrid.h"

#include "physics/BoundingVolume.h"

#include "engine/DebugCollector.h"
#include "engine/GlobalConfigSystem.h"
#include "engine/MapRootEntity.h"
#include "engine/TransformComponent.h"

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

/// Whole cells along one side, before any limit; negative for numbers that make none.
double cellsAlong(float extent, float cellSize)
{
    const float cells = extent * (1.f / cellSize);
    return cellSize > 0.f && cells >= 1.f ? std::trunc(static_cast<double>(cells)) : -1.0;
}

} // namespace

Handle<PartitioningGrid> PartitioningGrid::ofMap(const Handle<MapRootEntity> &map)
{
    static const String gridEntity = SCS(".MapData_partitioningGrid");
    static const String gridKey = SCS("partitioning");
    // Every volume asks in every frame, and maps have thousands of children: the last answer is tried first.
    static Handle<PartitioningGrid> last;
    const auto standsRight = [&](const Object &grid)
    {
        const auto entity = grid.getParent().lookup();
        return entity && entity->getParent() == map && entity->getName() == gridEntity && grid.getName() == gridKey;
    };
    if (const auto grid = last.lookup(); grid && standsRight(*grid))
        return last;
    const auto root = map.lookup();
    const auto entity = root ? root->getChild(gridEntity).lookup() : Handle<Object>::Result{};
    last = entity ? handle_cast<PartitioningGrid>(entity->getChild(gridKey)) : Handle<PartitioningGrid>();
    return last;
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
                lastRequestMarkings[static_cast<std::size_t>(oldColumns * z + x)];
    lastRequestMarkings.swap(marks);
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

/// Stores in a volume the rectangle that it covers; false, with nothing stored, if it has no transform.
bool PartitioningGrid::setVolumeRectangle(BoundingVolume &volume)
{
    const TransformComponent *const transform = volume.findTransform();
    if (!transform)
        return false;
    const Matrix4 &rotation = volume.rotationOf(*transform);
    const Vec4 hit = volume.getHitBox();
    // The extreme of eight turned corners is the sum of what each axis can add.
    const auto reach = [&](int row)
    {
        return std::fabs(rotation[row][0] * hit.x) + std::fabs(rotation[row][1] * hit.y) +
               std::fabs(rotation[row][2] * hit.z);
    };
    const Vec4 reaches(reach(0), 0.f, reach(2), 0.f);
    const Vec4 centre = transform->getPosition();
    const bool wasFinite = std::isfinite(volume.previousMin.x) && std::isfinite(volume.previousMin.z);
    volume.previousMin = getCellCoords(centre - reaches);
    volume.previousMax = getCellCoords(centre + reaches);
    if (wasFinite && columns > 0 && !(std::isfinite(volume.previousMin.x) && std::isfinite(volume.previousMin.z)))
        KV_LOGF(Logger_::I_ERROR,
                "%s of %s stands nowhere: its position, orientation or hit box is no number. It is left out of the "
                "partitioning grid of %s until that changes.",
                volume.getName().toCString(), volume.getParent().toString().toCString(), mapNameOf(*this).toCString());
    return true;
}

void PartitioningGrid::addVolume(Handle<BoundingVolume> vol)
{
    const auto volume = vol.lookup();
    if (!volume || !setVolumeRectangle(*volume))
        return;
    fillCells(CellRect::between(volume->previousMin, volume->previousMax, columns, rows), vol,
              volume->getVolumeType() == BoundingVolume::BV_WALL);
}

void PartitioningGrid::addWall(Handle<BoundingVolume> vol)
{
    if (const auto volume = vol.lookup())
        volume->findTransform();
}

void PartitioningGrid::moveVolume(Handle<BoundingVolume> vol, Vec4, Quaternion, bool staticVol)
{
    const auto volume = vol.lookup();
    if (!volume)
        return;
    const CellRect before = CellRect::between(volume->previousMin, volume->previousMax, columns, rows);
    if (!setVolumeRectangle(*volume))
        return;
    const CellRect after = CellRect::between(volume->previousMin, volume->previousMax, columns, rows);
    const BoundingVolume::GridPlace &place = volume->gridPlace;
    if (place.grid == getHandle(this) && place.isStatic == staticVol && !place.several &&
        (staticVol ? staticGrid : grid).move(vol, place.slot, before, after, volume->outline()))
        return;
    removeCells(before, vol, staticVol);
    fillCells(after, vol, staticVol);
}

void PartitioningGrid::refreshOutline(Handle<BoundingVolume> vol)
{
    const auto volume = vol.lookup();
    if (!volume)
        return;
    const BoundingVolume::GridPlace &place = volume->gridPlace;
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

void PartitioningGrid::fillRectangle(Vec4 minPos, Vec4 maxPos, Handle<BoundingVolume> vol, bool staticVol)
{
    fillCells(CellRect::between(getCellCoords(minPos), getCellCoords(maxPos), columns, rows), vol, staticVol);
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
        after.forEachPieceOutside(before, [&](const CellRect &entered) { fillCells(entered, vol, staticVol); });
}

void PartitioningGrid::fillCells(const CellRect &cells, const Handle<BoundingVolume> &vol, bool staticVol)
{
    VolumeListGrid &lists = staticVol ? staticGrid : grid;
    const auto volume = vol.lookup();
    if (volume && volume->gridPlace.slot != VolumeListGrid::NO_SLOT)
        volume->gridPlace.several = true;
    if (!volume || volume->gridPlace.several)
        lists.expectSeveral(vol);
    const VolumeListGrid::Slot slot = lists.add(vol, cells, volume ? volume->outline() : VolumeOutline());
    if (volume && slot != VolumeListGrid::NO_SLOT)
    {
        volume->gridPlace.grid = getHandle(this);
        volume->gridPlace.slot = slot;
        volume->gridPlace.isStatic = staticVol;
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

void PartitioningGrid::applyDebugDraw(const Handle<DebugCollectorComponent> &dcc)
{
    const GlobalConfigSystem &config = getSystemDeref<GlobalConfigSystem>();
    const auto collector = dcc.lookup();
    if (!collector || !config.getDebugDrawEnabled() || !config.getDebugDrawPartitioningGrid())
        return;
    const Vec4 lineColor(0.3f, 0.6f, 0.9f, 1.f), textColor(1.f, 1.f, 1.f, 1.f);
    const float half = cellSize * 0.5f;
    for (int z = 0; z < rows; ++z)
    {
        for (int x = 0; x < columns; ++x)
        {
            const Vec4 centre = calcCellWorldCoords(static_cast<unsigned>(x), static_cast<unsigned>(z));
            const Vec4 corner = centre - Vec4(half, 0.f, half, 0.f);
            // Each cell draws its near edges; the last ones draw the far edges of the grid too.
            collector->addLine3D(corner, corner + Vec4(cellSize, 0.f, 0.f, 0.f), lineColor);
            collector->addLine3D(corner, corner + Vec4(0.f, 0.f, cellSize, 0.f), lineColor);
            const Vec4 farCorner = centre + Vec4(half, 0.f, half, 0.f);
            if (z + 1 == rows)
                collector->addLine3D(farCorner, farCorner - Vec4(cellSize, 0.f, 0.f, 0.f), lineColor);
            if (x + 1 == columns)
                collector->addLine3D(farCorner, farCorner - Vec4(0.f, 0.f, cellSize, 0.f), lineColor);
            const int moving = static_cast<int>(getGridCellList(x, z).size());
            const int fixed = static_cast<int>(getStaticGridCellList(x, z).size());
            collector->addText3D(centre, String::format("%d %d\n", moving, fixed), textColor);
        }
    }
}
