#include "gameplay/creatures/OnGround.h"

#include "ai/perception/Sightline.h"
#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/Coordinator.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/time/TimerNames.h"
#include "engine/transforms/TransformComponent.h"
#include "object/tree/WellKnownPaths.h"
#include "physics/grid/PartitioningGrid.h"
#include "physics/volumes/FiniteProperty.h"

#include "foundation/Finite.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr float ABOVE = 0.4f, BELOW = 3.f; ///< metres within which it looks for the ground
constexpr float FASTEST = 4.f;             ///< metres a second: down a stair at a run
/// Metres by which it looks aside on its way down: a segment that passes over no ground at all meets no cell, so that
/// it hits nothing.
constexpr float ASLANT = 2e-3f;
} // namespace

void OnGround::doFrame()
{
    TransformComponent *const own = transform();
    const auto level = getAncestorOfType<Coordinator>().lookup();
    PartitioningGrid *const grid = PartitioningGrid::ofMap(getAncestorOfType<MapRootEntity>()).lookup().ptr;
    if (!own || !level || !grid || !isFinite(own->getPosition()))
        return;
    Vec4 place = own->getPosition();
    const SightFilter filter(getParent(), level->getChild(WellKnownPaths::player));
    const Vec4 down(ASLANT, -(ABOVE + BELOW + groundBelow), 0.f, 0.f);
    const SegmentHit hit = grid->checkSegmentFor(filter, place + Vec4(0.f, ABOVE, 0.f, 0.f), down);
    const float left = hit.volume.isValid() ? hit.collision.point.y + groundBelow - place.y : 0.f;
    if (std::fabs(left) < 1e-3f)
        return;
    const float most = FASTEST * frameSeconds();
    place.y += std::clamp(left, -most, most);
    own->setPosition(place);
}

TransformComponent *OnGround::transform() const
{
    return componentOf<TransformComponent>(getParent(), ComponentKeys::transform);
}

float OnGround::frameSeconds()
{
    const auto level = getAncestorOfType<Coordinator>().lookup();
    const Seconds seconds = level ? level->getTimer(TimerNames::master).getFrameTimeSeconds() : 0.0;
    return static_cast<float>(std::clamp(seconds, 0.0, 0.1));
}

void OnGround::setGroundBelow(float val)
{
    if (isUsable(*this, "groundBelow", val))
        groundBelow = std::clamp(val, 0.f, 10.f);
}
