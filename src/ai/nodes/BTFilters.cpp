#include "ai/nodes/BTFilters.h"

StatusCode BTUntilFail::run()
{
    BTTask *const child = findChild();
    if (!child)
        return reportNoChild();
    return child->tick() == SC_Failure ? SC_Failure : SC_NeedMoreTime;
}

StatusCode BTUntilSucceed::run()
{
    BTTask *const child = findChild();
    if (!child)
        return reportNoChild();
    return child->tick() == SC_Success ? SC_Success : SC_NeedMoreTime;
}

StatusCode BTInverter::run()
{
    BTTask *const child = findChild();
    if (!child)
        return reportNoChild();
    switch (child->tick())
    {
    case SC_Success:
        return SC_Failure;
    case SC_Failure:
        return SC_Success;
    case SC_NeedMoreTime:
        return SC_NeedMoreTime;
    default:
        return SC_Undefined;
    }
}

StatusCode BTFailFilter::run()
{
    BTTask *const child = findChild();
    if (!child)
        return reportNoChild();
    switch (child->tick())
    {
    case SC_Success:
    case SC_Failure:
        return SC_Success;
    case SC_NeedMoreTime:
        return SC_NeedMoreTime;
    default:
        return SC_Undefined;
    }
}
