// BTAction: a leaf that does something.
#pragma once

#include "ai/nodes/BTTask.h"
#include "ai/nodes/MasterTimer.h"

class Action;

/// Has an action, a native function or anything reflected do a step, and tells what that step gave.
///
/// AS_InProgress is SC_NeedMoreTime, AS_Complete SC_Success, AS_Failed SC_Failure; AS_InvalidHandle and all else are
/// SC_Undefined. An action that has completed or failed is reset, so that its next step begins afresh. A reflected
/// function, a script's callable too, gets the entity and gives an ActionStatus; one that raises or gives anything else
/// counts as SC_Failure and is reported once. Owns its action.
class BTAction : public BTTask
{
    KV_REFLECTED(BTAction)
public:
    /// What does the step.
    enum Type
    {
        T_Action = 0,
        T_Function = 1,
        T_ReflectorPtr = 2,
        T_Unknown = 3
    };

    BTAction() = default;
    ~BTAction() override;

    StatusCode run() override;
    /// Terminates the action, if it is one.
    void terminate() override;
    ErrorReturn<Handle<BTTask>> clone() override;
    /// Makes an entity the parent of the leaf and of its action.
    void setTreeParent(Handle<Entity> baseEntity) override;
    void onHierarchyChange(Handle<Object> reparentedObject, Handle<Object> newParent) override;

    /// Has an action do the steps, and owns it from now on; a handle to nothing changes only the handle.
    void setAction(Handle<Action> action);
    /// Has a native function do the steps.
    void setActionFn(BTActionFn func);
    /// Has a reflected function do the steps.
    void setReflectorPtr(ReflectorPtr ptr);

    /// What does the steps.
    Type getActionType() const { return type; }
    /// The action; invalid for a leaf without one.
    Handle<Action> getAction() const { return hAction; }
    /// The reflected function; null for a leaf without one.
    ReflectorPtr getReflectorPtr() const { return reflectorPtr; }

private:
    void describeTo(TaskStep &step) const override;
    StatusCode runAction();
    ActionStatus callReflected();

    Type type = T_Unknown;
    Handle<Action> hAction;
    BTActionFn actionFn = nullptr;
    ReflectorPtr reflectorPtr;
    MasterTimer master;
};
