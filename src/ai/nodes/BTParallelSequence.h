// BTParallelSequence: ticks its children side by side.
#pragma once

#include "ai/nodes/BTTask.h"

/// Ticks its children side by side until one fails.
///
/// Each tick runs, in order, the children that have not finished yet; SC_Failure ends all of them. A child that finishes
/// drops out, so a condition that holds is asked once a round. When the last of the list finishes while others go on,
/// all children are back in play with the next tick. SC_Undefined without children.
/// `activeTask` walks the children that are still running.
class BTParallelSequence : public BTTask
{
    KV_REFLECTED(BTParallelSequence)
public:
    BTParallelSequence() = default;

    StatusCode run() override;
    /// Ends what is going on; the next tick begins with all children.
    void terminate() override;
    ErrorReturn<Handle<BTTask>> clone() override { return cloneWithChildren(); }
    /// Ticks the child at `activeTask` and passes on to the next one.
    void runActiveTask();

    /// What the tick at work has come to.
    StatusCode getFinalResult() const { return finalResult; }
    void setFinalResult(StatusCode val) { finalResult = val; }
    const TaskList &getWalkedTasks() const override { return runningChildren; }

private:
    void finishActiveTask();

    TaskList runningChildren;
    StatusCode finalResult = SC_Undefined;
};
