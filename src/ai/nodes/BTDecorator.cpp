#include "ai/nodes/BTDecorator.h"

Handle<BTTask> BTDecorator::addChild(Handle<BTTask> child)
{
    if (!children.empty())
        return child;
    const TaskListIt kept = activeTask;
    BTTask::addChild(child);
    activeTask = kept;
    return child;
}

void BTDecorator::terminate()
{
    terminateChildren();
}
