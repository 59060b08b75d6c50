// FloorSolids: what stands in a map as boxes, and what of them is above a point.
#pragma once

#include "physics/volumes/OrientedBox.h"

#include "foundation/Vector.h"
#include "object/tree/Handle.h"

#include <cstdint>
#include <vector>

class BoundingVolume;
class Entity;
class PartitioningGrid;

/// The walls, floors, furniture, leaves and drawn things of a map as boxes, and what of them is above a point.
///
/// Copies what it needs when it reads a map, and borrows nothing of it afterwards. Metres, in the space of the map's
/// transforms.
class FloorSolids
{
public:
    /// Half of what a body is across, less what it gives way by.
    static constexpr float BODY = 0.22f;
    /// What one steps over.
    static constexpr float STEP = 0.35f;
    /// What somebody who stoops has to have above his feet.
    static constexpr float STOOP = 1.05f;

    /// Reads all that a grid of volumes holds.
    void read(PartitioningGrid &grid);
    void clear();
    /// The rectangle around all that stands there: its least and its greatest x and z. False where there is nothing.
    bool findExtent(Vec4 &least, Vec4 &greatest) const;

    /// Appends the heights at which one can stand at some x and z, ascending.
    void findStanding(float x, float z, std::vector<float> &heights) const;
    /// Whether something is drawn around a place.
    bool isDrawn(const Vec4 &place) const;
    /// The door whose shut leaf is nearer to a body that stands at a place than some metres; -1 for none.
    int findDoor(const Vec4 &place, float metres) const;

    int getDoorCount() const { return static_cast<int>(doors.size()); }
    Handle<Entity> getDoor(int door) const;
    /// Whether a door was shut and locked when the map was read.
    bool isLocked(int door) const;

private:
    struct Solid
    {
        OrientedBox box;
        bool isUpright; ///< it stands on one of its faces: a wall, which bodies keep away from, and no slope
    };
    struct Door
    {
        Handle<Entity> leaf;
        OrientedBox shut;
        bool isLocked;
    };
    /// What of a box is above and below a point.
    struct Span
    {
        float low;
        float high;
    };
    /// Numbers of the boxes that are near each square of a metre.
    typedef std::vector<std::vector<std::int32_t>> Bins;

    void take(BoundingVolume &volume);
    void enter(Bins &bins, const OrientedBox &box, std::int32_t number);
    const std::vector<std::int32_t> &near(const Bins &bins, float x, float z) const;
    static bool findSpan(const OrientedBox &box, float x, float z, float margin, Span &span);
    bool isFree(float x, float z, float height) const;

    std::vector<Solid> solids;
    std::vector<OrientedBox> drawn;
    std::vector<Door> doors;
    Bins solidsNear;
    Bins drawnNear;
    float west = 0.f, south = 0.f; ///< corner of the first bin
    int columns = 0, rows = 0;     ///< of bins
};
