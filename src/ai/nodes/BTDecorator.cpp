#include "ai/nodes/BTDecorator.h"

Handle<BTTask> BTDecorator::addChild(Handle<BTTask> child)
{
    if (!children.empty())
        return child;
    const TaskListIt kept = getActiveTask();
    BTTask::addChild(child);
    setActiveTask(kept);
    return child;
}

void BTDecorator::terminate()
{
    terminateChildren();
}
