// PartitioningGrid: the nearest volume on a segment.
#include "physics/grid/PartitioningGrid.h"

#include "physics/grid/SegmentFilter.h"
#include "physics/volumes/BoundingVolume.h"

#include <algorithm>
#include <limits>

namespace
{

SegmentHit noHit()
{
    SegmentHit hit;
    hit.collision.t = std::numeric_limits<float>::infinity();
    return hit;
}

/// How far from a border between cells a point may lie to count on both sides, cells: more than the rounding of floats.
constexpr float BORDER = 1e-3f;

/// One axis of the walk, in cells.
struct Axis
{
    float begin, end;
    int cells; ///< of the grid
    float delta = end - begin;
    int step = (delta > 0.f) - (delta < 0.f);

    /// The parameter at which a segment along this axis leaves a column of cells.
    float leaves(int column) const
    {
        return std::min(1.f, (static_cast<float>(step > 0 ? column + 1 : column) - begin) / delta);
    }
    float at(float t) const { return begin + delta * t; }
    /// The cell that a coordinate lies in; -1 for all before the first one, and their count for all behind the last.
    int cellAt(float coordinate) const
    {
        const float within = std::min(std::max(coordinate, -1.f), static_cast<float>(cells));
        const int truncated = static_cast<int>(within);
        return truncated - (within < static_cast<float>(truncated));
    }
};

/// The walk's error after a change, a whole number again.
int truncated(float error)
{
    return std::fabs(error) < FARTHEST_CELL ? static_cast<int>(error) : toCell(error);
}

} // namespace

/// A segment, prepared for a first look at many outlines.
struct PartitioningGrid::Probe
{
    Probe(const Vec4 &start_, const Vec4 &dir_, bool checkInteract_, std::uint32_t number_,
          const SegmentFilter *filter_ = nullptr)
        : start(start_), dir(dir_), checkInteract(checkInteract_), number(number_), filter(filter_)
    {
        for (int axis = 0; axis < 3; ++axis)
        {
            inverse[axis] = std::fabs(dir[axis]) < FLAT ? NEVER : 1.f / dir[axis];
            inverseSize[axis] = std::fabs(inverse[axis]);
        }
    }

    /// Whether the segment may meet an outline before a parameter. Rounding never says no to a hit, and numbers that
    /// are none count as a meeting.
    bool mayMeet(const VolumeOutline &outline, float before) const
    {
        float entry = 0.f, exit = before;
        clip(outline, 0, entry, exit);
        clip(outline, 1, entry, exit);
        clip(outline, 2, entry, exit);
        return entry <= exit;
    }
    void clip(const VolumeOutline &outline, int axis, float &entry, float &exit) const
    {
        const float middle = (outline.centre[axis] - start[axis]) * inverse[axis];
        const float half = (outline.reach[axis] + MARGIN) * inverseSize[axis];
        // In this order a number that is none leaves entry and exit as they are.
        entry = std::max(entry, middle - half);
        exit = std::min(exit, middle + half);
    }

    static constexpr float MARGIN = 1e-3f; ///< metres
    static constexpr float FLAT = 1e-4f;   ///< metres along an axis that count as none
    static constexpr float NEVER = 1e12f;  ///< passes along a flat axis what the segment starts in, and nothing else

    Vec4 start;
    Vec4 dir;
    bool checkInteract;
    std::uint32_t number;        ///< of this segment
    const SegmentFilter *filter; ///< null: everything counts
    float inverse[3];            ///< parameters a metre
    float inverseSize[3];
};

SegmentHit PartitioningGrid::checkSegment(Vec4 begin, Vec4 dir, bool checkInteract)
{
    return castSegment(Probe(begin, dir, checkInteract, ++probeNumber));
}

SegmentHit PartitioningGrid::checkSegmentFor(const SegmentFilter &filter, Vec4 begin, Vec4 dir)
{
    return castSegment(Probe(begin, dir, false, ++probeNumber, &filter));
}

SegmentHit PartitioningGrid::castSegment(const Probe &probe)
{
    SegmentHit best = noHit();
    const Vec4 from = getCellCoords(probe.start), to = getCellCoords(probe.start + probe.dir);
    if (columns == 0 || !std::isfinite(from.x + from.z) || !std::isfinite(to.x + to.z))
        return best;
    const Axis x{from.x, to.x, columns}, z{from.z, to.z, rows};
    const bool alongX = std::fabs(x.delta) > std::fabs(z.delta);
    const Axis &major = alongX ? x : z, &minor = alongX ? z : x;
    const float majorLength = std::fabs(major.delta), minorLength = std::fabs(minor.delta);
    const auto castAgainst = [&](int m, int n)
    { castRayAgainstLists(alongX ? cellIndex(m, n) : cellIndex(n, m), probe, best); };
    grid.refresh();
    staticGrid.refresh();

    int error = truncated(0.5f * majorLength - minorLength);
    int m = toCell(std::floor(major.begin)), n = toCell(minor.begin);
    const int end = toCell(std::floor(major.end + static_cast<float>(major.step)));
    // Outside the grid nothing but the major coordinate moves: that part of the walk is one stride.
    const int outside = major.step > 0 ? std::min(0, end) : std::max(major.cells - 1, end);
    if ((outside - m) * major.step > 0)
        m = outside;
    float entered = minor.at(std::max(0.f, major.leaves(m - major.step))); // minor coordinate at the column's near side
    for (; m != end && m >= 0 && m < major.cells; m += major.step)
    {
        const float left = major.leaves(m);
        const float leaving = minor.at(left);
        const int first = std::max(minor.cellAt(std::min(entered, leaving) - BORDER), 0);
        const int last = std::min(minor.cellAt(std::max(entered, leaving) + BORDER), minor.cells - 1);
        for (int passed = first; passed <= last; ++passed)
            castAgainst(m, passed);
        if (n >= 0 && n < minor.cells)
        {
            if (n < first || n > last)
                castAgainst(m, n);
            if (error < 0)
            {
                error = truncated(static_cast<float>(error) + majorLength);
                n += minor.step;
            }
            error = truncated(static_cast<float>(error) - minorLength);
        }
        // Whatever is hit before the end of this column stands in a cell that has been looked at.
        if (best.collision.t <= left)
            break;
        entered = leaving;
    }
    return best;
}

SegmentHit PartitioningGrid::castRayAgainstCell(int x, int z, Vec4 start, Vec4 dir, bool checkInteract)
{
    SegmentHit best = noHit();
    if (!isCell(x, z))
        return best;
    grid.refresh();
    staticGrid.refresh();
    castRayAgainstLists(cellIndex(x, z), Probe(start, dir, checkInteract, ++probeNumber), best);
    return best;
}

SegmentHit PartitioningGrid::castRayAgainstCell(Vec4 cell, Vec4 start, Vec4 dir, bool checkInteract)
{
    return castRayAgainstCell(toCell(cell.x), toCell(cell.z), start, dir, checkInteract);
}

/// The nearest of a cell's volumes and the best one so far.
void PartitioningGrid::castRayAgainstLists(int cell, const Probe &probe, SegmentHit &best)
{
    for (VolumeListGrid *const lists : {&grid, &staticGrid})
    {
        if (lists->getCount() == 0)
            continue;
        for (const VolumeListGrid::Slot slot : lists->slots(cell))
            if (probe.mayMeet(lists->outlineIn(slot), std::min(best.collision.t, 1.f)) &&
                lists->markSeen(slot, probe.number))
                castRayAgainstVolume(lists->outlineIn(slot).volume, probe, best);
    }
}

void PartitioningGrid::castRayAgainstVolume(BoundingVolume *volume, const Probe &probe, SegmentHit &best)
{
    if (!volume || volume->getIsPartitioningDummy() || (probe.checkInteract && !volume->getInteract()) ||
        (probe.filter && !probe.filter->counts(*volume)))
        return;
    const RayCollision hit = volume->boxToLineSegmentWithInfo(probe.start, probe.dir);
    if (hit.collided && hit.t < best.collision.t && (!probe.filter || probe.filter->stops(*volume, hit)))
        best = SegmentHit{hit, getHandle(volume)};
}

Handle<BoundingVolume> PartitioningGrid::findVolumeOnSegment(Vec4 begin, Vec4 dir, bool checkInteract)
{
    return checkSegment(begin, dir, checkInteract).volume;
}
