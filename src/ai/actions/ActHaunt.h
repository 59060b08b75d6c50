// ActHaunt: has a creature keep to the dark near its target.
#pragma once

#include "ai/actions/CreatureAction.h"
#include "ai/actions/PlaceChoice.h"

/// Lurks in the darkest place near its target that it finds, rather behind than before it, and faces it.
///
/// It knows where its target is without perceiving it. It goes to another place when there is light on it, when it is
/// looked at, and when the target comes nearer than its closeness or farther off than its reach. Goes on for as long as
/// it is asked to.
class ActHaunt : public CreatureAction
{
    KV_REFLECTED(ActHaunt)
public:
    ActHaunt();

    void reset() override;
    ActionStatus update(Seconds frameTime) override;
    Handle<Action> clone() override;

    /// How near it comes, metres.
    float getCloseness() const { return closeness; }
    /// Sets it; what is negative or no number is logged as an error and changes nothing.
    void setCloseness(float val) { setMeasure(closeness, "closeness", val); }

private:
    void weighOne(const TransformComponent &target);
    bool isUneasy(PerceptionComponent &senses, const TransformComponent &target);

    float closeness = 4.f;
    PlaceChoice choice;
    double nextLook = 0.0; ///< of the time worked, when it asks for light and looks again
};
