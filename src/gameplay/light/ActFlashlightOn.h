// ActFlashlightOn: the flashlight shines as the player switches it and as its battery lets it.
#pragma once

#include "ai/actions/Action.h"

#include "foundation/PerlinNoise.h"
#include "foundation/Vector.h"

class LightComponent;
class PlayerComponent;

/// Switches the light at "flashlight/graphics2" below its entity by the level's player; goes on for ever.
///
/// It comes on over a moment, browns and trembles as the battery ends, sinks to an ember in its last seconds, and is dark
/// without one. What it is switched by is heard by the component "sound" of its entity.
class ActFlashlightOn : public Action
{
    KV_REFLECTED(ActFlashlightOn)
public:
    ActFlashlightOn() = default;

    ActionStatus update(Seconds frameTime) override;
    /// Has the next step begin afresh; the time goes on.
    void reset() override;
    Handle<Action> clone() override { return cloneAction(); }

    void handleFlashlightMessage(const ReflectorPtr &messageType, bool on);

    /// Where the light is on its way from dark, 0, to full, half of pi.
    float getFadeVal() const { return fadeVal; }
    /// Colour of the light with a full battery.
    Vec4 getOriginalDiffuse() const { return originalDiffuse; }
    /// How fast the trembling goes on, a second of a frame in 60.
    float getFlickerSpeed() const { return flickerSpeed; }
    void setFlickerSpeed(float val);

private:
    void begin(LightComponent &light);
    LightComponent *getLightComponent() const;
    void switchLight(LightComponent &light, const PlayerComponent &player);
    void updateTurnOn(LightComponent &light, Seconds frameTime);
    void updateTurnOff();
    void lightFlicker(LightComponent &light, const PlayerComponent &player, Seconds frameTime);
    void shine(LightComponent &light, const Vec4 &tint) const;

    Handle<PlayerComponent> hPlayerComp;
    bool initialized = false;
    bool stateChanged = false;
    float fadeVal = PI / 2.f; ///< radians
    float flickerRandomizer = 0.f;
    float flickerSpeed = 0.07f;
    Vec4 originalDiffuse;
    PerlinNoise noiseGenerator;
    Vec4 originalSpecular;
};
