#include "gameplay/light/ActFlashlightFlicker.h"

#include "gameplay/light/LightLookup.h"
#include "gameplay/player/PlayerComponent.h"
#include "gameplay/player/PlayerLookup.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/Coordinator.h"
#include "object/tree/WellKnownPaths.h"
#include "physics/bodies/PlayerPhysics.h"
#include "rendering/drawn/LightComponent.h"

#include "foundation/Random.h"

#include <algorithm>
#include <iterator>

namespace
{

/// How the light is interrupted, seconds; never where the dark lasts for 0.
struct Rhythm
{
    double onMin, onMax, offMin, offMax, delay;
};

constexpr Rhythm RHYTHMS[] = {
    {0.6, 3.5, 0.04, 0.16, 0.5},   // AL_LOW
    {0.08, 0.9, 0.05, 0.35, 0.0},  // AL_EMPTY
    {5.0, 14.0, 0.03, 0.09, 2.0},  // AL_MID
    {20.0, 45.0, 0.02, 0.05, 8.0}, // AL_HIGH
    {0.0, 0.0, 0.0, 0.0, 0.0},     // AL_MAX
};

double between(double least, double most)
{
    return static_cast<double>(randomFloat(static_cast<float>(least), static_cast<float>(most)));
}

} // namespace

ActionStatus ActFlashlightFlicker::update(Seconds frameTime)
{
    if (lookupPlayer)
    {
        const auto level = getAncestorOfType<Coordinator>().lookup();
        hPlayer = level ? level->getChild(WellKnownPaths::player) : Handle<Object>();
        lookupPlayer = false;
        return AS_InProgress;
    }
    const PlayerPhysics *const body = findBody();
    lookupPlayer = !body;
    if (!body || !body->getFlashlightStatus())
        return AS_InProgress;
    followBattery();
    incrementTime(frameTime);
    if (flickering && elapsedTime > delayTime)
        flicker(frameTime);
    return AS_InProgress;
}

PlayerPhysics *ActFlashlightFlicker::findBody() const
{
    return componentOf<PlayerPhysics>(hPlayer, ComponentKeys::physics);
}

/// Takes the level of the battery, unless a message has said what is left.
void ActFlashlightFlicker::followBattery()
{
    const auto player = addedInfo ? Handle<PlayerComponent>::Result{} : playerOf(*this).lookup();
    if (!player)
        return;
    const double left = 100.0 * player->getCurrBatteryTimeLeft() / player->getBatteryLifetime();
    takeLevel(levelOf(static_cast<unsigned>(std::clamp(left, 0.0, 100.0))));
}

void ActFlashlightFlicker::handleAmmoMessage(const ReflectorPtr &, unsigned ammo)
{
    addedInfo = true;
    takeLevel(levelOf(ammo));
}

ActFlashlightFlicker::AmmoLevel ActFlashlightFlicker::levelOf(unsigned ammo)
{
    if (ammo > 50)
        return ammo > 80 ? AL_MAX : AL_HIGH;
    if (ammo > 20)
        return AL_MID;
    return ammo > 5 ? AL_LOW : AL_EMPTY;
}

/// Sets the times of a level, which begin anew where they differ from the present ones.
void ActFlashlightFlicker::takeLevel(AmmoLevel level)
{
    const auto row = static_cast<unsigned>(level);
    if (row >= std::size(RHYTHMS))
        return;
    const Rhythm &rhythm = RHYTHMS[row];
    if (flickering == (rhythm.offMax > 0.0) && onMin == rhythm.onMin && onMax == rhythm.onMax)
        return;
    onMin = rhythm.onMin;
    onMax = rhythm.onMax;
    offMin = rhythm.offMin;
    offMax = rhythm.offMax;
    delayTime = rhythm.delay;
    LightComponent *const light = carriedLight(getParent());
    if (light && flickering && !flashlightOn)
        light->setVisible(true); // an interruption does not outlast its level
    flickering = rhythm.offMax > 0.0;
    flashlightOn = true;
    elapsedTime = flickerTime = 0.0;
    flickerLength = between(onMin, onMax);
}

/// Lets light and dark follow each other by their times.
void ActFlashlightFlicker::flicker(Seconds frameTime)
{
    LightComponent *const light = carriedLight(getParent());
    if (!light)
        return;
    if (flashlightOn)
        originalDiffuse = light->getDiffuseColor();
    flickerTime += frameTime;
    if (!(flickerTime >= flickerLength))
        return;
    flashlightOn = !flashlightOn;
    flickerTime = 0.0;
    flickerLength = flashlightOn ? between(onMin, onMax) : between(offMin, offMax);
    light->setVisible(flashlightOn);
}

Vec4 ActFlashlightFlicker::getTimes() const
{
    return Vec4(static_cast<float>(onMin), static_cast<float>(onMax), static_cast<float>(offMin),
                static_cast<float>(offMax));
}
