#include "physics/bodies/EdgeProbe.h"

#include "physics/grid/PartitioningGrid.h"
#include "physics/grid/SegmentFilter.h"
#include "physics/volumes/BoundingVolume.h"
#include "physics/volumes/VolumeTraits.h"

#include "engine/transforms/TransformComponent.h"

#include <cmath>

namespace
{

constexpr float BEFORE = 0.06f;                          ///< metres before the box in which something counts
constexpr float ACROSS[] = {-0.98f, -0.5f, 0.5f, 0.98f}; ///< parts of half the width, from left to right
constexpr float HEIGHTS[] = {-0.7f, 0.f, 0.9f};          ///< parts of half the height

/// What nothing pushes aside.
class StandsStill final : public SegmentFilter
{
public:
    explicit StandsStill(const BoundingVolume &own) : own(&own) {}

    bool counts(BoundingVolume &volume) const override
    {
        return &volume != own && VolumeTraits::of(volume).isStatic && !volume.getTrigger() && volume.findPhysics();
    }
    bool stops(BoundingVolume &, const RayCollision &hit) const override { return hit.t > 0.f; }

private:
    const BoundingVolume *own;
};

} // namespace

Vec4 sideFreeOfEdge(PartitioningGrid &grid, BoundingVolume &volume, const TransformComponent &place, const Vec4 &ahead)
{
    const Vec4 half = volume.getHitBox() * 0.5f, right(ahead.z, 0.f, -ahead.x, 0.f);
    const Matrix4 axes = place.getOrientation().generateRotation();
    const auto reach = [&](const Vec4 &direction) {
        return std::fabs(direction.dot(axes.getColumn(0))) * half.x +
               std::fabs(direction.dot(axes.getColumn(2))) * half.z;
    };
    const StandsStill solid(volume);
    const auto isBlocked = [&](float across)
    {
        for (const float height : HEIGHTS)
        {
            const Vec4 from =
                place.getPosition() + right * (across * reach(right)) + Vec4(0.f, height * half.y, 0.f, 0.f);
            if (grid.checkSegmentFor(solid, from, ahead * (reach(ahead) + BEFORE)).collision.collided)
                return true;
        }
        return false;
    };
    if (isBlocked(0.f))
        return Vec4();
    const bool onLeft = isBlocked(ACROSS[0]) || isBlocked(ACROSS[1]);
    const bool onRight = isBlocked(ACROSS[2]) || isBlocked(ACROSS[3]);
    if (onLeft == onRight)
        return Vec4();
    return onLeft ? right : -right;
}
