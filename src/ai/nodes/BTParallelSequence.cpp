#include "ai/nodes/BTParallelSequence.h"

#include <algorithm>

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
    if (activeTask() + 1 < runningChildren.size())
    {
        const Handle<BTTask> next = runningChildren[activeTask() + 1];
        runningChildren.erase(runningChildren.begin() + static_cast<std::ptrdiff_t>(activeTask()));
        const auto found = std::find(runningChildren.begin(), runningChildren.end(), next);
        activeTask() = static_cast<TaskListIt>(found - runningChildren.begin());
        return;
    }
    if (!runningChildren.empty())
        runningChildren.pop_back();
    finalResult = SC_Success;
    if (!runningChildren.empty())
    {
        runningChildren = children;
        finalResult = SC_NeedMoreTime;
    }
    activeTask() = static_cast<TaskListIt>(runningChildren.size());
}

void BTParallelSequence::terminate()
{
    BTTask::terminate();
    runningChildren.clear();
}
