// VolumeListGrid: which volumes stand in each cell of a grid.
#pragma once

#include "physics/grid/CellRect.h"

#include "object/tree/Handle.h"

#include <cmath>
#include <cstdint>
#include <span>
#include <vector>

class BoundingVolume;

/// The volumes of one cell in the order of their arrival.
typedef std::span<const Handle<BoundingVolume>> VolumeList;

/// A box along the axes of the grid.
struct AxisBox
{
    float centre[3] = {}; ///< metres
    float reach[3] = {};  ///< half extents, metres; negative for what can touch nothing

    /// Room for the rounding of the exact tests, metres.
    static constexpr float SLACK = 1e-3f;

    /// Whether what two boxes hold may touch; numbers that are none count as near.
    bool isNear(const AxisBox &rhs) const
    {
        // All axes at once: most pairs are apart along one of them, but nobody can tell which.
        return (countApart(rhs, 0) | countApart(rhs, 1) | countApart(rhs, 2)) == 0;
    }

private:
    /// 1 where the boxes are apart along an axis, a number since it is combined without a branch.
    int countApart(const AxisBox &rhs, int axis) const
    {
        return std::fabs(centre[axis] - rhs.centre[axis]) > reach[axis] + rhs.reach[axis] + SLACK;
    }
};

/// Where a volume stands and how far it reaches, for a first, coarse look.
///
/// Half a line of the cache: walks over cells meet outlines in no order.
struct alignas(32) VolumeOutline : AxisBox
{
    BoundingVolume *volume = nullptr; ///< null for one that no longer lived when it was put in
};

/// One VolumeList per cell, kept as rectangles and laid out cell by cell when somebody reads.
///
/// A volume that moves every frame costs one rectangle, however many cells it covers; the lists of a frame are laid out
/// in one counting sort over flat arrays. Volumes that died fall out at the next layout.
class VolumeListGrid
{
public:
    typedef std::uint32_t Slot;
    typedef std::span<const Slot> SlotList;
    static constexpr Slot NO_SLOT = ~Slot(0);

    /// Changes the count of cells; volumes stay in the cells that both sizes have.
    void resize(int columns, int rows);

    /// Appends a volume to the lists of some cells, which must be of this grid.
    /// @return where it is kept, for `remove`; NO_SLOT for no cells
    Slot add(const Handle<BoundingVolume> &volume, const CellRect &cells, const VolumeOutline &outline);
    /// Takes a volume out of some cells and appends it to the lists of others: `remove` and `add` in one.
    /// @param slot  what `add` gave for it
    /// @return false, with nothing done, unless the slot keeps the volume in just those cells and may be the only one
    bool move(const Handle<BoundingVolume> &volume, Slot slot, const CellRect &from, const CellRect &to,
              const VolumeOutline &outline);
    /// Gives a volume a new outline wherever it is kept.
    /// @param slot  what `add` gave for it, if known: saves a search
    void setOutline(const Handle<BoundingVolume> &volume, const VolumeOutline &outline, Slot slot = NO_SLOT);
    /// Takes all occurrences of a volume out of some cells.
    /// @param slot  what `add` gave for it, if known: saves a search
    void remove(const Handle<BoundingVolume> &volume, const CellRect &cells, Slot slot = NO_SLOT);
    /// Takes the first occurrence of a volume out of each of some cells.
    void removeFirst(const Handle<BoundingVolume> &volume, const CellRect &cells);
    /// Whether a slot keeps a volume.
    bool holds(Slot slot, const Handle<BoundingVolume> &volume) const
    {
        return slot < placements.size() && placements[slot].turn != 0 && placements[slot].volume == volume;
    }
    /// Notes that a volume may be kept in more than one slot, so that its removals search them all.
    void expectSeveral(const Handle<BoundingVolume> &volume);

    /// The volumes of one cell, columns * z + x; good until something is added or removed.
    VolumeList list(int cell)
    {
        refresh();
        if (!volumesLaidOut)
            fillVolumes();
        return laidOut(volumes, cell, cell);
    }
    /// The slots of the volumes of one cell, in the order of `list`, as of the last `refresh`.
    SlotList slots(int cell) const { return laidOut(volumeSlots, cell, cell); }
    /// The slots of some neighbouring cells of a row, which must be of this grid; one that covers several comes as
    /// often.
    SlotList slotsInRow(int z, int minX, int maxX) const
    {
        return laidOut(volumeSlots, columns * z + minX, columns * z + maxX);
    }
    /// Calls a function with each volume in some cells, in no order, without laying any lists out.
    ///
    /// One that is kept in several slots comes as often, one that died may still come.
    template <class Function>
    void forEachIn(const CellRect &cells, Function function) const
    {
        for (const Placement &placement : placements)
            if (placement.turn != 0 && !placement.cells.common(cells).isEmpty())
                function(placement.volume);
    }
    /// Whether a slot is seen for the first time under a number that the caller counts up.
    bool markSeen(Slot slot, std::uint32_t number)
    {
        const bool first = placements[slot].seen != number;
        placements[slot].seen = number;
        return first;
    }
    const VolumeOutline &outlineIn(Slot slot) const { return outlines[slot]; }
    const CellRect &cellsOf(Slot slot) const { return placements[slot].cells; }

    /// Counts what was added, moved, taken out or given another outline.
    std::uint64_t getChangeCount() const { return changeCount; }
    int getColumns() const { return columns; }
    int getRows() const { return rows; }
    /// Count of the slots in use, as of the last `settle`.
    std::uint32_t getCount() const { return static_cast<std::uint32_t>(arrivals.size()); }
    /// A slot by its place in the order of arrival, as of the last `settle`.
    Slot slotAt(std::uint32_t rank) const { return arrivals[rank].slot; }
    Handle<BoundingVolume> volumeAt(std::uint32_t rank) const { return placements[slotAt(rank)].volume; }
    std::uint32_t rankOf(Slot slot) const { return placements[slot].rank; }

    /// Brings the order of arrival up to date: without what left, moved on or died.
    void settle()
    {
        if (changed || objectChanges != ObjectMap().getChangeCount())
            makeOrder();
    }
    /// Brings the lists of all cells up to date.
    void refresh()
    {
        settle();
        if (!listsLaidOut)
            fillLists();
    }

private:
    /// A volume in all cells of a rectangle. Half a line of the cache each, as outlines.
    struct alignas(32) Placement
    {
        Handle<BoundingVolume> volume;
        CellRect cells;
        std::uint32_t turn = 0; ///< when it arrived; 0 for a free slot
        std::uint32_t seen = 0; ///< number of the last segment that came by
        std::uint32_t rank = 0; ///< in the order of arrival, while that is settled
    };
    /// A place in the order of arrival; out of date when the slot's turn is another.
    struct Arrival
    {
        Slot slot;
        std::uint32_t turn;
    };

    bool isCurrent(const Arrival &arrival) const { return placements[arrival.slot].turn == arrival.turn; }
    bool mayBeSeveral(const Handle<BoundingVolume> &volume) const;
    Slot occupy(const Handle<BoundingVolume> &volume, const CellRect &cells, const VolumeOutline &outline);
    void vacate(Slot slot);
    void enqueue(Slot slot);
    void arrive(Slot slot, const CellRect &cells, const VolumeOutline &outline);
    void cut(Slot slot, const CellRect &hole);
    template <class T>
    std::span<const T> laidOut(const std::vector<T> &entries, int firstCell, int lastCell) const
    {
        return std::span<const T>(entries.data() + starts[static_cast<std::size_t>(firstCell)],
                                  entries.data() + starts[static_cast<std::size_t>(lastCell) + 1]);
    }
    void makeOrder();
    void dropDead();
    void fillLists();
    void fillVolumes();

    int columns = 0;
    int rows = 0;

    std::vector<Placement> placements;   ///< by slot
    std::vector<VolumeOutline> outlines; ///< by slot
    std::vector<Slot> freeSlots;
    std::vector<Arrival> arrivals;                 ///< in order; holds entries that are out of date until a layout
    std::vector<Handle<BoundingVolume>> scattered; ///< volumes that may have several slots, ascending
    std::uint32_t lastTurn = 0;
    std::uint64_t changeCount = 0;
    bool changed = true;             ///< since the last order was made
    std::uint64_t objectChanges = 0; ///< births and deaths that the order takes account of

    std::vector<std::uint32_t> starts = {0};     ///< first index into the lists of each cell, and one past the last
    std::vector<Slot> volumeSlots;               ///< all lists, cell by cell: where each volume is kept
    std::vector<Handle<BoundingVolume>> volumes; ///< the same lists as handles, once somebody asked for them
    bool listsLaidOut = false;
    bool volumesLaidOut = false;
};
