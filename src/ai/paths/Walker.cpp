#include "ai/paths/Walker.h"

#include "ai/paths/DoorState.h"
#include "ai/paths/PathFollower.h"
#include "physics/bodies/PhysicsComponent.h"
#include "physics/volumes/BoundingVolume.h"
#include "physics/volumes/VolumeTraits.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"

#include <cmath>

namespace
{

/// Half the width of a body as it walks: a ball's radius, or the mean of a box's half length and half breadth.
float radiusOf(const BoundingVolume &volume)
{
    const Vec4 box = volume.getHitBox();
    const float width =
        VolumeTraits::of(volume).shape == VolumeTraits::BALL ? box.x : (std::fabs(box.x) + std::fabs(box.z)) * 0.5f;
    return std::isfinite(width) ? std::fabs(width) * 0.5f : 0.f;
}

} // namespace

Walker Walker::of(const Handle<Object> &entity)
{
    Walker walker;
    walker.follower = componentOf<PathFollower>(entity, ComponentKeys::pathFollower);
    if (const BoundingVolume *const volume = componentOf<BoundingVolume>(entity, ComponentKeys::boundingVolume))
        walker.radius = radiusOf(*volume);
    return walker;
}

bool Walker::canOpen(PhysicsComponent &leaf) const
{
    if (!follower || !follower->getOpensDoors())
        return false;
    return !DoorState(leaf).isLocked || follower->hasKeyOf(leaf);
}
