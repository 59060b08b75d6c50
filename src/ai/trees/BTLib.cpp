#include "ai/trees/BTLib.h"

#include "ai/nodes/BTAction.h"
#include "ai/nodes/BTCondition.h"
#include "ai/nodes/BTFilters.h"
#include "ai/nodes/BTLimit.h"
#include "ai/nodes/BTParallelSequence.h"
#include "ai/nodes/BTRandomSelector.h"
#include "ai/nodes/BTRandomSequence.h"
#include "ai/nodes/BTSelector.h"
#include "ai/nodes/BTSequence.h"
#include "ai/nodes/BTSubtreeLookup.h"
#include "ai/nodes/BTWaitTimer.h"

#include "engine/systems/SystemSystem.h"
#include "object/python/PythonCalls.h"
#include "object/python/ScriptPlace.h"
#include "object/reflection/SavedArguments.h"

#include "foundation/Assertions.h"
#include "foundation/Logger.h"

#include <utility>

namespace
{
/// A new node of a class; invalid where there is none.
template <class Node>
Handle<Node> make()
{
    const Handle<Node> made = construct<Node>(BTAllocation);
    if (auto node = made.lookup())
        node->setName(Node::staticType->getName());
    return made;
}

/// The node, or an assertion with this text where there is none.
Handle<BTTask> checked(const Handle<BTTask> &node, const char *failure)
{
    if (!node.isValid())
        KV_ERROR("%s", failure);
    return node;
}

/// A node of which a factory has found out that it cannot do its work.
Handle<BTTask> refused(const Handle<BTTask> &node)
{
    if (auto made = node.lookup())
        made->murder();
    return Handle<BTTask>();
}

Handle<BTTask> makeDecorator(BTDecorator::DecoratorType type)
{
    switch (type)
    {
    case BTDecorator::DT_Limit:
        return make<BTLimit>();
    case BTDecorator::DT_UntilFail:
        return make<BTUntilFail>();
    case BTDecorator::DT_Inverter:
        return make<BTInverter>();
    case BTDecorator::DT_UntilSucceed:
        return make<BTUntilSucceed>();
    case BTDecorator::DT_WaitTimer:
        return make<BTWaitTimer>();
    case BTDecorator::DT_FailFilter:
        return make<BTFailFilter>();
    default:
        return Handle<BTTask>();
    }
}

/// Has a script build trees; what it raises travels to the caller. Without an interpreter there is none.
void callBuilder(const char *module, const char *function, const Handle<Object> &library)
{
    Variant ignored;
    if (isPythonRunning() && !pythonCall(module, function, SavedArguments::of(library), ignored))
        pythonRaisePending();
}

/// Builds trees; a script that raises is reported.
template <class Build>
void tryToBuild(const Build &build)
{
    if (pythonGuarded(build))
        return;
    const ScriptPlace place = pendingScriptPlace();
    Assertions::raiseInScript(place.file, place.line,
                              SCS("A script that builds behaviour trees failed; the trees that it was to build are not "
                                  "there.\n") +
                                  getCurrentPythonTraceback());
}

constexpr const char *NO_CONDITION = "Allocation of BTCondition node failed!";
constexpr const char *NO_ACTION = "Allocation of BTAction node failed!";
} // namespace

Handle<BTTask> BTLib::BTCreateCondition(BTConditionFn func)
{
    const Handle<BTCondition> made = make<BTCondition>();
    if (!func)
        return checked(refused(made), NO_CONDITION);
    if (auto node = made.lookup())
        node->setConditionFunc(func);
    return checked(made, NO_CONDITION);
}

Handle<BTTask> BTLib::BTCreateConditionR(ReflectorPtr rPtr)
{
    const Handle<BTCondition> made = make<BTCondition>();
    if (!rPtr)
        return checked(refused(made), NO_CONDITION);
    if (auto node = made.lookup())
        node->setReflectorPtr(rPtr);
    return checked(made, NO_CONDITION);
}

Handle<BTTask> BTLib::BTCreateAction(Handle<Action> hAction)
{
    const Handle<BTAction> made = make<BTAction>();
    const auto node = made.lookup();
    if (node)
        node->setAction(hAction);
    if (!node || node->getActionType() != BTAction::T_Action)
        return checked(refused(made), NO_ACTION);
    return made;
}

Handle<BTTask> BTLib::BTCreateAction(BTActionFn func)
{
    const Handle<BTAction> made = make<BTAction>();
    if (!func)
        return checked(refused(made), NO_ACTION);
    if (auto node = made.lookup())
        node->setActionFn(func);
    return checked(made, NO_ACTION);
}

Handle<BTTask> BTLib::BTCreateActionR(ReflectorPtr rPtr)
{
    const Handle<BTAction> made = make<BTAction>();
    if (!rPtr)
        return checked(refused(made), NO_ACTION);
    if (auto node = made.lookup())
        node->setReflectorPtr(rPtr);
    return checked(made, NO_ACTION);
}

Handle<BTTask> BTLib::BTCreateSubtreeLookup(BTType behavior)
{
    const Handle<BTSubtreeLookup> made = make<BTSubtreeLookup>();
    if (auto node = made.lookup())
        node->setBehvaior(std::move(behavior));
    return checked(made, "Allocation of BTSubtreeLookup node failed!");
}

Handle<BTTask> BTLib::BTCreateSelector()
{
    return checked(make<BTSelector>(), "Allocation of BTSelector node failed!");
}

Handle<BTTask> BTLib::BTCreateSequence()
{
    return checked(make<BTSequence>(), "Allocation of BTSequence node failed!");
}

Handle<BTTask> BTLib::BTCreateRandomSelector()
{
    return checked(make<BTRandomSelector>(), "Allocation of BTRandomSelector node failed!");
}

Handle<BTTask> BTLib::BTCreateRandomSequence()
{
    return checked(make<BTRandomSequence>(), "Allocation of BTRandomSequence node failed!");
}

Handle<BTTask> BTLib::BTCreateParallelSequence()
{
    return checked(make<BTParallelSequence>(), "Allocation of BTParallelSequence node failed!");
}

Handle<BTTask> BTLib::BTCreateDecorator(BTDecorator::DecoratorType type)
{
    return checked(makeDecorator(type), "Allocation of BTDecorator node failed!");
}

Handle<BTTask> BTLib::BTAddChild(Handle<BTTask> parent, Handle<BTTask> child)
{
    const auto node = parent.lookup();
    if (node)
        return node->addChild(child);
    KV_ERROR("Invalid parent handle when adding BTTask.");
    return Handle<BTTask>();
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): names are handed on as values throughout the library
void BTLib::addBehaviorTree(BTType behavior, Handle<BTTask> root)
{
    if (!root.isValid())
    {
        KV_LOGF(Logger_::I_ERROR, "The behaviour tree '%s' has no root: addBehaviorTree takes the node on top of it",
                behavior.toCString());
        return;
    }
    // A name that was looked up in vain has an entry without a tree.
    Handle<BTTask> &kept = behaviorTrees[behavior];
    if (!kept.isValid())
        kept = root;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): as above
ErrorReturn<Handle<BTTask>> BTLib::BTLookUp(BTType behavior)
{
    const auto root = behaviorTrees[behavior].lookup();
    if (!root)
        return ErrorCode(ErrorCode::BT_UNKNOWN_BEHAVIOR);
    const ErrorReturn<Handle<BTTask>> copy = root->clone();
    if (!copy.succeeded())
        KV_LOGF(Logger_::I_ERROR,
                "The behaviour tree '%s' cannot be copied: it is deeper than %d nodes, has more than %d, or an action "
                "in it has died",
                behavior.toCString(), BTTask::MAX_DEPTH, BTTask::MAX_COPIED);
    return copy;
}

void BTLib::compileLibrary()
{
    buildPlayerWalk();
    buildWander();
    buildFlashlightTree();
    buildPlayerTree();
    buildHUDTree();
    buildBlobTree();
    buildMannequinTree();
    buildBatteryMeterTree();
    buildCreatures();
}

void BTLib::buildWander()
{
    callBuilder("BehaviorLib.Wander", "buildWander", getHandle());
}

void BTLib::buildCreatures()
{
    callBuilder("BehaviorLib", "buildCreatures", getHandle());
}

void BTLib::systemStartup()
{
    buildPlayerWalk();
    tryToBuild([&] { buildWander(); });
    buildFlashlightTree();
    buildPlayerTree();
    buildHUDTree();
    buildBlobTree();
    buildMannequinTree();
    buildBatteryMeterTree();
    tryToBuild([&] { buildCreatures(); });
}

void BTLib::systemShutdown()
{
    for (const auto &[behavior, root] : behaviorTrees)
        if (auto task = root.lookup())
            task->DeleteTree();
}

System::DependencyList BTLib::systemDependencies()
{
    return {SystemSystem::staticType};
}
