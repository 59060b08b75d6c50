#include "ai/actions/ActFlee.h"

#include "ai/perception/LightAt.h"
#include "ai/perception/PerceptionComponent.h"

#include "engine/levels/MapRootEntity.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr float FAR_ENOUGH = 12.f;      ///< metres from the target, beyond which more is no better
constexpr float BRIGHT = 0.1f;          ///< luminance from which on a place is as bad as lit
constexpr float WORTH_OF_DARK = 1.f;    ///< beside 1 for the distance
constexpr float COST_OF_PASSING = 1.5f; ///< for a way that leads past the target
} // namespace

ActFlee::ActFlee()
{
    actionName = SCS("flees into the dark");
    reach = 12.f;
    heeds = false;
}

void ActFlee::reset()
{
    CreatureAction::reset();
    choice.begin();
}

ActionStatus ActFlee::update(Seconds)
{
    const PerceptionComponent *const senses = parts().senses;
    if (!parts().canWalk() || !senses)
        return AS_InvalidHandle;
    if (!begun && !senses->getRemembers())
        return AS_Failed;
    if (!begun)
    {
        weighOne(*senses);
        if (!choice.isMade())
            return AS_InProgress;
        if (!choice.hasPlace())
            return AS_Failed;
        begun = true;
        goTo(choice.getPlace());
    }
    switch (legs())
    {
    case ON_THE_WAY:
        return AS_InProgress;
    case THERE:
        return AS_Complete;
    default:
        return AS_Failed;
    }
}

void ActFlee::weighOne(const PerceptionComponent &senses)
{
    Vec4 candidate;
    if (!findPlace(place(), reach / 3.f, reach, candidate))
        return;
    const Vec4 threat = senses.getPlace();
    const float distance = std::hypot(candidate.x - threat.x, candidate.z - threat.z);
    const Vec4 away = place() - threat, way = candidate - place();
    const float along = away.x * way.x + away.z * way.z;
    const float dark = 1.f - std::min(lightAt(map(), candidate) / BRIGHT, 1.f);
    choice.weigh(candidate,
                 std::min(distance / FAR_ENOUGH, 1.f) + WORTH_OF_DARK * dark - (along < 0.f ? COST_OF_PASSING : 0.f));
}
