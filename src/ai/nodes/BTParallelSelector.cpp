#include "ai/nodes/BTParallelSelector.h"

#include "ai/nodes/WalkedTasks.h"

StatusCode BTParallelSelector::run()
{
    if (runningChildren.empty())
        runningChildren = children;
    finalResult = SC_Undefined;
    activeTask() = 0;
    while (activeTask() < runningChildren.size() && finalResult == SC_Undefined)
        runActiveTask();
    return finalResult;
}

void BTParallelSelector::runActiveTask()
{
    BTTask *const child = resolve(runningChildren, activeTask());
    if (!child)
    {
        finalResult = reportMissingChild(activeTask());
        return;
    }
    switch (child->tick())
    {
    case SC_NeedMoreTime:
        if (++activeTask() >= runningChildren.size())
            finalResult = SC_NeedMoreTime;
        return;
    case SC_Success:
        terminate();
        finalResult = SC_Success;
        return;
    default:
        finishActiveTask();
    }
}

/// Takes the child at `activeTask`, which has failed, out of the running ones.
void BTParallelSelector::finishActiveTask()
{
    if (dropFinished(runningChildren, activeTask()))
        finalResult = runningChildren.empty() ? SC_Failure : SC_NeedMoreTime;
}

void BTParallelSelector::terminate()
{
    BTTask::terminate();
    runningChildren.clear();
}
