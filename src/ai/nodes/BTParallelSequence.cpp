#include "ai/nodes/BTParallelSequence.h"

#include "ai/nodes/WalkedTasks.h"

StatusCode BTParallelSequence::run()
{
    if (runningChildren.empty())
        runningChildren = children;
    finalResult = SC_Undefined;
    activeTask() = 0;
    while (activeTask() < runningChildren.size() && (finalResult == SC_Undefined || finalResult == SC_NeedMoreTime))
        runActiveTask();
    return finalResult;
}

void BTParallelSequence::runActiveTask()
{
    BTTask *const child = resolve(runningChildren, activeTask());
    if (!child)
    {
        finalResult = reportMissingChild(activeTask());
        return;
    }
    const StatusCode result = child->tick();
    // Terminated from within the child's tick.
    if (runningChildren.empty())
    {
        finalResult = SC_Success;
        return;
    }
    switch (result)
    {
    case SC_NeedMoreTime:
        if (++activeTask() >= runningChildren.size())
            finalResult = SC_NeedMoreTime;
        return;
    case SC_Failure:
        terminate();
        finalResult = SC_Failure;
        return;
    default:
        finishActiveTask();
    }
}

/// Takes the child at `activeTask` out of the running ones; with the last of the list everything begins anew.
void BTParallelSequence::finishActiveTask()
{
    if (!dropFinished(runningChildren, activeTask()))
        return;
    finalResult = SC_Success;
    if (runningChildren.empty())
        return;
    runningChildren = children;
    finalResult = SC_NeedMoreTime;
    activeTask() = static_cast<TaskListIt>(runningChildren.size());
}

void BTParallelSequence::terminate()
{
    BTTask::terminate();
    runningChildren.clear();
}
