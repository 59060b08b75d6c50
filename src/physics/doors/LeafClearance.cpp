#include "physics/doors/LeafClearance.h"

#include "physics/volumes/BoundingVolume.h"
#include "physics/grid/CellRect.h"
#include "physics/grid/PartitioningGrid.h"
#include "physics/bodies/PhysicsComponent.h"

#include "engine/levels/MapRootEntity.h"
#include "engine/transforms/TransformComponent.h"

#include "foundation/Logger.h"

namespace
{

/// Half the length of a box's shadow on an axis of length 1.
float shadowOf(const StandingBox &box, const Vec4 &axis)
{
    float half = 0.f;
    for (int own = 0; own < 3; ++own)
        half += std::fabs(axis.dot(box.rotation.getColumn(own))) * box.half[own];
    return half;
}

/// How deep two boxes stand in each other, metres; 0 or below where they are apart.
///
/// Looks along their faces alone: exact for boxes that stand upright, as leaves and players do.
float sharedDepth(const StandingBox &one, const StandingBox &two)
{
    const Vec4 between = two.centre - one.centre;
    float depth = INFINITY;
    for (const StandingBox *box : {&one, &two})
    {
        for (int own = 0; own < 3; ++own)
        {
            const Vec4 axis = box->rotation.getColumn(own);
            depth = std::min(depth, shadowOf(one, axis) + shadowOf(two, axis) - std::fabs(axis.dot(between)));
        }
    }
    return depth;
}

} // namespace

void reportUnmovedLeaf(PhysicsComponent &leaf)
{
    const BoundingVolume *const volume = leaf.findVolume();
    if (!volume || volume->getVolumeType() == BoundingVolume::BV_WALL)
        KV_LOGF(Logger_::I_ERROR, "%s of %s: this door will not move; give it a boundingVolume of the type BV_DOOR.",
                leaf.getName().toCString(), leaf.getParent().toString().toCString());
}

StandingBox::StandingBox(const BoundingVolume &volume, const Vec4 &place, const Matrix4 &turned)
    : centre(place), rotation(turned)
{
    for (int axis = 0; axis < 3; ++axis)
        half[axis] = 0.5f * std::fabs(volume.getHitBox()[axis]);
}

LeafClearance::LeafClearance(const BoundingVolume &leaf, TransformComponent &place, float reach)
{
    constexpr float stepOfPlayer = 1.f; // metres that a player may have come since the grid last saw him
    const auto grid = PartitioningGrid::ofMap(place.findMap()).lookup();
    if (!grid)
        return;
    const float around = reach + stepOfPlayer;
    const Vec4 corner(around, 0.f, around, 0.f);
    const CellRect cells =
        CellRect::between(grid->getCellCoords(place.getPosition() - corner),
                          grid->getCellCoords(place.getPosition() + corner), grid->getColumns(), grid->getRows());
    grid->forEachMovingVolume(cells,
                              [&](const Handle<BoundingVolume> &h)
                              {
                                  const auto volume = h.lookup();
                                  if (volume && volume->getVolumeType() == BoundingVolume::BV_PLAYER &&
                                      volume.ptr != &leaf)
                                      add(*volume);
                              });
}

/// The way to look along for a frame's way: at high frame rates that alone is too short for anybody to stand in it.
float LeafClearance::lookAhead(float way, float farthestWay)
{
    constexpr float least = 1e-3f; // radians or metres
    return std::copysign(std::max(std::fabs(way), std::min(least, std::fabs(farthestWay))), way);
}

void LeafClearance::add(BoundingVolume &player)
{
    const auto known = volumes + count;
    if (count == MOST_PLAYERS || std::find(volumes, known, &player) != known)
        return;
    const TransformComponent *const place = player.findTransform();
    if (!place)
        return;
    volumes[count] = &player;
    players[count++] = StandingBox(player, place->getPosition(), place->getOrientation().generateRotation());
}

bool LeafClearance::meetsPlayer(const StandingBox &start, const StandingBox &leaf) const
{
    constexpr float rounding = 1e-5f; // metres
    return std::any_of(players, players + count,
                       [&](const StandingBox &player)
                       {
                           const float depth = sharedDepth(leaf, player);
                           return depth > rounding && depth > sharedDepth(start, player) + rounding;
                       });
}
