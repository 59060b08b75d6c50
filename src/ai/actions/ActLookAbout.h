// ActLookAbout: has a creature look to both sides.
#pragma once

#include "ai/actions/CreatureAction.h"

/// Looks to the left and to the right of where it faced, for its duration. Heeds what it perceives.
class ActLookAbout : public CreatureAction
{
    KV_REFLECTED(ActLookAbout)
public:
    ActLookAbout();

    ActionStatus update(Seconds frameTime) override;
    Handle<Action> clone() override { return cloneCreatureAction(); }

private:
    Vec4 ahead; ///< where it faced as it began
};
