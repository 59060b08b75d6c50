// ActFlashlightFlicker: the flashlight goes out for moments, the oftener the less its battery has left.
#pragma once

#include "ai/actions/Action.h"

#include "foundation/Vector.h"

class PlayerPhysics;

/// Interrupts the light at "flashlight/graphics2" below its entity while the player's flashlight shines; for ever.
///
/// Five levels of what is left say how long it shines and how long it is dark between. They follow the battery of the
/// level's player until a message says what is left. Seconds.
class ActFlashlightFlicker : public Action
{
    KV_REFLECTED(ActFlashlightFlicker)
public:
    /// How much is left.
    enum AmmoLevel
    {
        AL_LOW = 0,
        AL_EMPTY = 1,
        AL_MID = 2,
        AL_HIGH = 3,
        AL_MAX = 4
    };

    ActFlashlightFlicker() = default;

    ActionStatus update(Seconds frameTime) override;
    Handle<Action> clone() override { return cloneAction(); }

    /// Says what is left, percent; from then on the battery is not looked at.
    void handleAmmoMessage(const ReflectorPtr &messageType, unsigned ammo);
    /// The level of so much that is left, percent.
    static AmmoLevel levelOf(unsigned ammo);

    /// Whether the light is interrupted now and then.
    bool getFlickering() const { return flickering; }
    /// Shortest and longest time that it shines, in x and y, and that it is dark, in z and w; seconds.
    Vec4 getTimes() const;

private:
    PlayerPhysics *findBody() const;
    void followBattery();
    void takeLevel(AmmoLevel level);
    void flicker(Seconds frameTime);

    Handle<Object> hPlayer;
    bool addedInfo = false;     ///< a message has said what is left
    bool flickering = false;    ///< the level has the light interrupted
    bool lookupPlayer = false;  ///< the next step looks for the player
    double flickerTime = 0.0;   ///< in the present state
    double flickerLength = 0.0; ///< of the present state
    bool flashlightOn = false;  ///< the present state is light
    double onMin = 0.0;
    double onMax = 0.0;
    double offMin = 0.0;
    double offMax = 0.0;
    double delayTime = 0.0; ///< from the level to its first interruption
    Vec4 originalDiffuse;   ///< of the light when it was interrupted first
};
