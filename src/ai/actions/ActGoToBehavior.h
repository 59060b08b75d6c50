// ActGoToBehavior: turns the creature to another of its behaviours.
#pragma once

#include "ai/actions/Action.h"

/// Sets the active behaviour of its entity's component "behaviors", and is complete, whether that knows it or not.
///
/// The tree that holds it is mostly the active one and is thus terminated within its own tick. A copy has the same
/// behaviour.
class ActGoToBehavior : public Action
{
    KV_REFLECTED(ActGoToBehavior)
public:
    ActGoToBehavior() = default;

    ActionStatus update(Seconds frameTime) override;
    Handle<Action> clone() override;

    /// Sets the name of the behaviour to turn to.
    void setBehaviorLookup(String behave) { behavior = behave; }
    /// The name of the behaviour to turn to.
    String getBehaviorLookup() const { return behavior; }

private:
    String behavior;
};
