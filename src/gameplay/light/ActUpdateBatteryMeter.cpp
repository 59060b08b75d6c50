#include "gameplay/light/ActUpdateBatteryMeter.h"

#include "gameplay/player/PlayerComponent.h"
#include "gameplay/player/PlayerLookup.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/transforms/TransformComponent.h"

ActionStatus ActUpdateBatteryMeter::update(Seconds frameTime)
{
    auto *const transform = componentOf<TransformComponent>(getParent(), ComponentKeys::transform);
    if (!transform)
        return AS_InvalidHandle;
    if (elapsedTime == 0.0)
    {
        incrementTime(frameTime);
        originalMeterScale = transform->getScale();
    }
    const auto player = playerOf(*transform).lookup();
    if (!player)
        return AS_InvalidHandle;
    const float ratio = static_cast<float>(player->getCurrBatteryTimeLeft() / player->getBatteryLifetime());
    if (!(ratio <= 1.f))
        return AS_InProgress;
    Vec4 scale = transform->getScale();
    scale.x = originalMeterScale.x * ratio;
    transform->setScale(scale);
    return AS_InProgress;
}

void ActUpdateBatteryMeter::reset()
{
    percentDone = 0.0;
    currentStatus = AS_InProgress;
}
