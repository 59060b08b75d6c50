// OpenList: the nodes of a search that wait to be expanded, cheapest first.
#pragma once

#include "ai/paths/PathMemory.h"
#include "ai/paths/PathNode.h"

#include <cstddef>
#include <cstdint>

/// An ordered list of the nodes of one pool, by `CostComp`; among equal costs in the order of insertion.
///
/// Kept as one ordered chain for each whole number of cost, so that what costs whole numbers goes to the end of its
/// chain at once, and what costs fractions passes only those that cost as much but for the fraction. The links stand
/// beside the nodes, which are borrowed. Emptying it costs what it has held.
class OpenList
{
public:
    typedef std::uint32_t Index; ///< of a node in its pool
    static constexpr Index NONE = ~Index(0);

    /// Makes the list one of the nodes of a pool; forgets what it held.
    void setPool(const PathNode *nodes, std::size_t count);

    /// Puts a node behind all that cost no more.
    void insert(Index node)
    {
        const std::size_t chain = chainOf(nodes[node].totalCost);
        std::uint64_t &word = filled[chain / BITS];
        const std::uint64_t bit = std::uint64_t(1) << chain % BITS;
        if (!(word & bit))
        {
            word |= bit;
            chains[chain] = Chain{node, node, nodes[node].totalCost};
            links[node] = Link{NONE, NONE};
            lowest = chain < lowest ? chain : lowest;
            highest = chain > highest ? chain : highest;
            return;
        }
        Index before = chains[chain].last;
        if (nodes[node].totalCost < chains[chain].most)
            while (before != NONE && CostComp()(nodes[node], nodes[before]))
                before = links[before].previous;
        link(node, before, chains[chain]);
    }
    /// Takes a node out that the list holds, before its cost changes.
    void remove(Index node)
    {
        const std::size_t chain = chainOf(nodes[node].totalCost);
        const Link at = links[node];
        (at.previous == NONE ? chains[chain].first : links[at.previous].next) = at.next;
        (at.next == NONE ? chains[chain].last : links[at.next].previous) = at.previous;
        if (chains[chain].first == NONE)
            filled[chain / BITS] &= ~(std::uint64_t(1) << chain % BITS);
        links[node] = Link{CLOSED, CLOSED};
    }
    /// Takes the first node out; NONE from an empty list.
    Index takeFirst();

    /// Whether the list holds a node that it has held before.
    bool holds(Index node) const { return links[node].previous != CLOSED; }
    bool isEmpty() { return getFirst() == NONE; }
    /// The node that `takeFirst` would give.
    Index getFirst() { return isInLowest() ? chains[lowest].first : findFirst(); }
    void clear();

private:
    struct Link
    {
        Index previous;
        Index next;
    };
    struct Chain
    {
        Index first;
        Index last;
        float most; ///< what the last one costs, or more
    };
    static constexpr Index CLOSED = NONE - 1;      ///< in the links of what the list has held
    static constexpr std::size_t CHAINS = 1 << 14; ///< what costs more shares the last one
    static constexpr std::size_t BITS = 64;

    static std::size_t chainOf(float cost)
    {
        constexpr float last = static_cast<float>(CHAINS - 1);
        return static_cast<std::size_t>(cost < last ? static_cast<int>(cost) : static_cast<int>(CHAINS) - 1);
    }
    void link(Index node, Index before, Chain &chain)
    {
        const Index behind = before == NONE ? chain.first : links[before].next;
        links[node] = Link{before, behind};
        (before == NONE ? chain.first : links[before].next) = node;
        (behind == NONE ? chain.last : links[behind].previous) = node;
        chain.most = behind == NONE ? nodes[node].totalCost : chain.most;
    }
    bool isInLowest() const { return lowest < CHAINS && (filled[lowest / BITS] >> lowest % BITS & 1u); }
    Index findFirst();

    const PathNode *nodes = nullptr;
    PathArray<Link> links;           ///< by node
    PathArray<Chain> chains;         ///< by cost; only those that are filled mean anything
    PathArray<std::uint64_t> filled; ///< a bit a chain
    std::size_t lowest = CHAINS;     ///< no chain below is filled
    std::size_t highest = 0;         ///< no chain above is filled
};
