// ActAStar: has a path planned, and waits for it.
#pragma once

#include "ai/actions/Action.h"

/// Asks once for a path to the target of its entity's component "path", and is complete or failed as the answer is.
///
/// Only a free cell is asked for: one whose value is 0. While the target is none, it waits.
class ActAStar : public Action
{
    KV_REFLECTED(ActAStar)
public:
    ActAStar() = default;

    ActionStatus update(Seconds frameTime) override;
    Handle<Action> clone() override { return cloneAction(); }
};
