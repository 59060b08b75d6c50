// BTWaitTimer: holds its child back for a time.
#pragma once

#include "ai/nodes/BTDecorator.h"
#include "ai/nodes/MasterTimer.h"

/// Needs more time until its wait is over, and from then on ticks its child: SC_Failure where that fails,
/// SC_NeedMoreTime for anything else.
///
/// The time is that of the timer "master", and only ticks count. It begins at one second below zero and never begins
/// again. All copies share the one child, which therefore acts for the entity whose tree was made last, and dies with
/// it: not for a tree that several creatures use.
class BTWaitTimer : public BTDecorator
{
    KV_REFLECTED(BTWaitTimer)
public:
    BTWaitTimer() = default;

    StatusCode run() override;
    ErrorReturn<Handle<BTTask>> clone() override;
    void onHierarchyChange(Handle<Object> reparentedObject, Handle<Object> newParent) override;
    /// Sets how long the child is held back, seconds.
    void setWaitTimer(double time) { waitTime = time; }

    /// How long the child is held back, seconds.
    double getWaitTime() const { return waitTime; }
    void setWaitTime(double val) { waitTime = val; }
    /// How long it has been held back, seconds.
    double getTimer() const { return timer; }
    void setTimer(double val) { timer = val; }

private:
    double timer = -1.0;   ///< seconds
    double waitTime = 0.0; ///< seconds
    MasterTimer master;
};
