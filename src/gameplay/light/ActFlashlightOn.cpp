#include "gameplay/light/ActFlashlightOn.h"

#include "gameplay/light/LightLookup.h"
#include "gameplay/player/LevelHandlers.h"
#include "gameplay/player/PlayerComponent.h"
#include "gameplay/player/PlayerLookup.h"
#include "gameplay/player/PlayerMessages.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "physics/volumes/FiniteProperty.h"
#include "platform/sound/SoundComponent.h"
#include "rendering/drawn/LightComponent.h"

#include "foundation/Random.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr float FULL = PI / 2.f;
constexpr float COMES_ON = FULL / 0.12f;    ///< radians a second
constexpr float ENDING = 0.3f;              ///< part of the battery from which on it is seen to end
constexpr float TREMBLE = 0.35f;            ///< part of the light at the very end
constexpr float STEPS_A_SECOND = 60.f;      ///< of the flicker's speed
constexpr float DYING = 5.f;                ///< seconds of battery from which on the light sinks to an ember
const Vec4 BROWN(0.62f, 0.36f, 0.16f, 1.f); ///< what is left of each colour before that
const Vec4 EMBER(0.16f, 0.05f, 0.01f, 1.f); ///< what is left of each colour at the very end
const Vec4 WHOLE(1.f, 1.f, 1.f, 1.f);

} // namespace

ActionStatus ActFlashlightOn::update(Seconds frameTime)
{
    LightComponent *const light = getLightComponent();
    if (!light)
        return AS_InvalidHandle;
    if (!initialized)
        begin(*light);
    if (!hPlayerComp.isValid())
        hPlayerComp = playerOf(*this);
    const auto player = hPlayerComp.lookup();
    if (!player)
        return AS_InvalidHandle;
    switchLight(*light, *player);
    if (light->getVisible())
        updateTurnOn(*light, frameTime);
    else
        updateTurnOff();
    lightFlicker(*light, *player, frameTime);
    return AS_InProgress;
}

void ActFlashlightOn::begin(LightComponent &light)
{
    static const String handler = SCS("handleFlashlightMessage");
    initialized = true;
    hearInLevel(*this, FlashlightOn, handler);
    originalDiffuse = light.getDiffuseColor();
    originalSpecular = light.getSpecularColor();
}

void ActFlashlightOn::reset()
{
    percentDone = 0.0;
    currentStatus = AS_InProgress;
}

LightComponent *ActFlashlightOn::getLightComponent() const
{
    return carriedLight(getParent());
}

void ActFlashlightOn::handleFlashlightMessage(const ReflectorPtr &, bool on)
{
    static const String onSound = SCS("FlashlightOn"), offSound = SCS("FlashlightOff");
    stateChanged = true;
    if (auto *const voice = componentOf<SoundComponent>(getParent(), ComponentKeys::sound))
        voice->playSoundEffect(on ? onSound : offSound);
}

void ActFlashlightOn::switchLight(LightComponent &light, const PlayerComponent &player)
{
    if (!(player.getCurrBatteryTimeLeft() > 0.0))
    {
        light.setVisible(false);
        stateChanged = true; // the next battery is looked at anew
        return;
    }
    if (!stateChanged)
        return;
    stateChanged = !player.isFlashlightOn();
    light.setVisible(player.isFlashlightOn());
}

/// Takes the light a step on towards its full strength.
void ActFlashlightOn::updateTurnOn(LightComponent &light, Seconds frameTime)
{
    fadeVal = std::min(fadeVal + COMES_ON * stepLength(frameTime), FULL);
    shine(light, WHOLE * std::sin(fadeVal));
}

/// The next light begins in the dark.
void ActFlashlightOn::updateTurnOff()
{
    fadeVal = 0.f;
}

/// Browns the light and lets it tremble by how near the battery is to its end, and die away in the last seconds.
void ActFlashlightOn::lightFlicker(LightComponent &light, const PlayerComponent &player, Seconds frameTime)
{
    flickerRandomizer = std::fmod(flickerRandomizer + flickerSpeed * STEPS_A_SECOND * stepLength(frameTime), 256.f);
    const auto seconds = static_cast<float>(player.getCurrBatteryTimeLeft());
    const float end = std::clamp(1.f - seconds / (ENDING * static_cast<float>(player.getBatteryLifetime())), 0.f, 1.f);
    if (!light.getVisible() || player.isCharging() || !(end > 0.f))
        return;
    const float dying = std::clamp(1.f - seconds / DYING, 0.f, 1.f);
    const float chance = static_cast<float>(engineRand()) * 3.0517578e-5f;
    const float noise = noiseGenerator.generateNoise(Vec4(chance, flickerRandomizer, 0.f, 0.f));
    const Vec4 brown = WHOLE + (BROWN - WHOLE) * (end * end);
    const Vec4 tint = brown + (EMBER - brown) * (dying * dying);
    shine(light, tint * (std::sin(fadeVal) * std::max(1.f + TREMBLE * end * noise, 0.f)));
}

/// Gives the light a share of each of its colours.
void ActFlashlightOn::shine(LightComponent &light, const Vec4 &tint) const
{
    light.setDiffuseColor(originalDiffuse * tint);
    light.setSpecularColor(originalSpecular * tint);
}

void ActFlashlightOn::setFlickerSpeed(float val)
{
    if (isUsable(*this, "flickerSpeed", val))
        flickerSpeed = val;
}
