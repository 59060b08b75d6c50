#include "ai/nodes/BTParallelSelector.h"

#include <algorithm>

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
    if (activeTask() + 1 < runningChildren.size())
    {
        const Handle<BTTask> next = runningChildren[activeTask() + 1];
        runningChildren.erase(runningChildren.begin() + static_cast<std::ptrdiff_t>(activeTask()));
        const auto found = std::find(runningChildren.begin(), runningChildren.end(), next);
        activeTask() = static_cast<TaskListIt>(found - runningChildren.begin());
        return;
    }
    // Terminated from within the child's tick, the list is empty already.
    if (!runningChildren.empty())
        runningChildren.pop_back();
    finalResult = runningChildren.empty() ? SC_Failure : SC_NeedMoreTime;
    activeTask() = static_cast<TaskListIt>(runningChildren.size());
}

void BTParallelSelector::terminate()
{
    BTTask::terminate();
    runningChildren.clear();
}
