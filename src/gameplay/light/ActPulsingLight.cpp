#include "gameplay/light/ActPulsingLight.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/levels/Coordinator.h"
#include "engine/time/TimerNames.h"
#include "physics/volumes/FiniteProperty.h"
#include "rendering/drawn/LightComponent.h"

void ActPulsingLight::doFrame()
{
    const auto light = handle_cast<LightComponent>(getSibling(ComponentKeys::graphics2)).lookup();
    const auto level = getAncestorOfType<Coordinator>().lookup();
    if (!light || !level || !light->getVisible())
        return;
    currentStateTime += level->getTimer(TimerNames::master).getFrameTimeSeconds();
    if (currentStateTime >= pulseTime)
    {
        light->setDiffuseColor(increaseIntensity ? lightColor : Vec4());
        currentStateTime = 0.0;
        increaseIntensity = !increaseIntensity;
        return;
    }
    const float way = static_cast<float>(currentStateTime / pulseTime);
    light->setDiffuseColor(lightColor * (increaseIntensity ? way : 1.f - way));
}

void ActPulsingLight::setPulseTime(double val)
{
    if (isUsable(*this, "pulseTime", static_cast<float>(val)))
        pulseTime = val;
}

void ActPulsingLight::setLightColor(Vec4 val)
{
    if (isUsable(*this, "lightColor", val))
        lightColor = val;
}
