#include "gameplay/light/ActLightFlicker.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/levels/Coordinator.h"
#include "engine/time/TimerNames.h"
#include "physics/volumes/FiniteProperty.h"
#include "rendering/drawn/LightComponent.h"

#include "foundation/Random.h"

#include <algorithm>
#include <cmath>

void ActLightFlicker::onLoadComplete()
{
    const auto light = handle_cast<LightComponent>(getSibling(ComponentKeys::graphics2)).lookup();
    lightOn = light && light->getVisible();
}

void ActLightFlicker::doFrame()
{
    const auto light = handle_cast<LightComponent>(getSibling(ComponentKeys::graphics2)).lookup();
    const auto level = getAncestorOfType<Coordinator>().lookup();
    if (!light || !level)
        return;
    const Seconds frameTime = level->getTimer(TimerNames::master).getFrameTimeSeconds();
    currentStateTime += frameTime;
    if (!stateEnds(frameTime))
        return;
    lightOn = !lightOn;
    currentStateTime = 0.0;
    light->setVisible(lightOn);
}

bool ActLightFlicker::stateEnds(Seconds frameTime) const
{
    if (currentStateTime < (lightOn ? minOnTime : minOffTime))
        return false;
    if (currentStateTime >= (lightOn ? maxOnTime : maxOffTime))
        return true;
    const double stays = 1.0 - static_cast<double>(lightOn ? probabilityOff : probabilityOn);
    return static_cast<double>(frand()) >= std::pow(stays, frameTime);
}

void ActLightFlicker::setProbabilityOn(float val)
{
    if (isUsable(*this, "probabilityOn", val))
        probabilityOn = std::clamp(val, 0.f, 1.f);
}

void ActLightFlicker::setProbabilityOff(float val)
{
    if (isUsable(*this, "probabilityOff", val))
        probabilityOff = std::clamp(val, 0.f, 1.f);
}

void ActLightFlicker::setMinOnTime(double val)
{
    if (isUsable(*this, "minOnTime", static_cast<float>(val)))
        minOnTime = val;
}

void ActLightFlicker::setMaxOnTime(double val)
{
    if (isUsable(*this, "maxOnTime", static_cast<float>(val)))
        maxOnTime = val;
}

void ActLightFlicker::setMinOffTime(double val)
{
    if (isUsable(*this, "minOffTime", static_cast<float>(val)))
        minOffTime = val;
}

void ActLightFlicker::setMaxOffTime(double val)
{
    if (isUsable(*this, "maxOffTime", static_cast<float>(val)))
        maxOffTime = val;
}
