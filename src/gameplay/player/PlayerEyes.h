// PlayerEyes: the view goes softly where the feet go hard.
#pragma once

#include "engine/entities/SimpleComponent.h"

#include "foundation/TimeTypes.h"

class PlayerPhysics;
class TransformComponent;

/// Softens what ground does to the view of the entity that it stands on, the child "camera" of the player's entity,
/// under the component key "form".
///
/// The view follows steps and slopes a little later than the feet, and dips when a fall ends. Comes after the camera was
/// tied to the body for this frame, and moves it up and down alone. Metres; the body beside the parent's "physics" must
/// be a surefooted `PlayerPhysics`, or the view stays as it is.
class PlayerEyes : public SimpleComponent
{
    KV_REFLECTED(PlayerEyes)
public:
    PlayerEyes() = default;

    void doFrame() override;

    /// What the view lies above where the feet would have it, metres.
    float getOffset() const { return lag + dip * shakeAmount; }

    float getShakeAmount() const { return shakeAmount; }
    /// Part of a landing's dip that the view shows, 0..1.
    void setShakeAmount(float val);

private:
    void follow(float feet, bool onGround, float seconds);
    void sink(const PlayerPhysics &body, float seconds);

    float feetBefore = 0.f; ///< height, metres
    bool hasFeet = false;   ///< `feetBefore` is known
    float lag = 0.f;        ///< metres that steps have still to lift or lower the view
    float dip = 0.f;        ///< metres of the landing, downwards is negative
    float dipSpeed = 0.f;   ///< metres a second
    float shakeAmount = 1.f;
    int landings = 0; ///< of the body, so far
};
