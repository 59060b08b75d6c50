// PartitioningGrid: which volumes share a cell, for pairs, segments, frusta and rectangles.
#pragma once

#include "physics/grid/NearPairs.h"
#include "physics/grid/RayCollision.h"
#include "physics/grid/VolumeListGrid.h"

#include "engine/entities/AbstractComponent.h"
#include "engine/systems/RequestHandle.h"

#include "foundation/Quaternion.h"
#include "foundation/Vector.h"

#include <cmath>
#include <cstdint>
#include <vector>

class Collision;
class MapRootEntity;
class SegmentFilter;
struct VolumeMeasure;

/// A segment's nearest hit and the volume that it hits.
struct SegmentHit
{
    RayCollision collision;
    Handle<BoundingVolume> volume;
};

/// How it crosses the reflection layer: as the script class `SegmentHit`, with the collision's members as its own.
void SetToVariant(Variant &v, const SegmentHit &hit);

/// Uniform grid over the x/z plane of one map, under the component key "partitioning".
///
/// Stands below the map's root at ".MapData_partitioningGrid/partitioning", where volumes and the scene graph look for
/// it; what stands outside its rectangle is neither seen nor hit. Metres, in the space in which the map's transforms
/// hold their numbers; height plays no part in a cell's address. Owns its cells, borrows volumes by handle and skips
/// those that died. Pairs and segments pass over volumes that were far off at their own last frame step; what is near
/// is tested as it stands.
///
/// From a script: give an entity of that name the component, set `position`, `size` and `cellSize`, and the level's
/// load does the rest; later changes take effect with `updateSize`.
class PartitioningGrid : public AbstractComponent
{
    KV_REFLECTED(PartitioningGrid)
public:
    /// Cells as (x, 0, z, 1), whole numbers.
    typedef std::vector<Vec4> GridCellAddressList;
    typedef std::vector<RequestHandle> RequestMarkGrid;

    /// The most cells that a grid may have; one that would have more is left without any.
    static constexpr int MOST_CELLS = 1 << 22;
    /// The most contacts that are found in a frame; more would take the memory of the whole game.
    static constexpr std::size_t MOST_CONTACTS = 1 << 18;

    PartitioningGrid() = default;
    ~PartitioningGrid() override;

    /// The grid of a map; invalid where there is none.
    static Handle<PartitioningGrid> ofMap(const Handle<MapRootEntity> &map);

    /// Makes the cells.
    void onLoadBegin() override;
    /// Draws each cell's outline and the counts of its moving and static volumes, and the contacts of the last
    /// detection, while the debug switches ask for them.
    void applyDebugDraw(const Handle<DebugCollectorComponent> &dcc) override;

    /// Count of cells along z.
    int getRows() const { return rows; }
    /// Count of cells along x.
    int getColumns() const { return columns; }
    /// Extent in metres; x and z count.
    Vec4 getSize() const { return size; }
    /// Sets the extent, which counts from the next `updateSize` on.
    void setSize(Vec4 val) { size = val; }
    /// Centre; x and z count.
    Vec4 getPosition() const { return position; }
    /// Sets the centre; the cells keep the volumes that they have.
    void setPosition(Vec4 val) { position = val; }
    /// Edge of a square cell, metres.
    float getCellSize() const { return cellSize; }
    /// Sets the edge of a cell, which counts from the next `updateSize` on.
    void setCellSize(float val) { cellSize = val; }
    /// Makes the cells anew for the present size; what stands in a cell that both sizes have stays in it.
    ///
    /// A partial row or column at the far edge is dropped. A size or cell size that gives no cells, or more than
    /// MOST_CELLS, is logged as an error and leaves a grid without cells.
    void updateSize();
    /// Counts the changes of any grid's cells, by which volumes that stand still notice that they must be put in anew.
    static std::uint32_t getLayoutNumber() { return layoutNumber; }

    /// Cell coordinates of a point, not rounded: x and z count from the near corner in cells, y is 0, w is 1.
    Vec4 getCellCoords(Vec4 position) const;
    /// Middle of a cell, at height 0.
    Vec4 calcCellWorldCoords(unsigned x, unsigned z) const;
    /// The moving volumes of a cell; good until the grid changes. No volumes for a cell outside the grid.
    VolumeList getGridCellList(int x, int z);
    /// The static volumes of a cell; good until the grid changes. No volumes for a cell outside the grid.
    VolumeList getStaticGridCellList(int x, int z);
    /// Calls a function with the moving volumes of some cells, in no order; see `VolumeListGrid::forEachIn`.
    ///
    /// For whoever asks for a few cells in a frame: `getGridCellList` lays all of them out. The function changes no
    /// grid.
    template <class Function>
    void forEachMovingVolume(const CellRect &cells, Function function) const
    {
        grid.forEachIn(cells, function);
    }
    /// The same with the static volumes.
    template <class Function>
    void forEachStaticVolume(const CellRect &cells, Function function) const
    {
        staticGrid.forEachIn(cells, function);
    }
    /// The same with the static volumes after the moving ones.
    template <class Function>
    void forEachVolume(const CellRect &cells, Function function) const
    {
        forEachMovingVolume(cells, function);
        forEachStaticVolume(cells, function);
    }
    /// Calls a function with each moving volume in some cells whose middle lies in a rectangle, as the grid noted it.
    ///
    /// Cell by cell, in the order of the lists, with the cell; one that stands in several comes for each of them. What
    /// lies farther, as the reaches of lamps, costs a look at its outline.
    template <class Function>
    void forEachMovingNear(const CellRect &cells, const Vec4 &middle, float reach, Function function)
    {
        grid.refresh();
        for (int z = cells.minZ; z <= cells.maxZ; ++z)
            for (int x = cells.minX; x <= cells.maxX; ++x)
                for (const VolumeListGrid::Slot slot : grid.slots(cellIndex(x, z)))
                {
                    const VolumeOutline &outline = grid.outlineIn(slot);
                    const float apart[] = {outline.centre[0] - middle.x, outline.centre[2] - middle.z};
                    if (outline.volume && !(std::fabs(apart[0]) > reach) && !(std::fabs(apart[1]) > reach))
                        function(x, z, *outline.volume);
                }
    }
    /// Counts the changes of static volumes and of where they stand, for whoever keeps what he has made of them.
    std::uint64_t getStaticChanges() const { return staticGrid.getChangeCount(); }
    /// The last request that marked a cell; 0 for none and outside the grid.
    RequestHandle getCellLastRequest(int x, int z) const;
    /// Marks a cell; nothing happens outside the grid.
    void setCellLastRequest(int x, int z, RequestHandle request);

    /// Puts a volume into the cells under it, as its transform stands; one of type BV_WALL is static.
    ///
    /// What lies beyond the edges gets no cell there, and a volume without any is neither drawn nor touched until it
    /// moves back.
    void addVolume(Handle<BoundingVolume> vol);
    /// Resolves a wall and its transform and does nothing further: walls arrive through `addVolume`.
    void addWall(Handle<BoundingVolume> vol);
    /// Puts a volume into the cells under its present place instead of those where it was last put.
    void moveVolume(Handle<BoundingVolume> vol, Vec4 oldPosition, Quaternion oldOrientation, bool staticVol);
    /// Notes a volume's height and extents, which the grid looks at first, where its cells stay what they are.
    void refreshOutline(Handle<BoundingVolume> vol);
    /// Takes all occurrences of a volume out of a rectangle, given in cell coordinates.
    void removeVolume(const Vec4 &min, const Vec4 &max, Handle<BoundingVolume> vol, bool staticVol);
    /// Takes a volume out of the grid that it stands in, wherever that keeps it, as if it had never been put there.
    ///
    /// Its next frame step puts it into its map's grid anew.
    static void withdraw(Handle<BoundingVolume> vol);
    /// Puts a volume into all cells of a rectangle, given in metres; a second time gives a second entry.
    void fillRectangle(Vec4 minPos, Vec4 maxPos, Handle<BoundingVolume> vol, bool staticVol);
    /// Takes a volume from one rectangle to another, both in metres.
    ///
    /// A cell of the old one alone loses its first entry of the volume, one of the new one alone gains an entry, and
    /// cells of both are left as they are.
    void moveRectangle(Vec4 oldMinPos, Vec4 oldMaxPos, Vec4 minPos, Vec4 maxPos, Handle<BoundingVolume> vol,
                       bool staticVol);

    /// Tests all pairs that share a cell: moving with moving, then moving with static ones.
    ///
    /// Cell by cell, in a cell by order of arrival. The lists are those of the start: what a trigger's script adds or
    /// moves meanwhile counts from the next time on.
    void checkCollisions();
    /// Resolves what the tests found, and forgets it.
    ///
    /// In the order in which it was found, but what touches something that nothing moves after all the others.
    void resolveCollisions(double frameTime);

    /// Count of contacts that were found and not resolved yet.
    int getCollisionCount() const { return static_cast<int>(collisions.size()); }
    /// Forgets the contacts that were found, without resolving them.
    void dropCollisions();

    /// The cells that a triangle touches, seen from above, each as (x, 0, z, 1).
    /// @param request  0, or a number under which a cell comes once for all triangles
    GridCellAddressList rasterizeTriangle(Vec4 p1, Vec4 p2, Vec4 p3, RequestHandle request);
    /// Appends the cells that a triangle touches, seen from above.
    ///
    /// World points whose order gives (z2 - z1)(x3 - x1) >= (z3 - z1)(x2 - x1); the other winding, and points that are
    /// no numbers, give nothing. Some cells around the triangle come along. With a request other than 0 a cell comes
    /// once for all triangles of the request. Allocates only where the list grows.
    void rasterizeTriangle(Vec4 p1, Vec4 p2, Vec4 p3, GridCellAddressList &outList, RequestHandle request = 0);

    /// The nearest volume that a segment hits.
    ///
    /// Walks the cells under the segment and tests each volume there as its hit box, whatever its type. The walk goes
    /// column by column of the longer axis: all cells that the segment passes there, and beside them the one that the
    /// whole-numbered error of the walk arrives at.
    /// @param begin          start, metres, w 1
    /// @param dir            whole extent of the segment, not normalised, w 0
    /// @param checkInteract  only volumes that can be interacted with
    /// @return not collided, with a null volume, where nothing is hit and for a segment of zero length
    /// @cost cells under the segment up to the hit, plus the volumes in them; allocates nothing
    SegmentHit checkSegment(Vec4 begin, Vec4 dir, bool checkInteract = false);
    /// The nearest volume that a segment hits of those that a filter lets it be stopped by; as `checkSegment` besides.
    SegmentHit checkSegmentFor(const SegmentFilter &filter, Vec4 begin, Vec4 dir);
    /// The nearest volume of one cell that a segment hits; see `checkSegment`.
    /// @param cell  (x, 0, z, 1), whole numbers, as `rasterizeTriangle` gives it
    SegmentHit castRayAgainstCell(Vec4 cell, Vec4 start, Vec4 dir, bool checkInteract);
    /// The same for a cell that is given by its numbers.
    SegmentHit castRayAgainstCell(int x, int z, Vec4 start, Vec4 dir, bool checkInteract);
    /// The nearest volume that a segment hits; invalid for none. `checkSegment` for scripts.
    Handle<BoundingVolume> findVolumeOnSegment(Vec4 begin, Vec4 dir, bool checkInteract);

private:
    bool isCell(int x, int z) const { return x >= 0 && x < columns && z >= 0 && z < rows; }
    int cellIndex(int x, int z) const { return static_cast<int>(std::int64_t(columns) * z + x); }
    CellRect placeRectangle(BoundingVolume &volume, const VolumeMeasure &measure) const;
    static VolumeOutline outlineOf(const Handle<BoundingVolume> &vol);
    void fillCells(const CellRect &cells, const Handle<BoundingVolume> &vol, const VolumeOutline &outline,
                   bool staticVol);
    void removeCells(const CellRect &cells, const Handle<BoundingVolume> &vol, bool staticVol);

    /// A contact as it was found, for developers to see.
    struct DrawnContact
    {
        Vec4 position; ///< on the surface of the first volume
        Vec4 normal;   ///< from the second volume to the first
        float depth;   ///< metres
    };
    void noteContacts();
    void tellOfCrowd();
    void drawCells(DebugCollectorComponent &collector);
    void drawContacts(DebugCollectorComponent &collector) const;

    void rasterizeTriangleHelper(const Vec4 (&triangle)[3], int pointX, int pointZ, int baseXLeft, int baseXRight,
                                 int baseZ, GridCellAddressList &outList, RequestHandle request);
    struct Probe;
    SegmentHit castSegment(const Probe &probe);
    void castRayAgainstLists(int cell, const Probe &probe, SegmentHit &best);
    static void castRayAgainstVolume(BoundingVolume *volume, const Probe &probe, SegmentHit &best);

    static inline std::uint32_t layoutNumber = 1;

    int rows = 0;
    int columns = 0;
    Vec4 size = Vec4(128.f, 0.f, 128.f, 0.f); ///< metres: a map that says nothing of its size
    Vec4 position = Vec4(0.f, 0.f, 0.f, 1.f); ///< metres
    VolumeListGrid grid;                      ///< moving volumes
    VolumeListGrid staticGrid;                ///< static volumes
    NearPairs nearPairs;
    RequestMarkGrid lastRequestMarkings;     ///< by cell
    float cellSize = 2.f;                    ///< metres: a storey's room is a few cells, a person one
    std::vector<Collision *> collisions;     ///< found and not resolved yet; owned
    std::vector<DrawnContact> drawnContacts; ///< of the last detection; empty while nobody wants to see them
    Vec4 laidOutSize;                        ///< `size` that the cells were made for
    Vec4 laidOutPosition;                    ///< `position` that the cells were made for
    float laidOutCellSize = 0.f;             ///< `cellSize` that the cells were made for
    bool walking = false;                    ///< over all pairs
    bool crowdTold = false;                  ///< the log knows that there were too many contacts
    std::uint32_t probeNumber = 0;           ///< of the last segment
};

/// Stands around a walk over many volumes: while it lives, no map's grid is looked for twice.
///
/// Who stands in it neither renames grids nor moves them in the tree.
class GridWalk
{
public:
    GridWalk() { ++count; }
    ~GridWalk();
    GridWalk(const GridWalk &) = delete;
    GridWalk &operator=(const GridWalk &) = delete;

    static bool isActive() { return count > 0; }

private:
    static inline int count = 0;
};
