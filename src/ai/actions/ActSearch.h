// ActSearch: has a creature look for its target around where it took it for.
#pragma once

#include "ai/actions/CreatureAction.h"

/// Goes from spot to spot around the remembered place, no farther than that is vague, and looks about at each of them.
///
/// Complete after all spots, or as soon as it perceives something anew; AS_Failed when it has forgotten. Its reach is
/// the farthest that it looks however vague the place.
class ActSearch : public CreatureAction
{
    KV_REFLECTED(ActSearch)
public:
    ActSearch();

    void reset() override;
    ActionStatus update(Seconds frameTime) override;
    Handle<Action> clone() override;

    /// How many spots it looks at.
    int getSpots() const { return spots; }
    void setSpots(int val) { spots = val; }

private:
    bool perceivesAnew(const PerceptionComponent &senses) const;
    ActionStatus goOn(const PerceptionComponent &senses, const TransformComponent &body, Seconds frameTime);

    int spots = 4;
    int looked = 0; ///< spots that it has looked at
    bool looking = false;
    Vec4 ahead; ///< where it faced when it came to the spot
};
