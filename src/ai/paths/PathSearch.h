// PathSearch: finds a path over the cells of a grid, some cells at a time.
#pragma once

#include "ai/paths/NodeList.h"
#include "ai/paths/PathField.h"
#include "ai/paths/PathMemory.h"
#include "ai/paths/PathNode.h"
#include "ai/paths/PathRequest.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

class SquareGrid;

/// What forbids steps that the path grid would allow.
class StepRule
{
public:
    virtual ~StepRule() = default;
    /// Whether somebody may go from a cell to the one beside it.
    /// @param direction  a SquareGrid::Neighbor
    virtual bool allows(int x, int z, int direction) const = 0;
    /// Whether somebody may go straight from one cell to another.
    virtual bool allowsStraight(const GridCell &from, const GridCell &to) const = 0;
};

/// What a search goes over, as it stands while a part of it runs; borrowed for that time.
struct PathGround
{
    SquareGrid &main;                 ///< what can be walked on
    SquareGrid *saturation = nullptr; ///< what cells cost beyond 1, by their first value; null for nothing
    const StepRule *rule = nullptr;   ///< null for none
};

/// A search that is greedy for its speed: straight and diagonal steps cost the same, and what is left is taken to cost
/// |dx| + |dz|, which is too much on diagonals; so the path need not be the shortest.
///
/// Owns a pool of reached cells and lists over it that are kept from search to search; starting one costs nothing of
/// that. The field's cells name theirs in the pool by numbers that go up from search to search, so that nothing has to
/// be cleared: a name below the first of this search is an old one.
class PathSearch
{
public:
    /// The most cells that a search reaches; one that would need more fails.
    static constexpr std::size_t PAGE_SIZE = 100000;

    /// Begins a search at a cell of the grid.
    /// @return false, with nothing begun, where the destination is no cell of the grid: it cannot be reached
    bool begin(const PathGround &ground, const GridCell &start, const GridCell &destination);
    /// Expands some cells.
    ///
    /// A grid that has changed since goes on as it is now; another grid than that of the beginning fails.
    PathStatus run(const PathGround &ground, int passes);
    /// Forgets the search.
    void clear();

    /// Whether nothing has been begun since the last `clear`.
    bool isEmpty() const { return poolIndex == 0; }
    /// What the path costs that was found; 0 unless a run has succeeded.
    float getPathCost() const { return found == NONE ? 0.f : nodePool[found].movementCost; }
    /// The path that was found: the node of the destination, from which the parents lead to the start. Null unless a
    /// run has succeeded; made by the call, and right until the next one.
    PathNode *layOutPath();
    /// The cell of the beginning, while the search is not empty.
    GridCell getStart() const { return cellOf(nodePool[0]); }
    /// Count of cells that were reached.
    int getNodeCount() const { return static_cast<int>(poolIndex); }
    /// The cells that were reached, row by row: those that wait to be expanded, or those that have been.
    void listCells(bool waiting, HexCont &cells) const;

    /// What is taken to be left of a way: |dx| + |dz|, cells of one grid.
    static float calculateNodeHeuristic(const GridCell &start, const GridCell &target)
    {
        return calculateHeuristic(start.getX() - target.getX(), start.getZ() - target.getZ());
    }
    /// What a way costs that goes on into a cell: 1 and the cell's saturation more, but never less, so that a search
    /// comes to its end whatever stands in a grid.
    static float calculateNodeCost(float movementCost, float saturation)
    {
        return saturation > -1.f ? movementCost + saturation + 1.f : movementCost;
    }

private:
    using Index = ReachedCell::Index;
    static constexpr Index NONE = ReachedCell::NONE;
    /// Fields of this many maps are kept.
    static constexpr std::size_t FIELDS = 4;

    static float calculateHeuristic(int dx, int dz) { return static_cast<float>(std::abs(dx) + std::abs(dz)); }
    float leftFrom(int x, int z) const { return calculateHeuristic(x - toX, z - toZ); }
    GridCell cellOf(const ReachedCell &reached) const { return GridCell(grid, reached.x, reached.z); }

    void chooseField();
    void chooseNames();
    bool prepare(const PathGround &ground);
    void nameNodes();
    bool expand(Index current, const StepRule *rule);
    bool reach(Index from, std::size_t number, int direction);
    Index createNode(std::size_t number, int x, int z);
    /// The node of a cell in this search; NONE for a cell that it has not reached.
    Index FIND_NODE(std::size_t number)
    {
        const Index index = field->nodeAt(number) - firstName;
        return index < poolIndex ? index : NONE;
    }
    /// Makes a node that of its cell.
    void INSERT_NODE(std::size_t number, Index index) { field->nodeAt(number) = firstName + index; }

    PathArray<ReachedCell> nodePool; ///< by order of arrival
    NodeList openList;               ///< reached and not expanded; the others form the closed list
    Index poolIndex = 0;             ///< the next free place of the pool
    std::uint32_t firstName = 1;     ///< name of the first cell of the pool
    bool isSteady = false;           ///< nothing has changed, nor forbidden a step, since the beginning
    Handle<SquareGrid> grid;         ///< of this search
    PathField fields[FIELDS];
    PathField *field = fields; ///< of this search
    std::size_t nextField = 0; ///< index of the one to be given to another grid
    int toX = 0;               ///< column of the destination
    int toZ = 0;               ///< row of the destination
    Index found = NONE;        ///< the destination, once a run has succeeded
    PathArray<PathNode> path;  ///< as it was laid out
};
