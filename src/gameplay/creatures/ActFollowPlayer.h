// ActFollowPlayer: what stands nearer than before when the player has looked away.
#pragma once

#include "engine/entities/SimpleComponent.h"

#include "foundation/KVString.h"
#include "foundation/TimeTypes.h"
#include "foundation/Vector.h"

class SteeringComponent;
class TransformComponent;
class TransformOffsetComponent;

/// Turns the head of a figure and lets the figure jump to the player's back, under the component key "behaviors".
///
/// The head is found at "MannequinHead/transform", "MannequinHead/steering" and "MannequinHead/parentFollower" below the
/// figure, the player at "Player/transform" below the level. The jump is called by what
/// notices the player: `BoundingVolume::followPlayer` for a group. With `unseenOnly` it besides never moves where the
/// player sees it go or come, nor to where there is no room to stand or where it would be in the only way; such a figure
/// needs a "perception", which says when it is watched. Metres, seconds of the timer "master".
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
    /// Takes the figure to a place on the ground of its own, turned to the player.
    ///
    /// Where it may not go there, by what `unseenOnly` asks whether set or not, or something stands between, nothing
    /// happens. Whether it went.
    /// @cost some segments and questions for the light
    bool stepTo(Vec4 place);
    /// Whether the figure could be at a place now, or come from where it is, without being seen, and has room there.
    bool isFreeToGo(Vec4 place);
    /// What it does and why, as a part of a sentence.
    String tell();

    /// Where the figure reappears: offset from the player, in his own axes, metres.
    Vec4 getPositionOffset() const { return positionOffset; }
    void setPositionOffset(Vec4 val);
    /// Whether it moves only unseen, and only to where it does not stand in the way.
    bool getUnseenOnly() const { return unseenOnly; }
    void setUnseenOnly(bool val) { unseenOnly = val; }
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
    bool unseenOnly = false;
};
