// BTCondition: a leaf that asks something, with perhaps a child for when it is so.
#pragma once

#include "ai/nodes/BTTask.h"

/// Asks a function about the entity; where it says SC_Success, a first child is ticked and its result is the node's.
///
/// The function is a native one or anything reflected, a script's callable too, which gets the entity and gives a
/// StatusCode. One that raises or gives anything else counts as SC_Failure and is reported once.
class BTCondition : public BTTask
{
    KV_REFLECTED(BTCondition)
public:
    BTCondition() = default;

    StatusCode run() override;
    ErrorReturn<Handle<BTTask>> clone() override;
    /// Sets the native function, which goes before the reflected one.
    void setConditionFunc(BTConditionFn func);
    /// Sets the reflected function.
    void setReflectorPtr(ReflectorPtr ptr) { reflectorPtr = ptr; }
    /// The reflected function; null for none.
    ReflectorPtr getReflectorPtr() const { return reflectorPtr; }

private:
    void describeTo(TaskStep &step) const override;
    StatusCode ask();
    StatusCode askReflected();

    BTConditionFn conditionFunc = nullptr;
    ReflectorPtr reflectorPtr;
};
