#include "gameplay/creatures/StandingRoom.h"

#include "ai/paths/Walkways.h"
#include "ai/perception/Sightline.h"
#include "engine/entities/Entity.h"
#include "engine/levels/Coordinator.h"
#include "engine/levels/MapRootEntity.h"
#include "object/tree/WellKnownPaths.h"
#include "physics/grid/PartitioningGrid.h"
#include "physics/volumes/BoundingVolume.h"

#include "foundation/Finite.h"

#include <array>
#include <cmath>

namespace
{
constexpr int DIRECTIONS = 48;  ///< a wall of 0.2 m is not missed between two of them
constexpr float PASSER = 0.52f; ///< metres: width of who wants to pass
constexpr float MARGIN = 0.45f; ///< metres besides: a doorway is kept free this far before it
constexpr float TOUCH = 0.04f;  ///< metres between the body and what it stands at

/// What stands in a walker's way for good: neither himself nor the player, nor the leaf of a door.
class ForGood : public SightFilter
{
public:
    using SightFilter::SightFilter;
    bool counts(BoundingVolume &volume) const override
    {
        return volume.getVolumeType() != BoundingVolume::BV_DOOR && SightFilter::counts(volume);
    }
};

Handle<Object> playerAround(Object &body)
{
    const auto level = body.getAncestorOfType<Coordinator>().lookup();
    return level ? level->getChild(WellKnownPaths::player) : Handle<Object>();
}
} // namespace

bool hasStandingRoom(const Handle<Entity> &entity, Vec4 place, float radius)
{
    const auto body = entity.lookup();
    const Handle<MapRootEntity> map = body ? body->getAncestorOfType<MapRootEntity>() : Handle<MapRootEntity>();
    PartitioningGrid *const grid = PartitioningGrid::ofMap(map).lookup().ptr;
    Walkways *const ways = grid && isFinite(place) && std::isfinite(radius) ? Walkways::ofMap(map) : nullptr;
    if (!ways || !ways->hasRoom(ways->cellAt(place), radius))
        return false;
    const ForGood filter(entity, playerAround(*body));
    const float beside = radius + PASSER + MARGIN;
    std::array<bool, DIRECTIONS> isFree = {};
    for (int number = 0; number < DIRECTIONS; ++number)
    {
        const float angle = 2.f * PI * static_cast<float>(number) / DIRECTIONS;
        const Vec4 way = Vec4(std::sin(angle), 0.f, std::cos(angle), 0.f) * beside;
        const SegmentHit hit = grid->checkSegmentFor(filter, place, way);
        if (hit.volume.isValid() && hit.collision.t * beside < radius + TOUCH)
            return false;
        isFree[static_cast<std::size_t>(number)] = !hit.volume.isValid();
    }
    int edges = 0;
    for (std::size_t number = 0; number < isFree.size(); ++number)
        edges += isFree[number] != isFree[(number + 1) % isFree.size()];
    return edges == 0 ? isFree[0] : edges == 2;
}
