// ActGuard: has a creature keep its place.
#pragma once

#include "ai/actions/CreatureAction.h"

/// Stands where it first stood, looks about there, and goes back when it is farther off than its reach.
///
/// Goes on for as long as it is asked to, but heeds what it perceives.
class ActGuard : public CreatureAction
{
    KV_REFLECTED(ActGuard)
public:
    ActGuard();

    ActionStatus update(Seconds frameTime) override;
    Handle<Action> clone() override { return cloneCreatureAction(); }

    /// The place that it keeps.
    Vec4 getPost() const { return post; }
    /// Sets the place that it keeps.
    void setPost(Vec4 val);

private:
    bool posted = false; ///< it has a place to keep
    Vec4 post;
    Vec4 ahead; ///< where it faced there
};
