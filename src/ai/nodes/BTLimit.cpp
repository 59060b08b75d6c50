#include "ai/nodes/BTLimit.h"

StatusCode BTLimit::run()
{
    if (runSoFar >= runLimit)
    {
        runSoFar = 0;
        return SC_Failure;
    }
    ++runSoFar;
    BTTask *const child = findChild();
    return child ? child->tick() : reportNoChild();
}

void BTLimit::terminate()
{
    runSoFar = 0;
    BTDecorator::terminate();
}
