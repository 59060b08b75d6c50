#include "ai/actions/ActHaunt.h"

#include "ai/perception/LightAt.h"
#include "ai/perception/PerceptionComponent.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/transforms/TransformComponent.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr float BRIGHT = 0.1f;          ///< luminance from which on a place is as bad as lit
constexpr float UNBEARABLE = 0.03f;     ///< luminance at which it does not stay
constexpr float WORTH_OF_BEHIND = 0.5f; ///< beside 1 for the dark
constexpr double LOOK_INTERVAL = 0.5;   ///< seconds
} // namespace

ActHaunt::ActHaunt()
{
    actionName = SCS("lurks in the dark");
    reach = 9.f;
    heeds = false;
}

void ActHaunt::reset()
{
    CreatureAction::reset();
    choice.begin();
    nextLook = 0.0;
}

ActionStatus ActHaunt::update(Seconds frameTime)
{
    PerceptionComponent *const senses = parts().senses;
    if (!parts().canWalk() || !senses)
        return AS_InvalidHandle;
    const auto *const target = componentOf<TransformComponent>(senses->getTarget(), ComponentKeys::transform);
    if (!target)
        return AS_InvalidHandle;
    incrementTime(frameTime);
    if (!begun)
    {
        weighOne(*target);
        if (!choice.isMade())
            return AS_InProgress;
        begun = true;
        if (choice.hasPlace())
            goTo(choice.getPlace());
        choice.begin();
    }
    if (legs() == ON_THE_WAY)
        return AS_InProgress;
    turnTo(target->getPosition() - place(), frameTime);
    if (elapsedTime >= nextLook)
    {
        nextLook = elapsedTime + LOOK_INTERVAL;
        begun = !isUneasy(*senses, *target);
    }
    return AS_InProgress;
}

void ActHaunt::weighOne(const TransformComponent &target)
{
    Vec4 candidate;
    if (!findPlace(target.getPosition(), closeness, reach, candidate))
        return;
    const Vec4 off = candidate - target.getPosition();
    const Vec4 front = target.getOrientation().generateRotation().getColumn(2);
    const float behind = off.x * front.x + off.z * front.z < 0.f ? WORTH_OF_BEHIND : 0.f;
    choice.weigh(candidate, behind + 1.f - std::min(lightAt(map(), candidate) / BRIGHT, 1.f));
}

bool ActHaunt::isUneasy(PerceptionComponent &senses, const TransformComponent &target)
{
    const Vec4 off = target.getPosition() - place();
    const float distance = std::hypot(off.x, off.z);
    return distance < closeness * 0.75f || distance > reach * 1.25f || senses.getWatched() ||
           lightAt(map(), place()) > UNBEARABLE;
}

Handle<Action> ActHaunt::clone()
{
    const Handle<Action> copy = cloneCreatureAction();
    if (auto action = unchecked_handle_cast<ActHaunt>(copy).lookup())
        action->closeness = closeness;
    return copy;
}
