// ReachedCell: what a search knows of a cell that it has come to.
#pragma once

#include <cstdint>

/// A cell that a search has reached, and the cheapest way to it so far.
///
/// Stands in the pool of its search, by order of arrival, and names others by their places there.
struct ReachedCell
{
    typedef std::uint32_t Index; ///< of a cell in its pool
    static constexpr Index NONE = ~Index(0);
    static constexpr Index CLOSED = NONE - 1;   ///< as `previous`, of what has been taken out of the open list
    static constexpr std::uint8_t BEGUN_AT = 8; ///< as `cameBy`, of the start: no SquareGrid::Neighbor

    int x = 0;
    int z = 0;
    float movementCost = 0.f;       ///< of the way from the start
    float totalCost = 0.f;          ///< of that and of what is taken to be left
    Index parent = NONE;            ///< the cell before it on the way; NONE for the start
    Index previous = NONE;          ///< before it in the open list
    Index next = NONE;              ///< behind it in the open list
    std::uint8_t cameBy = BEGUN_AT; ///< the step from the parent
};
static_assert(sizeof(ReachedCell) == 32, "two share a line of the cache");

/// Orders cells as they stand in their grid, row by row.
struct NodeComp
{
    bool operator()(const ReachedCell &lhs, const ReachedCell &rhs) const
    {
        return lhs.z != rhs.z ? lhs.z < rhs.z : lhs.x < rhs.x;
    }
};

/// Orders cells by what their whole ways are taken to cost; of equal ones the one that came first stays in front.
struct CostComp
{
    bool operator()(const ReachedCell &lhs, const ReachedCell &rhs) const { return lhs.totalCost < rhs.totalCost; }
};
