// Action: what a leaf of a behaviour tree does over time.
#pragma once

#include "ai/nodes/BTTask.h"

#include "foundation/TimeTypes.h"

#include <utility>

/// Name of an action, for developers.
using ActionName = String;

/// Base of the actions: work that a leaf has done step by step, once a tick.
///
/// Stands below the entity that acts, and reaches its components there. A copy of a tree has copies of its actions. An
/// action whose entity lacks something says AS_InvalidHandle and is asked again.
class Action : public Object
{
    KV_REFLECTED(Action)
public:
    Action() = default;

    /// Does one step.
    /// @param frameTime  seconds of the timer "master"
    virtual ActionStatus update(Seconds frameTime) = 0;
    /// Has the next step begin afresh.
    virtual void reset();
    /// Ends the work because the tree has turned to something else.
    virtual void terminate();
    /// What developers know the action by; may be empty.
    virtual ActionName name() const;
    /// A new action of the same class; what it takes over stands at the class.
    virtual Handle<Action> clone() = 0;

    /// Adds to the time worked, seconds.
    void incrementTime(double increment);
    /// What is left of the duration, seconds; below zero when that is over.
    double timeLeft();

    /// The leaf that holds the action.
    Handle<BTTask> getParentTask() const { return parentTask; }
    void setParentTask(Handle<BTTask> val) { parentTask = val; }
    /// Time worked since it began afresh, seconds.
    double getElapsedTime() const { return elapsedTime; }
    void setElapsedTime(double val) { elapsedTime = val; }
    /// How long the work takes, seconds.
    double getDuration() const { return duration; }
    void setDuration(double val) { duration = val; }
    /// How much of the work is done.
    double getPercentDone() const { return percentDone; }
    void setPercentDone(double val) { percentDone = val; }
    ActionName getActionName() const { return actionName; }
    void setActionName(ActionName val) { actionName = std::move(val); }
    /// How far the work has come.
    ActionStatus getCurrentStatus() const { return currentStatus; }
    void setCurrentStatus(ActionStatus val) { currentStatus = val; }

protected:
    /// A new action of this one's class.
    Handle<Action> cloneAction() const;

    Handle<BTTask> parentTask;
    double elapsedTime = 0.0; ///< seconds
    double duration = 0.0;    ///< seconds
    double percentDone = 0.0;
    ActionName actionName;
    ActionStatus currentStatus = AS_InProgress;
};
