// ActFollowPlayer: what stands nearer than before when the player has looked away.
#pragma once

#include "engine/entities/SimpleComponent.h"

#include "foundation/TimeTypes.h"
#include "foundation/Vector.h"

class SteeringComponent;
class TransformComponent;
class TransformOffsetComponent;

/// Turns the head of a figure and lets the figure jump to the player's back, under the component key "behaviors".
///
/// The head is the child "MannequinHead" with "transform", "steering" and "parentFollower". The jump is called by what
/// notices the player: `BoundingVolume::followPlayer` for a group. Metres, seconds of the timer "master".
class ActFollowPlayer : public SimpleComponent
{
    KV_REFLECTED(ActFollowPlayer)
public:
    ActFollowPlayer() = default;

    /// Finds the player of the level and the figure's head.
    void onLoadComplete() override;
    /// Turns the head.
    void doFrame() override;
    /// Takes the figure to its place by the player, turned to where it came from, unless the player faces it or it has
    /// jumped just now. Needs a transform and a bounding volume.
    void followPlayer();

    /// Where the figure reappears: offset from the player, in his own axes, metres.
    Vec4 getPositionOffset() const { return positionOffset; }
    void setPositionOffset(Vec4 val);
    /// Time between two jumps, seconds.
    double getCoolDownTime() const { return coolDownTime; }
    void setCoolDownTime(double val);
    /// Time until the next jump, seconds; below 0 it has been due for so long.
    double getCurrentCoolDown() const { return currentCoolDown; }

private:
    Vec4 positionOffset;
    double currentCoolDown = 0.0;
    double coolDownTime = 2.0;
    Handle<TransformOffsetComponent> hParentFollower;
    Handle<TransformComponent> hPlayerTransform;
    Handle<TransformComponent> hTransform;
    Handle<SteeringComponent> hSteering;
};
