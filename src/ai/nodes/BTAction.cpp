#include "ai/nodes/BTAction.h"

#include "ai/actions/Action.h"
#include "ai/nodes/LeafCall.h"
#include "ai/trees/TreeText.h"

#include "engine/entities/Entity.h"

#include "foundation/Assertions.h"

BTAction::~BTAction()
{
    if (auto action = hAction.lookup())
        action->murder();
}

StatusCode BTAction::run()
{
    switch (type)
    {
    case T_Action:
        return runAction();
    case T_Function:
        return statusOf(actionFn(handle_cast<Entity>(getParent())));
    case T_ReflectorPtr:
        return statusOf(callReflected());
    default:
        complain(SCS("has nothing to do: neither an action nor a function was set"));
        return SC_Undefined;
    }
}

StatusCode BTAction::runAction()
{
    const auto action = hAction.lookup();
    if (!action)
    {
        complain(SCS("its action has died"));
        return SC_InvalidHandle;
    }
    const TimeKeeper *const time = master.find(*this);
    if (!time)
        return SC_InvalidHandle;
    const ActionStatus status = action->update(time->getFrameTimeSeconds());
    if (status == AS_InvalidHandle)
        complainOfNeed(action->getType());
    const StatusCode result = statusOf(status);
    if (result == SC_Success || result == SC_Failure)
        action->reset();
    return result;
}

ActionStatus BTAction::callReflected()
{
    // A copy: the function may set another one in its own place.
    const ReflectorPtr called = reflectorPtr;
    String cause;
    const ErrorReturn<Variant> given = callLeaf(called, *this, cause);
    if (!given.succeeded())
    {
        if (isFirstComplaint())
            KV_ERROR("BTAction reflectorPtr call failed! %s: %s", taskPath(*this).toCString(), cause.toCString());
        return AS_Failed;
    }
    ActionStatus status = AS_Failed;
    if (!readLeafResult(given.value, status) && isFirstComplaint())
        KV_ERROR("Unexpected reflectorPtr return value! %s: it gave %s, where an ActionStatus is meant, as AS_Complete",
                 taskPath(*this).toCString(), describeLeafResult(given.value).toCString());
    if (status == AS_InvalidHandle)
        complainOfNeed(called);
    return status;
}

void BTAction::terminate()
{
    const auto action = hAction.lookup();
    if (type == T_Action && action)
        action->terminate();
}

ErrorReturn<Handle<BTTask>> BTAction::clone()
{
    const Handle<BTTask> copy = makeNode(getType());
    const auto node = unchecked_handle_cast<BTAction>(copy).lookup();
    if (!node)
        return ErrorCode(ErrorCode::BT_FAILURE);
    if (type == T_Action)
    {
        const auto action = hAction.lookup();
        node->setAction(action ? action->clone() : Handle<Action>());
        if (node->type != T_Action)
        {
            node->murder();
            return ErrorCode(ErrorCode::BT_FAILURE);
        }
    }
    else if (type == T_Function)
        node->setActionFn(actionFn);
    else if (type == T_ReflectorPtr)
        node->setReflectorPtr(reflectorPtr);
    return copy;
}

void BTAction::setTreeParent(Handle<Entity> baseEntity)
{
    setParent(baseEntity).ignoreError();
    const auto action = hAction.lookup();
    if (type == T_Action && action)
        action->setParent(baseEntity).ignoreError();
}

void BTAction::onHierarchyChange(Handle<Object> reparentedObject, Handle<Object> newParent)
{
    BTTask::onHierarchyChange(reparentedObject, newParent);
    master.forget();
}

void BTAction::describeTo(TaskStep &step) const
{
    if (type != T_Function)
        return;
    step.kind = TaskStep::ACT;
    step.act = actionFn;
}

void BTAction::setAction(Handle<Action> action)
{
    hAction = action;
    if (auto object = action.lookup())
    {
        object->setParentTask(getTypedHandle());
        type = T_Action;
        spoilPlan();
    }
}

void BTAction::setActionFn(BTActionFn func)
{
    actionFn = func;
    type = func ? T_Function : T_Unknown;
    spoilPlan();
}

void BTAction::setReflectorPtr(ReflectorPtr ptr)
{
    reflectorPtr = ptr;
    type = T_ReflectorPtr;
    spoilPlan();
}
