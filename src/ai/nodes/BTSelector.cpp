#include "ai/nodes/BTSelector.h"

StatusCode BTSelector::run()
{
    if (children.empty())
        return SC_Undefined;
    BTTask *const child = resolve(children, activeTask);
    if (!child)
        return reportMissingChild(activeTask);

    switch (child->tick())
    {
    case SC_Success:
        activeTask = 0;
        return SC_Success;
    case SC_Failure:
        if (++activeTask < children.size())
            return SC_NeedMoreTime;
        activeTask = 0;
        return SC_Failure;
    default:
        return SC_NeedMoreTime;
    }
}

void BTSelector::terminate()
{
    BTTask::terminate();
    activeTask = 0;
}
