#include "physics/grid/NearPairs.h"

#include "physics/volumes/PairTests.h"

#include <algorithm>
#include <limits>

namespace
{

/// The bin along one axis of a distance from the near edge, in bins; what lies outside counts as at the edge.
std::uint32_t binAlong(float distance, int count)
{
    return static_cast<std::uint32_t>(std::min(std::max(distance, 0.f), static_cast<float>(count - 1)));
}

} // namespace

const std::vector<NearPairs::Pair> &NearPairs::find(VolumeListGrid &moving_, VolumeListGrid &fixed_,
                                                    const Vec4 &nearCorner_, float cellSize)
{
    moving = &moving_;
    fixed = &fixed_;
    nearCorner = nearCorner_;
    turns.clear();
    moving->settle();
    fixed->refresh();
    if (moving->getCount() > 0)
    {
        makeLevels(cellSize);
        fillBins();
        pairWithMoving();
        if (fixed->getCount() > 0)
            for (const Entry &entry : entries)
                pairWithFixed(entry);
    }
    listPairs();
    return pairs;
}

std::uint32_t NearPairs::Level::binOf(float x, float z) const
{
    return firstBin + (binAlong(z * binsPerMetre, rows) + 1) * stride + binAlong(x * binsPerMetre, columns) + 1;
}

/// The sizes of bins, up to the one of which all cells are one bin.
void NearPairs::makeLevels(float cellSize)
{
    levels.clear();
    std::uint32_t bins = 0;
    for (int columns = moving->getColumns(), rows = moving->getRows(); columns > 0;
         columns = (columns + 1) / 2, rows = (rows + 1) / 2)
    {
        const bool isLast = columns == 1 && rows == 1;
        // Two volumes of a level, or of it and a smaller one, that are near stand in neighbouring bins of it.
        const float reach = isLast ? std::numeric_limits<float>::infinity() : 0.5f * cellSize - 2.f * AxisBox::SLACK;
        const std::uint32_t stride = static_cast<std::uint32_t>(columns) + 2;
        levels.push_back(Level{reach, 1.f / cellSize, columns, rows, bins, stride, 0});
        bins += stride * (static_cast<std::uint32_t>(rows) + 2);
        cellSize *= 2.f;
        if (isLast)
            break;
    }
    starts.assign(bins + 1, 0);
}

/// Counting sort of the moving volumes by bin: counts, then where each bin ends, then the entries from their ends.
void NearPairs::fillBins()
{
    unsorted.clear();
    for (std::uint32_t rank = 0; rank < moving->getCount(); ++rank)
    {
        const AxisBox &box = moving->outlineIn(moving->slotAt(rank));
        if (std::isnan(box.centre[0]) || std::isnan(box.centre[2]))
            continue; // stands nowhere
        const float reach = std::max(box.reach[0], box.reach[2]);
        Level *level = levels.data();
        while (reach > level->longestReach)
            ++level;
        ++level->count;
        const std::uint32_t bin = level->binOf(box.centre[0] - nearCorner.x, box.centre[2] - nearCorner.z);
        ++starts[bin];
        unsorted.push_back(Entry{box, rank, bin});
    }
    std::uint32_t end = 0;
    for (std::uint32_t &start : starts)
        start = end += start;
    entries.resize(unsorted.size());
    for (std::size_t i = unsorted.size(); i-- > 0;)
        entries[--starts[unsorted[i].bin]] = unsorted[i];
}

void NearPairs::pairWithMoving()
{
    std::erase_if(levels, [](const Level &level) { return level.count == 0; });
    std::uint32_t next = 0;
    for (const Level &level : levels)
        for (const std::uint32_t end = next + level.count; next < end; ++next)
        {
            // The rest of its bin and the next bin, then three bins of the next row: what lies before has met it.
            const std::uint32_t bin = entries[next].bin, below = bin + level.stride;
            pairWithMoving(entries[next], next + 1, starts[bin + 2]);
            pairWithMoving(entries[next], starts[below - 1], starts[below + 2]);
            for (const Level *larger = &level + 1; larger <= &levels.back(); ++larger)
                pairWithLevel(entries[next], *larger);
        }
}

/// Pairs a moving volume with those of a larger level that are near.
void NearPairs::pairWithLevel(const Entry &one, const Level &larger)
{
    const std::uint32_t middle = larger.binOf(one.box.centre[0] - nearCorner.x, one.box.centre[2] - nearCorner.z);
    for (const std::uint32_t bin : {middle - larger.stride, middle, middle + larger.stride})
        pairWithMoving(one, starts[bin - 1], starts[bin + 2]);
}

/// Pairs a moving volume with those among some entries that are near.
void NearPairs::pairWithMoving(const Entry &one, std::uint32_t from, std::uint32_t to)
{
    for (const Entry *two = entries.data() + from, *const end = entries.data() + to; two < end; ++two)
    {
        if (!one.box.isNear(two->box))
            continue;
        const auto [first, second] = std::minmax(one.rank, two->rank);
        addTurn(moving->cellsOf(moving->slotAt(first)), moving->cellsOf(moving->slotAt(second)), first, second);
    }
}

/// Pairs a moving volume with the static ones in its cells that are near, with some more than once.
void NearPairs::pairWithFixed(const Entry &one)
{
    const VolumeListGrid::Slot place = moving->slotAt(one.rank);
    const BoundingVolume *const volume = moving->outlineIn(place).volume;
    // What light and triggers reach is wide, and full of walls that mean nothing to them.
    if (volume && !areTestedWithWalls(volume->getVolumeType()))
        return;
    const CellRect cells = moving->cellsOf(place);
    for (int z = cells.minZ; z <= cells.maxZ; ++z)
        for (const VolumeListGrid::Slot slot : fixed->slotsInRow(z, cells.minX, cells.maxX))
            if (one.box.isNear(fixed->outlineIn(slot)))
                addTurn(cells, fixed->cellsOf(slot), one.rank, moving->getCount() + fixed->rankOf(slot));
}

/// Notes a pair that is near for the first cell that both stand in, if there is one.
void NearPairs::addTurn(const CellRect &one, const CellRect &two, std::uint32_t rankOne, std::uint32_t rankTwo)
{
    const CellRect common = one.common(two);
    if (common.isEmpty())
        return;
    const std::uint64_t cell =
        static_cast<std::uint64_t>(moving->getColumns()) * static_cast<std::uint64_t>(common.minZ) +
        static_cast<std::uint64_t>(common.minX);
    turns.push_back(Turn{cell << 32 | rankOne, rankTwo});
}

void NearPairs::listPairs()
{
    std::sort(turns.begin(), turns.end());
    turns.erase(std::unique(turns.begin(), turns.end()), turns.end());
    pairs.clear();
    const std::uint32_t movingCount = moving->getCount();
    for (const Turn &turn : turns)
    {
        const Handle<BoundingVolume> one = moving->volumeAt(static_cast<std::uint32_t>(turn.cellAndOne));
        const Handle<BoundingVolume> two =
            turn.two < movingCount ? moving->volumeAt(turn.two) : fixed->volumeAt(turn.two - movingCount);
        if (one != two)
            pairs.push_back(Pair{one, two});
    }
}
