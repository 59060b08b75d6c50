#include "ai/actions/ActWander.h"

#include "ai/steering/SteeringComponent.h"

namespace
{
constexpr float NEAREST = 1.5f; ///< metres; a shorter way is no stroll
}

ActWander::ActWander()
{
    actionName = SCS("strolls");
    reach = 8.f;
}

ActionStatus ActWander::update(Seconds frameTime)
{
    if (isCalledOff())
    {
        stop();
        return AS_Complete;
    }
    if (!parts().canWalk())
        return stroll(frameTime);
    if (!begun)
    {
        Vec4 target;
        if (!findPlace(place(), NEAREST, reach, target))
            return AS_Failed;
        begun = true;
        goTo(target);
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

/// Walks on by the steering alone.
ActionStatus ActWander::stroll(Seconds frameTime)
{
    SteeringComponent *const steering = parts().steering;
    if (!steering)
        return AS_InvalidHandle;
    steering->updateWander(frameTime);
    steering->updateSeparation();
    return AS_InProgress;
}
