#include "physics/bodies/Footing.h"

#include "physics/grid/PartitioningGrid.h"
#include "physics/grid/SegmentFilter.h"
#include "physics/volumes/BoundingVolume.h"
#include "physics/volumes/VolumeTraits.h"

#include "engine/transforms/TransformComponent.h"

#include <algorithm>

namespace
{

constexpr Vec4 UP(0.f, 1.f, 0.f, 0.f);
constexpr float ABOVE_FEET = 0.25f;   ///< metres within the box that a segment begins
constexpr float INSET = 0.01f;        ///< metres that it keeps off the box's sides: what is beside is not below
constexpr float SNUG = 0.015f;        ///< metres that the inset of a segment may make of no gap, on a slope
constexpr float LEAST_ACROSS = 1e-3f; ///< metres: straight down passes no cell

/// What holds feet: what stops bodies, but not the body itself.
class GroundFilter final : public SegmentFilter
{
public:
    explicit GroundFilter(const BoundingVolume &own) : own(&own) {}

    bool counts(BoundingVolume &volume) const override
    {
        return &volume != own && VolumeTraits::of(volume).isSolid && !volume.getTrigger() && volume.findPhysics();
    }
    bool stops(BoundingVolume &, const RayCollision &hit) const override
    {
        return hit.t > 0.f && hit.normal.y > Footing::STEEPEST;
    }

private:
    const BoundingVolume *own;
};

} // namespace

void Footing::touch(const Vec4 &away)
{
    constexpr float longest = 1.01f; // what is no direction tells of no ground
    if (away.y > STEEPEST && away.y > touched.y && away.magnitudeSquared() < longest)
        touched = away;
}

void Footing::begin()
{
    if (touched.y > 0.f)
    {
        onGround = true;
        normal = touched;
    }
    touched = Vec4();
}

void Footing::leave()
{
    touched = Vec4();
    loseGround();
}

void Footing::loseGround()
{
    onGround = false;
    normal = UP;
}

float Footing::findGap(PartitioningGrid &grid, BoundingVolume &volume, const TransformComponent &place)
{
    const Vec4 half = volume.getHitBox() * 0.5f;
    const Matrix4 axes = place.getOrientation().generateRotation();
    const Vec4 feet = place.getPosition() + UP * (ABOVE_FEET - half.y);
    const Vec4 down(LEAST_ACROSS, -(ABOVE_FEET + STEP_DOWN), 0.f, 0.f);
    const GroundFilter ground(volume);
    float least = 1.f;
    for (const float x : {-1.f, 0.f, 1.f})
        for (const float z : {-1.f, 0.f, 1.f})
        {
            const Vec4 side = axes * Vec4(x * (half.x - INSET), 0.f, z * (half.z - INSET), 0.f);
            const SegmentHit hit = grid.checkSegmentFor(ground, feet + side, down);
            if (!hit.collision.collided || hit.collision.t >= least)
                continue;
            least = hit.collision.t;
            normal = hit.collision.normal;
        }
    const float gap = least * -down.y - ABOVE_FEET;
    return least == 1.f ? -1.f : gap > SNUG ? gap : 0.f;
}

Vec4 Footing::along(const Vec4 &direction) const
{
    const float strength = direction.magnitude();
    Vec4 turned = without(direction);
    turned.normalize();
    return turned * strength;
}
