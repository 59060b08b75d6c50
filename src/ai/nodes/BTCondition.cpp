#include "ai/nodes/BTCondition.h"

#include "ai/nodes/LeafCall.h"
#include "ai/trees/TreeText.h"

#include "engine/entities/Entity.h"

#include "foundation/Assertions.h"

namespace
{
/// The source that these assertions are told at: whoever gathers them knows it by this spelling.
constexpr const char *TOLD_AT = "BTConditon.cpp";

void tell(const String &what, const BTTask &node, const String &cause)
{
    Assertions::prepareAssert(AM_ASSERT, AC_ALWAYS, "", TOLD_AT, __LINE__, "%s %s: %s", what.toCString(),
                              taskPath(node).toCString(), cause.toCString());
}
} // namespace

void BTCondition::setConditionFunc(BTConditionFn func)
{
    conditionFunc = func;
    spoilPlan();
}

void BTCondition::describeTo(TaskStep &step) const
{
    if (!conditionFunc || !children.empty())
        return;
    step.kind = TaskStep::ASK;
    step.ask = conditionFunc;
}

StatusCode BTCondition::run()
{
    const StatusCode answer = ask();
    if (answer != SC_Success || children.empty())
        return answer;
    BTTask *const child = resolve(children, 0);
    return child ? child->tick() : reportMissingChild(0);
}

StatusCode BTCondition::ask()
{
    if (conditionFunc)
        return conditionFunc(handle_cast<Entity>(getParent()));
    if (reflectorPtr)
        return askReflected();
    complain(SCS("has no function to ask"));
    return SC_Undefined;
}

StatusCode BTCondition::askReflected()
{
    // A copy: the function may set another one in its own place.
    const ReflectorPtr called = reflectorPtr;
    String cause;
    const ErrorReturn<Variant> given = callLeaf(called, *this, cause);
    if (!given.succeeded())
    {
        if (isFirstComplaint())
            tell(SCS("ReflectorPtr call failed!"), *this, cause);
        return SC_Failure;
    }
    StatusCode answer = SC_Failure;
    if (!readLeafResult(given.value, answer) && isFirstComplaint())
        tell(SCS("Unexpected ReflectorPtr return value!"), *this,
             String::format("it gave %s, where a StatusCode is meant, as SC_Success",
                            describeLeafResult(given.value).toCString()));
    if (answer == SC_InvalidHandle)
        complainOfNeed(called);
    return answer;
}

ErrorReturn<Handle<BTTask>> BTCondition::clone()
{
    const ErrorReturn<Handle<BTTask>> copy = cloneWithChildren();
    if (auto node = unchecked_handle_cast<BTCondition>(copy.value).lookup())
    {
        if (conditionFunc)
            node->setConditionFunc(conditionFunc);
        else
            node->setReflectorPtr(reflectorPtr);
    }
    return copy;
}
