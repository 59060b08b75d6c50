#include "ai/nodes/RunningTasks.h"

#include "ai/nodes/BTTask.h"

#include <algorithm>

bool dropFinished(TaskList &running, TaskListIt &active)
{
    if (active + 1 < running.size())
    {
        // A child may stand in the list twice: the walk goes on at the first place of the next one.
        const Handle<BTTask> next = running[active + 1];
        running.erase(running.begin() + static_cast<std::ptrdiff_t>(active));
        active = static_cast<TaskListIt>(std::find(running.begin(), running.end(), next) - running.begin());
        return false;
    }
    if (!running.empty())
        running.pop_back();
    active = static_cast<TaskListIt>(running.size());
    return true;
}
