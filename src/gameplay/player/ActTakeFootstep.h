// ActTakeFootstep: steps are heard as the feet come down.
#pragma once

#include "ai/actions/Action.h"

#include "foundation/Vector.h"

class PlayerComponent;
class PlayerPhysics;

/// Plays a footstep by the component "sound" of its entity for each half metre along x or z; goes on for ever.
///
/// The event is "Step", the floor's material that the player's component beside it knows, "Stone" without one, and how
/// he goes: "StepWoodRun", "StepStoneCrouch". Without such an event in the sound's list nothing sounds. Feet in the air
/// take no steps, and are heard when they come down; a player whose body is surefooted is told how far his step has come.
class ActTakeFootstep : public Action
{
    KV_REFLECTED(ActTakeFootstep)
public:
    /// Metres along x or along z from one step to the next.
    static constexpr float FOOTSTEP_DISTNACE = 0.5f;

    ActTakeFootstep() = default;

    ActionStatus update(Seconds frameTime) override;
    Handle<Action> clone() override { return cloneAction(); }

    /// Where the last step was taken, native space, metres.
    Vec4 getPrevFootstepPos() const { return prevFootstepPos; }

private:
    enum Gait
    {
        WALK,
        RUN,
        CROUCH,
        NUM_GAITS
    };
    static Gait gaitOf(const PlayerComponent *player);
    void takeStep(PlayerComponent *player, const Vec4 &position);
    void land(const PlayerPhysics &body);
    void playFootstep(Gait gait);
    const String &eventOf(const PlayerComponent *player, Gait gait);

    Vec4 prevFootstepPos;     ///< native space, metres
    String floor;             ///< that the events are of
    String events[NUM_GAITS]; ///< by gait
    int landingsHeard = -1;   ///< of the body; -1 before the first frame
};
