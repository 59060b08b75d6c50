// BTParallelSelector: ticks its children side by side.
#pragma once

#include "ai/nodes/BTTask.h"

/// Ticks its children side by side until one succeeds.
///
/// Each tick runs, in order, the children that have not failed yet. SC_Success ends all of them. When the last of the list
/// fails while others go on, those go on; all of them having failed is SC_Failure. SC_Undefined without children.
/// `activeTask` walks the children that are still running.
class BTParallelSelector : public BTTask
{
    KV_REFLECTED(BTParallelSelector)
public:
    BTParallelSelector() = default;

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
