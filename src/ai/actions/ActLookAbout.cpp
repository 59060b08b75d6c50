#include "ai/actions/ActLookAbout.h"

#include "engine/transforms/TransformComponent.h"

ActLookAbout::ActLookAbout()
{
    actionName = SCS("looks about");
    duration = 3.5;
}

ActionStatus ActLookAbout::update(Seconds frameTime)
{
    TransformComponent *const transform = parts().transform;
    if (!transform)
        return AS_InvalidHandle;
    if (!begun)
        ahead = transform->getOrientation().generateRotation().getColumn(2);
    begun = true;
    lookAround(ahead, frameTime);
    incrementTime(frameTime);
    return isCalledOff() || timeLeft() <= 0.0 ? AS_Complete : AS_InProgress;
}
