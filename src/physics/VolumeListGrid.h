// VolumeListGrid: which volumes stand in each cell of a grid.
#pragma once

#include "physics/CellRect.h"

#include "object/Handle.h"

#include <cstdint>
#include <span>
#include <vector>

class BoundingVolume;

/// The volumes of one cell in the order of their arrival.
typedef std::span<const Handle<BoundingVolume>> VolumeList;

/// Where a volume stands and how far it reaches along the axes of the grid, for a first, coarse look.
struct VolumeOutline
{
    BoundingVolume *volume = nullptr; ///< null for one that no longer lived when it was put in
    float centre[3] = {};
    float reach[3] = {}; ///< half extents; negative for what can touch nothing
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
        return laidOut(volumes, cell);
    }
    /// The slots of the volumes of one cell, in the order of `list`.
    SlotList slots(int cell)
    {
        refresh();
        return laidOut(volumeSlots, cell);
    }
    /// Whether a slot is seen for the first time under a number that the caller counts up.
    bool markSeen(Slot slot, std::uint32_t number)
    {
        const bool first = placements[slot].seen != number;
        placements[slot].seen = number;
        return first;
    }
    /// What a slot of the present layout keeps; its volume lives.
    const VolumeOutline &outlineIn(Slot slot) const { return placements[slot].outline; }
    const CellRect &cellsOf(Slot slot) const { return placements[slot].cells; }

    /// Brings the layout up to date; does nothing when it is, or while it is frozen.
    void refresh()
    {
        if (frozen == 0 && (changed || objectChanges != ObjectMap().getChangeCount()))
            makeLayout();
    }
    /// Keeps the layout as it is, whatever is added and removed, while somebody walks over it; `thaw` ends that.
    void freeze()
    {
        refresh();
        ++frozen;
    }
    void thaw() { --frozen; }

private:
    /// A volume in all cells of a rectangle. One line of the cache each: walks over cells meet them in no order.
    struct alignas(64) Placement
    {
        Handle<BoundingVolume> volume;
        CellRect cells;
        std::uint32_t turn = 0; ///< when it arrived; 0 for a free slot
        VolumeOutline outline;
        std::uint32_t seen = 0; ///< number of the last segment that came by
    };
    static_assert(sizeof(Placement) == 64);
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
    std::span<const T> laidOut(const std::vector<T> &entries, int cell) const
    {
        const std::size_t index = static_cast<std::size_t>(cell);
        if (index + 1 >= starts.size()) // of a size that has not been laid out yet
            return {};
        return std::span<const T>(entries.data() + starts[index], entries.data() + starts[index + 1]);
    }
    void makeLayout();
    void dropDead();
    void fillLists();

    int columns = 0;
    int rows = 0;

    std::vector<Placement> placements; ///< by slot
    std::vector<Slot> freeSlots;
    std::vector<Arrival> arrivals;                 ///< in order; holds entries that are out of date until a layout
    std::vector<Handle<BoundingVolume>> scattered; ///< volumes that may have several slots, ascending
    std::uint32_t lastTurn = 0;
    bool changed = true;
    std::uint64_t objectChanges = 0; ///< births and deaths that the layout takes account of

    std::vector<std::uint32_t> starts = {0};     ///< first index into `volumes` of each cell, and one past the last
    std::vector<Handle<BoundingVolume>> volumes; ///< all lists, cell by cell
    std::vector<Slot> volumeSlots;               ///< where each of them is kept
    int frozen = 0;                              ///< walks under way
};
