#include "physics/doors/LeafNeighbours.h"

#include "physics/doors/PushProbe.h"
#include "physics/volumes/BoundingVolume.h"
#include "physics/volumes/VolumeTraits.h"
#include "physics/grid/CellRect.h"
#include "physics/grid/PartitioningGrid.h"
#include "physics/bodies/PhysicsComponent.h"

#include "engine/levels/MapRootEntity.h"
#include "engine/transforms/TransformComponent.h"

#include "foundation/Logger.h"

namespace
{

/// How deep two boxes stand in each other, metres; 0 where they are apart.
float sharedDepth(const OrientedBox &one, const OrientedBox &two)
{
    BoxOverlap overlap;
    return overlap.find(one, two) ? overlap.depth : 0.f;
}

/// Adds a volume to a list that has it not yet and some room left.
void addOnce(BoundingVolume &volume, BoundingVolume **list, std::size_t room, std::size_t &count)
{
    if (count < room && std::find(list, list + count, &volume) == list + count)
        list[count++] = &volume;
}

} // namespace

void reportUnmovedLeaf(PhysicsComponent &leaf)
{
    const BoundingVolume *const volume = leaf.findVolume();
    if (!volume || VolumeTraits::of(*volume).isStatic)
        KV_LOGF(Logger_::I_ERROR, "%s of %s: this door will not move; give it a boundingVolume of the type BV_DOOR.",
                leaf.getName().toCString(), leaf.getParent().toString().toCString());
}

OrientedBox leafBox(const BoundingVolume &leaf, const Vec4 &place, const Matrix4 &turned)
{
    OrientedBox box(turned, place, leaf.getHitBox());
    for (int axis = 0; axis < 3; ++axis)
        box.half[axis] = std::fabs(box.half[axis]);
    return box;
}

LeafNeighbours::LeafNeighbours(const BoundingVolume &leaf_, TransformComponent &place, float reach)
    : leaf(leaf_), grid(PartitioningGrid::ofMap(place.findMap()).lookup().ptr)
{
    constexpr float step = 1.f; // metres that somebody may have come since the grid last saw him
    if (!grid)
        return;
    const float around = reach + step;
    const Vec4 corner(around, 0.f, around, 0.f);
    const CellRect cells =
        CellRect::between(grid->getCellCoords(place.getPosition() - corner),
                          grid->getCellCoords(place.getPosition() + corner), grid->getColumns(), grid->getRows());
    grid->forEachMovingVolume(cells,
                              [&](const Handle<BoundingVolume> &h)
                              {
                                  if (const auto volume = h.lookup(); volume && volume.ptr != &leaf)
                                      add(*volume);
                              });
}

/// The way to look along for a frame's way: at high frame rates that alone is too short for anybody to stand in it.
float LeafNeighbours::lookAhead(float way, float farthestWay)
{
    constexpr float least = 1e-3f; // radians or metres
    return std::copysign(std::max(std::fabs(way), std::min(least, std::fabs(farthestWay))), way);
}

void LeafNeighbours::add(BoundingVolume &volume)
{
    if (!volume.findTransform())
        return;
    if (VolumeTraits::of(volume).isPlayer)
        addOnce(volume, players, MOST_PLAYERS, playerCount);
    else if (PushProbe::isMovable(volume))
        addOnce(volume, bodies, MOST_BODIES, bodyCount);
}

bool LeafNeighbours::meetsPlayer(const OrientedBox &start, const OrientedBox &box) const
{
    constexpr float rounding = 1e-5f; // metres
    return std::any_of(players, players + playerCount,
                       [&](BoundingVolume *player)
                       {
                           const OrientedBox standing = PushedShape(*player).box;
                           const float depth = sharedDepth(box, standing);
                           return depth > rounding && depth > sharedDepth(start, standing) + rounding;
                       });
}

bool LeafNeighbours::meetsHeldBody(const OrientedBox &start, const OrientedBox &box) const
{
    return std::any_of(bodies, bodies + bodyCount,
                       [&](BoundingVolume *body) { return !PushProbe(*grid, leaf).givesWay(*body, start, box); });
}
