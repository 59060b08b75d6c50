// ActWander: has a creature stroll about.
#pragma once

#include "ai/actions/CreatureAction.h"

/// Goes to a place by chance within its reach, and is complete there.
///
/// AS_Failed where it does not get there. A creature without a follower strolls where its "steering" leads, for as long
/// as it is asked to. Heeds what it perceives.
class ActWander : public CreatureAction
{
    KV_REFLECTED(ActWander)
public:
    ActWander();

    ActionStatus update(Seconds frameTime) override;
    Handle<Action> clone() override { return cloneCreatureAction(); }

private:
    ActionStatus stroll(Seconds frameTime);
};
