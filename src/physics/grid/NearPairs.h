// NearPairs: which volumes of a grid stand near enough to touch, in the order in which they are tested.
#pragma once

#include "physics/grid/VolumeListGrid.h"

#include <cstdint>
#include <vector>

/// Finds the pairs of volumes that share a cell and whose outlines meet: moving with moving, moving with static ones.
///
/// A pair comes once, in the order of a walk over all cells that tests each entry of a cell's list of moving volumes
/// with those behind it and then with the static ones. The walk itself is not made: most pairs that share a cell are
/// far apart, since a volume's cells reach much farther than what it touches. Moving volumes are sorted by their
/// middles into bins instead: as large as a cell, and twice, four times ... as large for volumes that neighbouring bins
/// of the smaller size would not show. Keeps its memory; borrows the volumes.
class NearPairs
{
public:
    /// Two volumes to be tested, the one that tests first.
    struct Pair
    {
        Handle<BoundingVolume> one, two;
    };

    /// The pairs of two grids of the same cells; good until the next call.
    /// @param nearCorner  of the cell 0, 0, metres
    /// @cost the cells, the volumes, and the pairs times the logarithm of their count; allocates where a count grows
    const std::vector<Pair> &find(VolumeListGrid &moving, VolumeListGrid &fixed, const Vec4 &nearCorner,
                                  float cellSize);

private:
    /// All bins of one size. Empty ones stand around them, so that each has eight neighbours.
    struct Level
    {
        float longestReach; ///< of its volumes, metres
        float binsPerMetre;
        int columns, rows;
        std::uint32_t firstBin; ///< number of the empty one before the first row
        std::uint32_t stride;   ///< bins from row to row
        std::uint32_t count;    ///< volumes in it

        std::uint32_t binOf(float x, float z) const;
    };
    /// A moving volume in its bin.
    struct Entry
    {
        AxisBox box;
        std::uint32_t rank; ///< in the order of arrival
        std::uint32_t bin;
    };
    /// Where a pair stands in the order of the walk.
    struct Turn
    {
        std::uint64_t cellAndOne; ///< number of the first cell that they share, then the rank of the first volume
        std::uint32_t two;        ///< rank of the second volume; static ones stand behind all moving ones

        bool operator==(const Turn &rhs) const = default;
        bool operator<(const Turn &rhs) const
        {
            return cellAndOne != rhs.cellAndOne ? cellAndOne < rhs.cellAndOne : two < rhs.two;
        }
    };

    void makeLevels(float cellSize);
    void fillBins();
    void pairWithMoving();
    void pairWithMoving(const Entry &one, std::uint32_t from, std::uint32_t to);
    void pairWithLevel(const Entry &one, const Level &larger);
    void pairWithFixed(const Entry &one);
    void addTurn(const CellRect &one, const CellRect &two, std::uint32_t rankOne, std::uint32_t rankTwo);
    void listPairs();

    VolumeListGrid *moving = nullptr;  ///< for the call
    VolumeListGrid *fixed = nullptr;   ///< for the call
    Vec4 nearCorner;                   ///< metres
    std::vector<Level> levels;         ///< by size
    std::vector<Entry> unsorted;       ///< by order of arrival
    std::vector<Entry> entries;        ///< bin by bin
    std::vector<std::uint32_t> starts; ///< first entry of each bin, and one past the last
    std::vector<Turn> turns;
    std::vector<Pair> pairs;
};
