// SegmentFilter: what a segment through a grid is stopped by.
#pragma once

class BoundingVolume;
struct RayCollision;

/// Chooses among the volumes that a segment comes by. A borrowed object of whoever asks, for the call.
class SegmentFilter
{
public:
    /// Whether a volume counts at all; asked before its box is tested, of each that the segment may meet.
    virtual bool counts(BoundingVolume &volume) const = 0;
    /// Whether a hit counts; asked of the volumes that count, where the segment meets them.
    virtual bool stops(BoundingVolume &volume, const RayCollision &hit) const = 0;

protected:
    ~SegmentFilter() = default;
};
