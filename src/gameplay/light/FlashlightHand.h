// FlashlightHand: the hand that carries the flashlight trails the view, tilts with the steps and can be shaken.
#pragma once

#include "engine/entities/SimpleComponent.h"

#include "foundation/PerlinNoise.h"
#include "foundation/Quaternion.h"
#include "foundation/TimeTypes.h"
#include "foundation/Vector.h"

/// Turns a flashlight in the player's hand, under the component key "hand" of the flashlight's entity.
///
/// Works on the "parentFollower" beside it as soon as the entity hangs on an entity with one of its own, the camera,
/// which hangs on a body; what lies in a level is left alone. Runs before the followers, on the view of this frame. The
/// beam trails a turning view by a spring that is solved for the whole frame, so that its course is the same at every
/// frame rate. Radians; seconds of the level's timer "master".
class FlashlightHand : public SimpleComponent
{
    KV_REFLECTED(FlashlightHand)
public:
    FlashlightHand() = default;

    void doFrame() override;

    /// Shakes the hand, as a blow does: 0.2 a start, 1 a hit that all but knocks the light out of it.
    ///
    /// Adds to what is left of earlier ones, to 1 at most. What is no number is logged as an error and shakes nothing.
    void shake(float amount);
    /// What is left of the shaking, 0 to 1.
    float getShaking() const { return shaking; }
    /// How far the beam is off the view to the right (x) and down (y), by trailing alone.
    Vec4 getLag() const { return Vec4(across.angle, along.angle, 0.f, 0.f); }

private:
    /// One axis of the hand: where it is against the view, and how fast it turns in the world.
    struct Spring
    {
        float angle = 0.f; ///< radians from the view
        float speed = 0.f; ///< radians a second, in the world

        /// Lets time pass in which the view turns by some angle.
        void step(float viewTurn, float seconds);
    };

    void follow(const Quaternion &view, float seconds);
    Quaternion shakenTurn() const;
    void letGo();

    bool isHeld = false;
    Quaternion lastView;
    Spring across;     ///< about the view's y
    Spring along;      ///< about the view's x
    Vec4 restingPlace; ///< of the follower when the hand took the light, metres
    float shaking = 0.f;
    Seconds age = 0.0; ///< since the hand took the light
    PerlinNoise noise;
};
