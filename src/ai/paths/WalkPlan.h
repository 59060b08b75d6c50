// WalkPlan: how much room there is for a body in the cells of a grid, and between them.
#pragma once

#include "ai/paths/Footprint.h"
#include "physics/grid/CellRect.h"

#include "object/tree/Handle.h"

#include <cstddef>
#include <cstdint>
#include <vector>

class PhysicsComponent;

/// What stands on the cells of a grid, and the room that it leaves.
///
/// In the plane of the grid: metres, the centre of cell (0, 0) at the origin, cell (x, z) that many cell edges from it.
/// A cell has a station, the place in it at which a body stands best: its centre, or what is farther from what stands
/// there where that is too near. So a doorway that lies across the border of two cells still has room. A step is the
/// straight way between two stations. Knows no map: whoever keeps it adds, moves and removes what stands there, and
/// `settle` works out the cells that this has touched, and those alone.
class WalkPlan
{
public:
    typedef std::uint32_t Number;
    static constexpr Number NONE = ~Number(0);
    /// So far what stands there is looked at, metres: more room than that is enough for anybody.
    static constexpr float REACH = 0.8f;
    /// The widest body that finds its way by its size, metres from its middle; wider ones count as that.
    static constexpr float WIDEST = 0.75f;

    /// What stands on the grid. A closed leaf bars the way apart from all else, since some can open it.
    struct Obstacle
    {
        Footprint shape;
        Handle<PhysicsComponent> leaf;  ///< the door whose closed leaf this is; invalid for all else
        CellRect cells;                 ///< that may be near it; empty for one that was removed
        mutable std::uint32_t seen = 0; ///< number of the line that met it last
        bool isLeaf = false;
    };

    /// Begins anew for a grid of some size.
    void layOut(int columns, int rows, float cellEdge);
    Number add(const Footprint &shape, bool isLeaf = false, Handle<PhysicsComponent> leaf = Handle<PhysicsComponent>());
    void remove(Number number);
    /// Works out the cells that were touched since the last time.
    /// @return the rectangle around them; empty for none
    CellRect settle();
    /// The cells that the last `settle` has worked out.
    const std::vector<std::uint32_t> &getSettled() const { return settled; }

    int getColumns() const { return columns; }
    int getRows() const { return rows; }
    float getCellEdge() const { return edge; }
    bool isCell(int x, int z) const { return x >= 0 && x < columns && z >= 0 && z < rows; }

    /// The room of a body of some radius as steps and stations are compared with it.
    static std::uint8_t roomFor(float radius);
    /// Room around a cell's station.
    std::uint8_t roomAt(int x, int z) const { return cells[indexOf(x, z)].room; }
    /// Room along the step to a neighbour, by SquareGrid::Neighbor.
    std::uint8_t roomOfStep(int x, int z, int direction) const { return cells[indexOf(x, z)].steps[direction]; }
    /// Whether a closed leaf is near.
    bool isNearLeaf(int x, int z) const { return cells[indexOf(x, z)].isNearLeaf; }
    /// Where a body stands best in a cell.
    PlanPoint stationOf(int x, int z) const;
    PlanPoint centreOf(int x, int z) const
    {
        return PlanPoint(static_cast<float>(x) * edge, static_cast<float>(z) * edge);
    }
    /// The cell of a point, which the grid need not have.
    int cellAlong(float metres) const { return toCell(std::floor(metres / edge + 0.5f)); }

    /// Calls a function with each thing that may be nearer to a cell than REACH.
    template <class Function>
    void forEachNear(int x, int z, Function function) const
    {
        for (std::uint32_t entry = cells[indexOf(x, z)].firstEntry; entry != NONE; entry = entries[entry].next)
            function(obstacles[entries[entry].obstacle]);
    }
    /// Calls a function with each cell under a straight line, in order, until it returns false.
    /// @return false where it did, or the line leaves the grid
    template <class Function>
    bool walkLine(const PlanPoint &from, const PlanPoint &to, Function function) const;
    /// A number under which a line meets each obstacle once, by `Obstacle::seen`.
    std::uint32_t beginLine() const { return ++lineNumber; }
    /// All that stands there, and what was removed, with empty cells.
    const std::vector<Obstacle> &getObstacles() const { return obstacles; }
    /// Metres that have to stay free beside a line for a body of some radius: a little less than that.
    static float marginFor(float radius);

private:
    struct Cell
    {
        std::uint8_t steps[8];
        std::uint8_t room;
        std::uint8_t station; ///< index of its place in the cell
        bool isNearLeaf;
        bool isTouched;
        std::uint32_t firstEntry; ///< of what is near
    };
    struct Entry
    {
        Number obstacle;
        std::uint32_t next;
    };

    std::size_t indexOf(int x, int z) const
    {
        return static_cast<std::size_t>(columns) * static_cast<std::size_t>(z) + static_cast<std::size_t>(x);
    }
    bool isNear(const Footprint &shape, int x, int z) const;
    void touch(int x, int z);
    void enter(Number number, int x, int z);
    void leave(Number number, int x, int z);
    void settleStation(int x, int z);
    void settleSteps(int x, int z);
    float roomAround(int x, int z, const PlanPoint &place, float enough) const;
    bool isFilled(int x, int z) const;

    int columns = 0;
    int rows = 0;
    float edge = 1.f; ///< of a cell, metres
    std::vector<Cell> cells;
    std::vector<Obstacle> obstacles;
    std::vector<Number> freeNumbers;
    std::vector<Entry> entries;
    std::uint32_t freeEntry = NONE; ///< first of a chain
    std::vector<std::uint32_t> touched;
    std::vector<std::uint32_t> settled;
    mutable std::uint32_t lineNumber = 0;
};

template <class Function>
bool WalkPlan::walkLine(const PlanPoint &from, const PlanPoint &to, Function function) const
{
    // Steps to the nearer of the next borders along x and z; both at once through a corner.
    int x = cellAlong(from.x), z = cellAlong(from.z);
    const int lastX = cellAlong(to.x), lastZ = cellAlong(to.z);
    const PlanPoint way = to - from;
    const int stepX = way.x > 0.f ? 1 : -1, stepZ = way.z > 0.f ? 1 : -1;
    const auto borderAt = [&](int cell, int step, float start, float length)
    {
        const float border = (static_cast<float>(cell) + 0.5f * static_cast<float>(step)) * edge;
        return length != 0.f ? (border - start) / length : 2.f;
    };
    float nextX = borderAt(x, stepX, from.x, way.x), nextZ = borderAt(z, stepZ, from.z, way.z);
    for (int most = columns + rows + 4; most > 0; --most)
    {
        if (!isCell(x, z) || !function(x, z))
            return false;
        if (x == lastX && z == lastZ)
            return true;
        if (nextX > 1.f && nextZ > 1.f)
            return true;
        if (nextX <= nextZ)
            x += stepX, nextX = borderAt(x, stepX, from.x, way.x);
        else
            z += stepZ, nextZ = borderAt(z, stepZ, from.z, way.z);
    }
    return true;
}
