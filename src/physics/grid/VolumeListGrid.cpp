#include "physics/grid/VolumeListGrid.h"

#include "physics/volumes/BoundingVolume.h"

#include <algorithm>

void VolumeListGrid::resize(int newColumns, int newRows)
{
    const CellRect kept{0, 0, std::min(columns, newColumns) - 1, std::min(rows, newRows) - 1};
    for (Slot slot = 0; slot < placements.size(); ++slot)
    {
        Placement &placement = placements[slot];
        if (placement.turn == 0)
            continue;
        placement.cells = placement.cells.common(kept);
        if (placement.cells.isEmpty())
            vacate(slot);
    }
    columns = newColumns;
    rows = newRows;
    changed = true;
}

VolumeListGrid::Slot VolumeListGrid::add(const Handle<BoundingVolume> &volume, const CellRect &cells,
                                         const VolumeOutline &outline)
{
    if (cells.isEmpty())
        return NO_SLOT;
    const Slot slot = occupy(volume, cells, outline);
    enqueue(slot);
    return slot;
}

void VolumeListGrid::enqueue(Slot slot)
{
    // Nobody reads a grid whose entries pile up unread.
    if (arrivals.size() > 2 * placements.size() + 64)
        std::erase_if(arrivals, [this](const Arrival &arrival) { return !isCurrent(arrival); });
    arrivals.push_back(Arrival{slot, placements[slot].turn});
}

bool VolumeListGrid::move(const Handle<BoundingVolume> &volume, Slot slot, const CellRect &from, const CellRect &to,
                          const VolumeOutline &outline)
{
    if (to.isEmpty() || !holds(slot, volume) || placements[slot].cells != from || mayBeSeveral(volume))
        return false;
    arrive(slot, to, outline);
    enqueue(slot);
    return true;
}

void VolumeListGrid::remove(const Handle<BoundingVolume> &volume, const CellRect &cells, Slot slot)
{
    if (cells.isEmpty())
        return;
    if (holds(slot, volume) && !mayBeSeveral(volume))
        return cut(slot, cells);
    const Slot count = static_cast<Slot>(placements.size()); // what is cut off below lies outside the cells
    for (slot = 0; slot < count; ++slot)
        if (holds(slot, volume))
            cut(slot, cells);
}

void VolumeListGrid::setOutline(const Handle<BoundingVolume> &volume, const VolumeOutline &outline, Slot slot)
{
    ++changeCount;
    if (holds(slot, volume) && !mayBeSeveral(volume))
    {
        outlines[slot] = outline;
        return;
    }
    for (slot = 0; slot < placements.size(); ++slot)
        if (holds(slot, volume))
            outlines[slot] = outline;
}

void VolumeListGrid::removeFirst(const Handle<BoundingVolume> &volume, const CellRect &cells)
{
    if (cells.isEmpty())
        return;
    for (std::size_t i = 0; i < arrivals.size(); ++i)
    {
        const Arrival arrival = arrivals[i];
        if (!isCurrent(arrival) || placements[arrival.slot].volume != volume)
            continue;
        const CellRect taken = placements[arrival.slot].cells.common(cells);
        if (taken.isEmpty())
            continue;
        cut(arrival.slot, taken);
        // The other cells still have their first one to come.
        cells.forEachPieceOutside(taken, [&](const CellRect &rest) { removeFirst(volume, rest); });
        return;
    }
}

void VolumeListGrid::expectSeveral(const Handle<BoundingVolume> &volume)
{
    const auto place = std::lower_bound(scattered.begin(), scattered.end(), volume);
    if (place == scattered.end() || *place != volume)
        scattered.insert(place, volume);
}

bool VolumeListGrid::mayBeSeveral(const Handle<BoundingVolume> &volume) const
{
    return !scattered.empty() && std::binary_search(scattered.begin(), scattered.end(), volume);
}

VolumeListGrid::Slot VolumeListGrid::occupy(const Handle<BoundingVolume> &volume, const CellRect &cells,
                                            const VolumeOutline &outline)
{
    Slot slot;
    if (freeSlots.empty())
    {
        slot = static_cast<Slot>(placements.size());
        placements.emplace_back();
        outlines.emplace_back();
    }
    else
    {
        slot = freeSlots.back();
        freeSlots.pop_back();
    }
    placements[slot].volume = volume;
    arrive(slot, cells, outline);
    return slot;
}

/// Gives a slot the next turn in the order of arrival.
void VolumeListGrid::arrive(Slot slot, const CellRect &cells, const VolumeOutline &outline)
{
    if (++lastTurn == 0)
        ++lastTurn;
    Placement &placement = placements[slot];
    placement.cells = cells;
    placement.turn = lastTurn;
    outlines[slot] = outline;
    changed = true;
    ++changeCount;
}

void VolumeListGrid::vacate(Slot slot)
{
    placements[slot] = Placement();
    freeSlots.push_back(slot);
    changed = true;
    ++changeCount;
}

/// Takes cells out of a placement; what is left keeps its place in the order of arrival.
void VolumeListGrid::cut(Slot slot, const CellRect &hole)
{
    const Placement whole = placements[slot];
    const VolumeOutline outline = outlines[slot];
    if (hole.contains(whole.cells))
        return vacate(slot);
    if (whole.cells.common(hole).isEmpty())
        return;
    const auto arrival = std::find_if(arrivals.begin(), arrivals.end(),
                                      [&](const Arrival &a) { return a.slot == slot && a.turn == whole.turn; });
    auto index = arrival - arrivals.begin();
    vacate(slot);
    whole.cells.forEachPieceOutside(
        hole,
        [&](const CellRect &piece)
        {
            const Slot rest = occupy(whole.volume, piece, outline);
            arrivals.insert(arrivals.begin() + index++, Arrival{rest, placements[rest].turn});
        });
    expectSeveral(whole.volume);
}

void VolumeListGrid::makeOrder()
{
    const std::uint64_t changes = ObjectMap().getChangeCount();
    if (objectChanges != changes)
    {
        objectChanges = changes;
        dropDead();
    }
    if (!changed)
        return;
    std::uint32_t rank = 0;
    for (const Arrival &arrival : arrivals)
    {
        if (!isCurrent(arrival))
            continue;
        placements[arrival.slot].rank = rank;
        arrivals[rank++] = arrival;
    }
    arrivals.resize(rank);
    changed = listsLaidOut = volumesLaidOut = false;
}

void VolumeListGrid::dropDead()
{
    for (Slot slot = 0; slot < placements.size(); ++slot)
        if (placements[slot].turn != 0 && !placements[slot].volume.isValid())
            vacate(slot);
    std::erase_if(scattered, [](const Handle<BoundingVolume> &volume) { return !volume.isValid(); });
}

/// Counting sort of all placements by cell: counts, then where each list ends, then the lists from their ends.
void VolumeListGrid::fillLists()
{
    const std::size_t cellCount = static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows);
    starts.assign(cellCount + 1, 0);
    const auto forEachCell = [this](const CellRect &cells, auto function)
    {
        for (int z = cells.minZ; z <= cells.maxZ; ++z)
        {
            std::uint32_t *const row = starts.data() + static_cast<std::size_t>(columns) * static_cast<std::size_t>(z);
            for (int x = cells.minX; x <= cells.maxX; ++x)
                function(row[x]);
        }
    };
    for (const Arrival &arrival : arrivals)
        forEachCell(placements[arrival.slot].cells, [](std::uint32_t &count) { ++count; });
    std::uint32_t end = 0;
    for (std::uint32_t &start : starts)
        start = end += start;
    volumeSlots.resize(end);
    for (std::size_t i = arrivals.size(); i-- > 0;)
    {
        const Slot slot = arrivals[i].slot;
        forEachCell(placements[slot].cells, [&](std::uint32_t &start) { volumeSlots[--start] = slot; });
    }
    listsLaidOut = true;
}

void VolumeListGrid::fillVolumes()
{
    volumes.resize(volumeSlots.size());
    std::transform(volumeSlots.begin(), volumeSlots.end(), volumes.begin(),
                   [this](Slot slot) { return placements[slot].volume; });
    volumesLaidOut = true;
}
