// Walkways: which cells of a map bodies can walk, kept true while things move.
#pragma once

#include "ai/paths/PathSearch.h"
#include "ai/paths/WalkPlan.h"
#include "ai/paths/WalkSurvey.h"
#include "ai/paths/Walker.h"
#include "physics/grid/GridCell.h"

#include "engine/entities/SimpleComponent.h"

#include "foundation/Matrix4.h"
#include "foundation/Vector.h"

#include <cstdint>
#include <vector>

class MapRootEntity;
class SquareGrid;

/// Keeps a map's main path grid true to what stands in the map, under the component key "walkways" of the map's root.
///
/// Made for a map when somebody first asks for a way in it; a map in which nobody walks pays nothing. Walls, furniture
/// and crates block the cells in which they leave no room for the slimmest body; such a cell gets the value
/// BLOCKED_BY_THINGS, but only where it is 0, and is set back when the room is there again: what a level has written into
/// its grid stays, and sound, for which cells from 1 on are walls, hears no difference. How much room each cell and each
/// step leaves is kept beside the grid, and so are closed doors, since both mean something else to each walker. Moves
/// nobody, and knows of no creature: those keep apart by themselves.
class Walkways : public SimpleComponent
{
    KV_REFLECTED(Walkways)
public:
    /// First value of a cell that is only blocked by what stands in it.
    static constexpr float BLOCKED_BY_THINGS = 0.5f;

    Walkways() = default;

    /// The walkways of a map, made where they are missing; null for a map without a main path grid.
    static Walkways *ofMap(const Handle<MapRootEntity> &map);
    /// The walkways of a map where it has some; null otherwise.
    static Walkways *findOfMap(const Handle<MapRootEntity> &map);

    /// Reads the map.
    void onLoadComplete() override;
    /// Sets the cells back.
    void onMurder() override;
    /// Follows what has moved.
    void doFrame() override;
    /// Draws what stands in the way, closed leaves apart, and what cells it blocks; only while the debug switch for path
    /// searches asks for it.
    void applyDebugDraw(const Handle<DebugCollectorComponent> &dcc) override;

    /// Whether a body of some radius has room in a cell, whatever doors there are.
    bool hasRoom(const GridCell &cell, float radius) const;
    /// The cell of the main path grid under a place.
    GridCell cellAt(Vec4 place);
    /// The nearest cell to a place in which a body of some radius has room; no cell where there is none far and wide.
    GridCell findFreeCell(Vec4 place, float radius);
    /// Where a body stands best in a cell: its centre, or what is farther from what stands there.
    Vec4 getStation(const GridCell &cell) const;
    /// Whether a body of some radius, for which doors stay closed, can go straight from one place to another.
    bool isWayFree(Vec4 from, Vec4 to, float radius);
    /// Counts the changes of what can be walked.
    int getChangeCount() const { return static_cast<int>(changeCount); }
    /// Count of the things that were found to stand in the map.
    int getThingCount() const { return survey.getCount(); }

    /// Whether a walker can go straight from one place to another; closed leaves that he can open do not stop him.
    /// @param passesLeaves  false: they do
    bool isFree(const Vec4 &from, const Vec4 &to, const Walker &walker, bool passesLeaves) const;
    /// The first closed leaf on the straight way from one place to another; invalid for none.
    Handle<PhysicsComponent> findLeaf(const Vec4 &from, const Vec4 &to);
    /// Whether a walker can step from a cell to one beside it.
    bool isStepFree(const GridCell &from, const GridCell &to, const Walker &walker) const;
    /// Whether something has changed since a count of changes in a rectangle of cells; true where that is too long ago
    /// to tell.
    bool hasChangedSince(std::uint32_t count, const CellRect &cells) const;

private:
    friend class WalkRule;

    /// What the cells follow from.
    struct Layout
    {
        int columns = 0;
        int rows = 0;
        float cellSize = 0.f;
        Matrix4 toMap; ///< from the plane of the grid, with its origin at the centre of the first cell

        bool isSame(const Layout &other) const;
    };
    struct Change
    {
        std::uint32_t count = 0;
        CellRect cells;
    };
    static constexpr std::size_t CHANGES = 16;

    SquareGrid *findGrid();
    Layout layoutOf(SquareGrid &grid) const;
    void read(SquareGrid &grid, const Layout &now);
    void settle(SquareGrid &grid);
    void note(const CellRect &changed);
    void markCells(SquareGrid &grid);
    void unmarkCells();
    bool isWritten(const SquareGrid &grid, int x, int z) const;
    bool meetsWritten(const SquareGrid &grid, int x, int z, const PlanPoint &from, const PlanPoint &to,
                      float margin) const;
    PlanPoint toPlan(const Vec4 &place) const { return PlanPoint(fromMap * place); }
    bool leavesAllow(int x, int z, int direction, const Walker &walker) const;

    WalkPlan plan;
    WalkSurvey survey;
    Handle<SquareGrid> hGrid;
    Layout layout;
    Matrix4 fromMap;                 ///< to the plane of the plan
    std::vector<std::uint8_t> marks; ///< by cell, whether it got its value from here
    std::uint32_t changeCount = 0;
    Change changes[CHANGES]; ///< the last ones, by their count
};

/// The steps of a search for one walker.
class WalkRule : public StepRule
{
public:
    /// @param startX, startZ  cell from which he sets out, even where he does not fit into it
    WalkRule(const Walkways &ways, const Walker &walker, int startX, int startZ);
    bool allows(int x, int z, int direction) const override;
    bool allowsStraight(const GridCell &from, const GridCell &to) const override;

private:
    const Walkways &ways;
    const Walker walker;
    const std::uint8_t room;
    int startX;
    int startZ;
};
