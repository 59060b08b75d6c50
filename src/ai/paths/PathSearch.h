// PathSearch: finds a path over the cells of a grid, some cells at a time.
#pragma once

#include "ai/paths/OpenList.h"
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
/// Owns a pool of nodes and lists over it that are kept from search to search; starting one costs nothing of that. A
/// cell names its node in a field that is never cleared: the name counts if the node is in use and of that cell.
class PathSearch
{
public:
    /// The most nodes of a search; one that would need more fails.
    static constexpr std::size_t PAGE_SIZE = 100000;

    /// Begins a search at a cell of the grid.
    /// @return false, with nothing begun, where the destination is no cell of the grid: it cannot be reached
    bool begin(const PathGround &ground, const GridCell &start, const GridCell &destination);
    /// Expands some nodes.
    ///
    /// A grid that has changed since goes on as it is now; another grid than that of the beginning fails.
    PathStatus run(const PathGround &ground, int passes);
    /// Forgets the search.
    void clear();

    /// Whether nothing has been begun since the last `clear`.
    bool isEmpty() const { return poolIndex == 0; }
    /// The node of the destination, from which the parents lead to the start; null unless a run has succeeded.
    PathNode *getFinalNode() const { return finalNode; }
    /// The cell of the beginning, while the search is not empty.
    const GridCell &getStart() const { return nodePool[0].hex; }
    /// Count of cells that were reached.
    int getNodeCount() const { return static_cast<int>(poolIndex); }
    /// The cells that were reached: those that wait to be expanded, or those that have been.
    void listCells(bool waiting, HexCont &cells) const;

    /// What is taken to be left of a way: |dx| + |dz|, cells of one grid.
    static float calculateNodeHeuristic(const GridCell &start, const GridCell &target)
    {
        return static_cast<float>(std::abs(start.getX() - target.getX()) + std::abs(start.getZ() - target.getZ()));
    }
    /// What a way costs that goes on into a cell: 1 and the cell's saturation more, but never less, so that a search
    /// comes to its end whatever stands in a grid.
    static float calculateNodeCost(float movementCost, float saturation)
    {
        return saturation > -1.f ? movementCost + saturation + 1.f : movementCost;
    }

private:
    /// Fields of this many maps are kept.
    static constexpr std::size_t FIELDS = 4;

    bool prepare(const PathGround &ground);
    void chooseField(const Handle<SquareGrid> &grid);
    void nameNodes();
    bool expand(OpenList::Index current, const StepRule *rule);
    bool reach(PathNode &from, std::size_t cell, int x, int z);
    OpenList::Index createNode(std::size_t cell, int x, int z);
    OpenList::Index findNode(std::size_t cell, int x, int z)
    {
        const OpenList::Index node = field->nodeAt(cell);
        return node < poolIndex && nodePool[node].hex.getX() == x && nodePool[node].hex.getZ() == z ? node
                                                                                                    : OpenList::NONE;
    }

    PathArray<PathNode> nodePool; ///< by order of arrival
    OpenList openList;            ///< reached and not expanded; the other nodes form the closed list
    std::size_t poolIndex = 0;    ///< the next free node
    Handle<SquareGrid> grid;      ///< of this search
    PathField fields[FIELDS];
    PathField *field = fields; ///< of this search
    std::size_t nextField = 0; ///< index of the one to be given to another grid
    GridCell destination;
    PathNode *finalNode = nullptr;
};
