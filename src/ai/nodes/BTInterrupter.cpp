#include "ai/nodes/BTInterrupter.h"

StatusCode BTInterrupter::run()
{
    if (children.empty())
        return SC_Undefined;
    if (interruptResult != SC_Undefined)
    {
        terminate();
        return interruptResult;
    }
    BTTask *const child = findChild();
    return child ? child->tick() : reportNoChild();
}

void BTInterrupter::terminate()
{
    interruptResult = SC_Undefined;
    BTDecorator::terminate();
}
