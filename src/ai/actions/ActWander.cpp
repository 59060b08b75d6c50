#include "ai/actions/ActWander.h"

#include "ai/steering/SteeringComponent.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"

ActionStatus ActWander::update(Seconds frameTime)
{
    auto *const steering = componentOf<SteeringComponent>(getParent(), ComponentKeys::steering);
    if (!steering)
        return AS_InvalidHandle;
    steering->updateWander(frameTime);
    steering->updateSeparation();
    return AS_InProgress;
}
