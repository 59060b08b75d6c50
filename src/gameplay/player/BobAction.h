// BobAction: what swings up and down with the steps of the player.
#pragma once

#include "ai/actions/Action.h"

#include "foundation/Vector.h"

class PlayerComponent;
class TransformOffsetComponent;

/// Base of the bobs: moves the offset of a follower by the steps that the player takes.
///
/// The offset is changed and not set, so that what else moves it goes on beside the bob. A bob begins 0.2 seconds after
/// the first step, a half wave for each further one, and comes to rest in proportion when the player stands. Where the
/// feet are counted (`PlayerComponent::getStride`) it goes in time with them, or else by a step's time. Metres.
class BobAction : public Action
{
    KV_REFLECTED(BobAction)
public:
    ActionStatus update(Seconds frameTime) override;

    /// Moves the offset up and down, or back to rest.
    void updateBob(Seconds frameTime, bool playerMoving);
    /// Moves the offset from side to side, or back to the middle.
    void updateSway(Seconds frameTime, bool playerMoving);
    /// Takes the offset back to the middle.
    void centerSway(Seconds frameTime);

    /// What the step is taken with: 1 for one ahead, 0 for none.
    float getMultiplier() const { return multiplier; }
    /// What the bob has added to the height, metres.
    float getTotalBobOffset() const { return totalBobOffset; }
    /// Part of the bob's width by which the sway goes to the side.
    float getSwayPercentage() const { return swayPercentage; }
    void setSwayPercentage(float val);
    /// The offset that the follower had before the first step.
    Vec4 getOriginalOffset() const { return originalOffset; }

protected:
    BobAction() = default;

    /// Finds the player and the follower; false where one is missing.
    virtual bool getHandles() = 0;

    Handle<PlayerComponent> hPlayerComp;
    Handle<TransformOffsetComponent> hParentFollower;

private:
    float multiplierOf(const PlayerComponent &player) const;
    float stepOn(float phase, float turn, const PlayerComponent &player, Seconds frameTime) const;
    float towards(float wave, float offset, const PlayerComponent &player, Seconds frameTime) const;
    void move(float right, float up);

    bool initialized = false;
    float swayVal = 0.f; ///< radians, two steps a turn
    float bobVal = 0.f;  ///< radians, a step half a turn
    float swayPercentage = 0.4f;
    float multiplier = 0.f;
    float totalBobOffset = 0.f; ///< metres
    float totalSway = 0.f;      ///< metres to the right
    Vec4 originalOffset;        ///< metres
};
