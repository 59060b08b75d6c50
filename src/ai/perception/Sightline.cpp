#include "ai/perception/Sightline.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/MapRootEntity.h"
#include "physics/volumes/BoundingVolume.h"
#include "physics/volumes/VolumeTraits.h"
#include "rendering/drawn/GraphicsComponent2.h"

#include "foundation/Finite.h"

#include <cmath>

namespace
{

bool isOpaque(BoundingVolume &volume)
{
    return VolumeTraits::of(volume).isSolid && !volume.getSeeThrough() && volume.findPhysics();
}

} // namespace

bool SightFilter::counts(BoundingVolume &volume) const
{
    return isOpaque(volume);
}

bool SightFilter::stops(BoundingVolume &volume, const RayCollision &) const
{
    return !isAtOrBelow(volume.getParent(), passed[0]) && !isAtOrBelow(volume.getParent(), passed[1]);
}

bool ShadowFilter::counts(BoundingVolume &volume) const
{
    return isOpaque(volume);
}

bool ShadowFilter::stops(BoundingVolume &volume, const RayCollision &hit) const
{
    const bool holdsStart = hit.t == 0.f && hit.normal.magnitudeSquared() == 0.f;
    if (holdsStart || volume.boxToPoint(place))
        return false;
    const auto *const drawn = componentOf<GraphicsComponent2>(volume.getParent(), ComponentKeys::graphics2);
    return !drawn || (drawn->getVisible() && drawn->getCastShadows());
}

bool isFreeBetween(PartitioningGrid *grid, const SegmentFilter &filter, const Vec4 &from, const Vec4 &to)
{
    constexpr float leastAcross = 1e-3f; // metres: straight up and down passes no cell
    Vec4 way = to - from;
    way.w = 0.f;
    if (!isFinite(way))
        return false;
    if (!grid)
        return true;
    if (std::fabs(way.x) < leastAcross && std::fabs(way.z) < leastAcross)
        way.x = std::copysign(leastAcross, way.x);
    return !grid->checkSegmentFor(filter, from, way).collision.collided;
}

bool isLineFree(const Handle<MapRootEntity> &map, Vec4 from, Vec4 to)
{
    return isFreeBetween(PartitioningGrid::ofMap(map).lookup().ptr, SightFilter(), from, to);
}
