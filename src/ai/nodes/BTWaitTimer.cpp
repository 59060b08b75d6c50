#include "ai/nodes/BTWaitTimer.h"

StatusCode BTWaitTimer::run()
{
    BTTask *const child = findChild();
    if (!child)
        return reportNoChild();
    const TimeKeeper *const time = master.find(*this);
    if (!time)
        return SC_InvalidHandle;
    timer += time->getFrameTimeSeconds();
    if (!(timer > waitTime))
        return SC_NeedMoreTime;
    return child->tick() == SC_Failure ? SC_Failure : SC_NeedMoreTime;
}

ErrorReturn<Handle<BTTask>> BTWaitTimer::clone()
{
    const Handle<BTTask> copy = makeNode(getType());
    auto node = unchecked_handle_cast<BTWaitTimer>(copy).lookup();
    if (!node)
        return ErrorCode(ErrorCode::BT_FAILURE);
    node->waitTime = waitTime;
    node->children = children;
    return copy;
}

void BTWaitTimer::onHierarchyChange(Handle<Object> reparentedObject, Handle<Object> newParent)
{
    BTTask::onHierarchyChange(reparentedObject, newParent);
    master.forget();
}
