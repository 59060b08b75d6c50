// ActTakeFootstep: steps are heard as the feet come down.
#pragma once

#include "ai/actions/Action.h"

#include "foundation/Vector.h"

class PlayerComponent;

/// Plays a footstep by the component "sound" of its entity for each half metre along x or z; goes on for ever.
///
/// The event is "Step", the floor's material that the player's component beside it knows, "Stone" without one, and how
/// he goes: "StepWoodRun", "StepStoneCrouch". Without such an event in the sound's list nothing sounds.
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
    void playFootstep();

    const String &eventOf(const PlayerComponent *player);

    Vec4 prevFootstepPos; ///< native space, metres
    String floor;         ///< that the events are of
    String events[3];     ///< by gait
};
