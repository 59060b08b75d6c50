// ActFlee: has a creature run into the dark, away from its target.
#pragma once

#include "ai/actions/CreatureAction.h"
#include "ai/actions/PlaceChoice.h"

/// Weighs places within its reach by how far they lie from the target, how dark they are, and whether the way there
/// leads away, goes to the best one, and is complete there.
///
/// AS_Failed when it has forgotten what it flees from, or does not get away. Does not heed that it knows.
class ActFlee : public CreatureAction
{
    KV_REFLECTED(ActFlee)
public:
    ActFlee();

    void reset() override;
    ActionStatus update(Seconds frameTime) override;
    Handle<Action> clone() override { return cloneCreatureAction(); }

private:
    void weighOne(const PerceptionComponent &senses);

    PlaceChoice choice;
};
