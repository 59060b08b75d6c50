// NodeList: the cells of a search that wait to be expanded, cheapest first.
#pragma once

#include "ai/paths/PathMemory.h"
#include "ai/paths/ReachedCell.h"

#include <cstddef>
#include <cstdint>

/// An ordered list of the cells of one pool, by `CostComp`; among equal costs in the order of insertion.
///
/// Kept as one ordered chain for each whole number of cost, so that what costs whole numbers goes to the end of its
/// chain at once, and what costs fractions passes only those that cost as much but for the fraction. The links stand
/// in the cells, which are borrowed. Emptying it costs what it has held.
class NodeList
{
public:
    typedef ReachedCell::Index Index;
    static constexpr Index NONE = ReachedCell::NONE;

    /// Makes the list one of the cells of a pool; forgets what it held.
    void setPool(ReachedCell *cells);

    /// Puts a cell behind all that cost no more.
    void insert(Index at)
    {
        ReachedCell &cell = cells[at];
        const std::size_t number = chainOf(cell.totalCost);
        Chain &chain = chains[number];
        std::uint64_t &word = filled[number / BITS];
        const std::uint64_t bit = std::uint64_t(1) << number % BITS;
        if (!(word & bit))
        {
            word |= bit;
            chain = Chain{at, at, cell.totalCost};
            cell.previous = cell.next = NONE;
            lowest = number < lowest ? number : lowest;
            highest = number > highest ? number : highest;
            return;
        }
        Index before = chain.last;
        if (cell.totalCost < chain.most)
            while (before != NONE && CostComp()(cell, cells[before]))
                before = cells[before].previous;
        link(at, before, chain);
    }
    /// Takes a cell out that the list holds, before its cost changes.
    void remove(Index at)
    {
        ReachedCell &cell = cells[at];
        const std::size_t chain = chainOf(cell.totalCost);
        (cell.previous == NONE ? chains[chain].first : cells[cell.previous].next) = cell.next;
        (cell.next == NONE ? chains[chain].last : cells[cell.next].previous) = cell.previous;
        if (chains[chain].first == NONE)
            filled[chain / BITS] &= ~(std::uint64_t(1) << chain % BITS);
        cell.previous = ReachedCell::CLOSED;
    }
    /// Takes the first cell out; NONE from an empty list.
    Index takeFirst()
    {
        const Index first = getFirst();
        if (first == NONE)
            return NONE;
        const Index second = cells[first].next;
        chains[lowest].first = second;
        if (second == NONE)
            filled[lowest / BITS] &= ~(std::uint64_t(1) << lowest % BITS);
        else
            cells[second].previous = NONE;
        cells[first].previous = ReachedCell::CLOSED;
        return first;
    }

    /// Whether the list holds a cell that it has held before.
    bool holds(Index at) const { return cells[at].previous != ReachedCell::CLOSED; }
    bool isEmpty() { return getFirst() == NONE; }
    /// The cell that `takeFirst` would give.
    Index getFirst() { return isInLowest() ? chains[lowest].first : findFirst(); }
    void clear();

private:
    struct Chain
    {
        Index first;
        Index last;
        float most; ///< what the last one costs, or more
    };
    static constexpr std::size_t CHAINS = 1 << 14; ///< what costs more shares the last one
    static constexpr std::size_t BITS = 64;

    static std::size_t chainOf(float cost)
    {
        constexpr float last = static_cast<float>(CHAINS - 1);
        return static_cast<std::size_t>(cost < last ? static_cast<int>(cost) : static_cast<int>(CHAINS) - 1);
    }
    void link(Index at, Index before, Chain &chain)
    {
        const Index behind = before == NONE ? chain.first : cells[before].next;
        cells[at].previous = before;
        cells[at].next = behind;
        (before == NONE ? chain.first : cells[before].next) = at;
        (behind == NONE ? chain.last : cells[behind].previous) = at;
        chain.most = behind == NONE ? cells[at].totalCost : chain.most;
    }
    bool isInLowest() const { return lowest < CHAINS && (filled[lowest / BITS] >> lowest % BITS & 1u); }
    Index findFirst();

    ReachedCell *cells = nullptr;
    PathArray<Chain> chains;         ///< by cost; only those that are filled mean anything
    PathArray<std::uint64_t> filled; ///< a bit a chain
    std::size_t lowest = CHAINS;     ///< no chain below is filled
    std::size_t highest = 0;         ///< no chain above is filled
};
