#include "physics/grid/SolidSegment.h"

#include "physics/grid/SegmentFilter.h"
#include "physics/volumes/BoundingVolume.h"
#include "physics/volumes/VolumeTraits.h"

#include "engine/levels/MapRootEntity.h"

#include "foundation/Finite.h"

#include <cmath>

namespace
{

/// What stops bodies, but for two objects.
class SolidFilter final : public SegmentFilter
{
public:
    SolidFilter(const Handle<Object> &one, const Handle<Object> &other) : passed{one, other} {}

    bool counts(BoundingVolume &volume) const override
    {
        return VolumeTraits::of(volume).isSolid && volume.findPhysics();
    }
    bool stops(BoundingVolume &volume, const RayCollision &) const override
    {
        return !isAtOrBelow(volume.getParent(), passed[0]) && !isAtOrBelow(volume.getParent(), passed[1]);
    }

private:
    Handle<Object> passed[2];
};

} // namespace

bool isAtOrBelow(const Handle<Object> &object, const Handle<Object> &root)
{
    if (!root.isValid())
        return false;
    for (auto above = object.lookup(); above; above = above->getParent().lookup())
        if (getHandle(above.ptr) == root)
            return true;
    return false;
}

SegmentHit findSolidBetween(const Handle<MapRootEntity> &map, Vec4 from, Vec4 to, Handle<Object> one,
                            Handle<Object> other)
{
    constexpr float leastAcross = 1e-3f; // metres: straight up and down passes no cell
    const auto grid = PartitioningGrid::ofMap(map).lookup();
    Vec4 way = to - from;
    way.w = 0.f;
    if (!grid || !isFinite(from) || !isFinite(way))
        return SegmentHit();
    if (std::fabs(way.x) < leastAcross && std::fabs(way.z) < leastAcross)
        way.x = std::copysign(leastAcross, way.x);
    return grid->checkSegmentFor(SolidFilter(one, other), from, way);
}
