// ActPursue: has a creature go where it takes its target for.
#pragma once

#include "ai/actions/CreatureAction.h"

/// Goes after the place at which its senses take the target for, as that moves, and is complete within its reach of it.
///
/// While it sees the target there it stays with it. AS_Failed when it has forgotten, or does not get there. Does not heed that it knows, unless told to.
class ActPursue : public CreatureAction
{
    KV_REFLECTED(ActPursue)
public:
    ActPursue();

    ActionStatus update(Seconds frameTime) override;
    Handle<Action> clone() override { return cloneCreatureAction(); }
};
