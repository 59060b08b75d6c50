// ActPatrol: has a creature walk its round.
#pragma once

#include "ai/actions/CreatureAction.h"

/// Goes to the next place of the creature's round, and is complete there; the place after the last is the first.
///
/// The round is the entities below the creature's child "route", in order, by their transforms. AS_Failed where there
/// is none, which is logged once, and where it does not get to the place, which is passed over. Heeds what it perceives.
class ActPatrol : public CreatureAction
{
    KV_REFLECTED(ActPatrol)
public:
    ActPatrol();

    ActionStatus update(Seconds frameTime) override;
    Handle<Action> clone() override { return cloneCreatureAction(); }

    /// Index of the place that it goes to.
    int getNextPlace() const { return nextPlace; }
    void setNextPlace(int val) { nextPlace = val; }

private:
    bool findNextPlace(Vec4 &found);

    int nextPlace = 0;
    bool told = false; ///< the log knows that there is no round
};
