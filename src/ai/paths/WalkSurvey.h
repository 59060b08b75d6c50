// WalkSurvey: watches what stands and moves in a map, for its plan of walks.
#pragma once

#include "ai/paths/WalkPlan.h"

#include "foundation/Matrix4.h"
#include "foundation/Quaternion.h"
#include "foundation/Vector.h"

#include <cstddef>
#include <cstdint>
#include <vector>

class BoundingVolume;
class PartitioningGrid;
class TransformComponent;
struct DoorState;

/// Brings into a plan the bodies of a map that stop a walker: walls, furniture, crates and the leaves of doors.
///
/// Not creatures, which keep apart by themselves, not what lies so low that one steps over it or hangs so high that one
/// passes below, not what flies by. What can move is compared with where it was in every frame, walls now and then, a
/// part of them in each; who came or went is noticed within half a second, a wall that only began or ceased to stop
/// anybody within three. Borrows the map's grid of volumes for each call.
class WalkSurvey
{
public:
    /// Lets all that was seen count no more: the plan begins anew.
    /// @param toPlan  from the space of the map's transforms to the plane of the plan
    void begin(const Matrix4 &toPlan);
    /// Looks at all volumes.
    void takeStock(PartitioningGrid &grid, WalkPlan &plan);
    /// Follows what has moved; takes stock when that is due.
    void follow(PartitioningGrid *grid, WalkPlan &plan);

    int getCount() const { return static_cast<int>(things.size() + walls.size()); }

private:
    /// How a leaf or a body stops a walker.
    enum Manner : std::uint8_t
    {
        ABSENT,
        SOLID,
        SHUT ///< a closed leaf
    };
    /// A volume that may stop somebody.
    struct Thing
    {
        Handle<BoundingVolume> handle;
        WalkPlan::Number number = WalkPlan::NONE; ///< in the plan
        Manner manner = ABSENT;
        std::uint8_t stillFrames = 0; ///< since it moved
        Vec4 place;                   ///< as it stands in the plan, a closed leaf where it is closed
        Quaternion turn;
        Vec4 hitBox;
        Vec4 lastPlace; ///< in the frame before
        Quaternion lastTurn;
        BoundingVolume *volume = nullptr; ///< as long as no object is born or dies
    };

    typedef std::vector<Thing> ThingList;

    bool isStockDue() const;
    void find(const Handle<BoundingVolume> &handle);
    void renew(ThingList &list, WalkPlan &plan);
    void takeStockOfMoving(PartitioningGrid &grid, WalkPlan &plan);
    void followWalls(PartitioningGrid &grid, WalkPlan &plan);
    void lookForWalls(PartitioningGrid &grid, WalkPlan &plan);
    ThingList::iterator placeAmongWalls(const Handle<BoundingVolume> &handle);
    bool isWall(const Handle<BoundingVolume> &handle);
    void dropDeadWalls(WalkPlan &plan);
    void refreshPointers();
    void watch(Thing &thing, WalkPlan &plan) const;
    void watchWall(Thing &wall, WalkPlan &plan) const;
    Manner mannerOf(const Thing &thing, const DoorState &door) const;
    void stand(Thing &thing, WalkPlan &plan, Manner manner) const;
    void withdraw(Thing &thing, WalkPlan &plan) const;
    bool isInTheWay(const BoundingVolume &volume, const Vec4 &place, const Quaternion &turn) const;

    Matrix4 toPlan;
    ThingList things;                          ///< among the grid's moving volumes, ascending by handle
    ThingList walls;                           ///< among the static ones, likewise
    std::vector<Handle<BoundingVolume>> found; ///< by the stock-taking
    ThingList kept;                            ///< the same, as things
    std::uint32_t calls = 0;                   ///< of `follow`
    std::uint64_t objectChanges = 0;           ///< births and deaths that the pointers take account of
    std::uint64_t stockChanges = 0;            ///< births and deaths that the last stock took account of
    std::uint64_t wallChanges = 0;             ///< of static volumes when walls were looked at last
    std::uint32_t looksLeft = 0;               ///< calls in which walls are looked at
};
