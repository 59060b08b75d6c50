#include "ai/nodes/BTSequence.h"

StatusCode BTSequence::run()
{
    if (children.empty())
        return SC_Failure;
    BTTask *const child = resolve(children, activeTask);
    if (!child)
        return reportMissingChild(activeTask);

    const StatusCode result = child->tick();
    if (terminated)
    {
        terminated = false;
        return SC_Success;
    }
    switch (result)
    {
    case SC_NeedMoreTime:
        return SC_NeedMoreTime;
    case SC_Failure:
        activeTask = 0;
        return SC_Failure;
    case SC_InvalidHandle:
        terminate();
        return SC_InvalidHandle;
    default:
        if (++activeTask < children.size())
            return SC_NeedMoreTime;
        activeTask = 0;
        return SC_Success;
    }
}

void BTSequence::terminate()
{
    BTTask::terminate();
    activeTask = 0;
}
