#include "ai/actions/ActSearch.h"

#include "ai/perception/PerceptionComponent.h"

#include "engine/transforms/TransformComponent.h"

#include <algorithm>

namespace
{
constexpr float NEAREST = 1.f;    ///< metres between the place and a spot
constexpr float FRESH = 0.25f;    ///< seconds that a perception is new
constexpr double LOOK_TIME = 2.5; ///< seconds at a spot
} // namespace

ActSearch::ActSearch()
{
    actionName = SCS("searches");
    reach = 5.f;
}

void ActSearch::reset()
{
    CreatureAction::reset();
    looked = 0;
    looking = false;
}

ActionStatus ActSearch::update(Seconds frameTime)
{
    const PerceptionComponent *const senses = parts().senses;
    if (!parts().canWalk() || !senses)
        return AS_InvalidHandle;
    const bool forgot = !senses->getRemembers();
    if (!forgot && !(begun && perceivesAnew(*senses)) && looked < spots)
        return goOn(*senses, *parts().transform, frameTime);
    stop();
    return forgot ? AS_Failed : AS_Complete;
}

bool ActSearch::perceivesAnew(const PerceptionComponent &senses) const
{
    return heeds && (senses.getSeen() || senses.getSinceHeard() < FRESH);
}

/// Goes to the next spot, or looks about at the one that it has come to.
ActionStatus ActSearch::goOn(const PerceptionComponent &senses, const TransformComponent &body, Seconds frameTime)
{
    if (looking)
    {
        incrementTime(frameTime);
        lookAround(ahead, frameTime);
        looking = elapsedTime < LOOK_TIME;
        looked += !looking;
        begun = begun && looking;
        return AS_InProgress;
    }
    if (!begun)
    {
        Vec4 spot;
        const float most = std::clamp(senses.getVagueness(), 2.f * NEAREST, std::max(reach, 2.f * NEAREST));
        if (!findPlace(senses.getPlace(), NEAREST, most, spot))
            return AS_Failed;
        begun = true;
        goTo(spot);
    }
    if (legs() == ON_THE_WAY)
        return AS_InProgress;
    // A spot that it does not get to is looked at from where it stands.
    looking = true;
    elapsedTime = 0.0;
    ahead = body.getOrientation().generateRotation().getColumn(2);
    return AS_InProgress;
}

Handle<Action> ActSearch::clone()
{
    const Handle<Action> copy = cloneCreatureAction();
    if (auto action = unchecked_handle_cast<ActSearch>(copy).lookup())
        action->spots = spots;
    return copy;
}
