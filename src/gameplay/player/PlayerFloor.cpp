// PlayerComponent: what is under the feet.
#include "gameplay/player/PlayerComponent.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/transforms/TransformComponent.h"
#include "physics/grid/PartitioningGrid.h"
#include "physics/grid/SegmentFilter.h"
#include "physics/volumes/BoundingVolume.h"
#include "rendering/drawn/GraphicsComponent2.h"
#include "rendering/drawn/HeightMapGraphics.h"

namespace
{

constexpr float ABOVE = 0.3f, BELOW = 0.35f; ///< metres from the feet that a floor is looked for
constexpr float LEAST_ACROSS = 1e-3f;        ///< metres: straight down passes no cell
constexpr float FLAT = 0.5f;                 ///< height of the normal of what can be walked on

GraphicsComponent2 *drawnAt(BoundingVolume &volume)
{
    return componentOf<GraphicsComponent2>(volume.getParent(), ComponentKeys::graphics2);
}

/// What is seen as a floor from above: a drawn surface that is entered from above, or ground of heights all around.
class FloorFilter final : public SegmentFilter
{
public:
    bool counts(BoundingVolume &volume) const override
    {
        const GraphicsComponent2 *const drawn = drawnAt(volume);
        return drawn && drawn->getVisible() && dynamic_cast<const SurfaceTextures *>(drawn);
    }
    bool stops(BoundingVolume &volume, const RayCollision &hit) const override
    {
        return (hit.t > 0.f && hit.normal.y > FLAT) || dynamic_cast<const HeightMapGraphics *>(drawnAt(volume));
    }
};

} // namespace

void PlayerComponent::nameFloor(const String &textureName, const String &material)
{
    floorNames[textureName] = material;
}

void PlayerComponent::feelFloor()
{
    TransformComponent *const place = transform();
    const auto *const own = part<BoundingVolume>(VOLUME);
    const auto grid = place ? PartitioningGrid::ofMap(place->findMap()).lookup() : Handle<PartitioningGrid>::Result{};
    if (!grid || !own)
        return;
    const Vec4 feet = place->getPosition() - Vec4(0.f, 0.5f * own->getHitBox().y, 0.f, 0.f);
    const SegmentHit hit = grid->checkSegmentFor(FloorFilter(), feet + Vec4(0.f, ABOVE, 0.f, 0.f),
                                                 Vec4(LEAST_ACROSS, -(ABOVE + BELOW), 0.f, 0.f));
    const auto floor = hit.volume.lookup();
    const auto *const surface = floor ? dynamic_cast<const SurfaceTextures *>(drawnAt(*floor.ptr)) : nullptr;
    const auto named = surface ? floorNames.find(surface->getTextureName()) : floorNames.end();
    if (named != floorNames.end())
        floorMaterial = named->second;
}
