// ActWander: has a creature stroll about.
#pragma once

#include "ai/actions/Action.h"

/// Strolls where the component "steering" leads, keeping out of the others, for as long as it is asked to.
class ActWander : public Action
{
    KV_REFLECTED(ActWander)
public:
    ActWander() = default;

    ActionStatus update(Seconds frameTime) override;
    Handle<Action> clone() override { return cloneAction(); }
};
