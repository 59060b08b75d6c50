#include "ai/actions/ActPursue.h"

#include "ai/paths/PathFollower.h"
#include "ai/perception/PerceptionComponent.h"

#include <cmath>

ActPursue::ActPursue()
{
    actionName = SCS("goes after it");
    reach = 1.f;
    heeds = false;
}

ActionStatus ActPursue::update(Seconds frameTime)
{
    const PerceptionComponent *const senses = parts().senses;
    if (!parts().canWalk() || !senses)
        return AS_InvalidHandle;
    if (!senses->getRemembers())
    {
        stop();
        return AS_Failed;
    }
    const Vec4 target = senses->getPlace();
    const bool isNear = std::hypot(target.x - place().x, target.z - place().z) <= reach;
    if (isNear || isCalledOff())
    {
        stop();
        turnTo(target - place(), frameTime);
        return isNear && senses->getSeen() ? AS_InProgress : AS_Complete;
    }
    const bool wasStuck = begun && legs() == STUCK;
    begun = true;
    if (wasStuck)
        return AS_Failed;
    goTo(target);
    // The nearest place with room may be farther off than the reach.
    return legs() == THERE ? AS_Complete : AS_InProgress;
}
