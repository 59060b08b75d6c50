#include "ai/trees/TreeText.h"

#include "ai/actions/Action.h"
#include "ai/nodes/BTAction.h"
#include "ai/nodes/BTCondition.h"
#include "ai/nodes/BTDecorator.h"
#include "ai/nodes/BTParallelSelector.h"
#include "ai/nodes/BTParallelSequence.h"
#include "ai/nodes/BTSubtreeLookup.h"
#include "ai/trees/BTComponent.h"
#include "ai/trees/BTLib.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "object/tree/PathBelow.h"

#include <algorithm>
#include <string>

namespace
{
constexpr std::size_t INDENT = 2;

/// The class's name without the mark that all nodes bear.
String kindOf(const BTTask &task)
{
    static const String mark = SCS("BT");
    const String name = task.getType()->getName();
    return name.startsWith(mark) ? name.slice(static_cast<ssize_t>(mark.size())) : name;
}

/// A function by its name alone where that says enough.
String functionText(const ReflectorPtr &function)
{
    return function ? function->getName() : SCS("of the engine");
}

String actionText(const BTAction &leaf)
{
    if (leaf.getActionType() == BTAction::T_Unknown)
        return SCS("without work");
    if (leaf.getActionType() != BTAction::T_Action)
        return functionText(leaf.getReflectorPtr());
    const auto action = leaf.getAction().lookup();
    if (!action)
        return SCS("that has died");
    const ActionName own = action->name();
    return own.empty() ? action->getType()->getName() : own;
}

String resultText(const BTTask &task)
{
    if (!task.getTicked())
        return SCS("not ticked yet");
    switch (task.getLastResult())
    {
    case SC_Success:
        return SCS("succeeded");
    case SC_Failure:
        return SCS("failed");
    case SC_NeedMoreTime:
        return SCS("going on");
    case SC_InvalidHandle:
        return SCS("something is missing");
    default:
        return SCS("undefined");
    }
}

bool isParallel(const BTTask &task)
{
    return dynamic_cast<const BTParallelSequence *>(&task) || dynamic_cast<const BTParallelSelector *>(&task);
}

/// Whether a parent's next tick is one of this child.
bool isAtWork(const BTTask &parent, const Handle<BTTask> &child)
{
    const TaskList &walked = parent.getWalkedTasks();
    if (isParallel(parent))
        return walked.empty() || std::find(walked.begin(), walked.end(), child) != walked.end();
    if (dynamic_cast<const BTDecorator *>(&parent))
        return true;
    return parent.getActiveTask() < walked.size() && walked[parent.getActiveTask()] == child;
}

/// The child to follow on the way to the leaf at work; null for a leaf.
const BTTask *childAtWork(const BTTask &task)
{
    const BTTask *first = nullptr;
    for (const Handle<BTTask> &h : task.getTasks())
    {
        const auto child = h.lookup();
        if (!child || !isAtWork(task, h))
            continue;
        if (child->getLastResult() == SC_NeedMoreTime)
            return child.ptr;
        if (!first)
            first = child.ptr;
    }
    return first;
}

/// The way from a root down to a node, as "Selector/2 Sequence"; empty where none leads there.
String wayDown(BTTask &root, const BTTask &task)
{
    const std::vector<TaskPlace> places = tasksOf(root);
    auto place = std::find_if(places.begin(), places.end(), [&](const TaskPlace &p) { return p.task == &task; });
    if (place == places.end())
        return String();
    // A chain that is too deep to be followed is too deep to be read as well.
    constexpr std::size_t MOST_STEPS = 20;
    String way = taskLabel(*place->task);
    for (std::size_t steps = 0; place->depth > 0; ++steps)
    {
        const BTTask &parent = *places[place->parent].task;
        if (steps == MOST_STEPS)
            return String::format("%s/... %zu more .../%s", taskLabel(root).toCString(), place->depth, way.toCString());
        way = String::format("%s/%zu %s", taskLabel(parent).toCString(), place->index + 1, way.toCString());
        place = places.begin() + static_cast<std::ptrdiff_t>(place->parent);
    }
    return way;
}

template <class Trees>
String findIn(const Trees &trees, const BTTask &task)
{
    for (const String &behavior : sortedNames(trees))
    {
        const auto root = trees.find(behavior)->second.lookup();
        const String way = root ? wayDown(*root, task) : String();
        if (!way.empty())
            return behavior + SCS(": ") + way;
    }
    return taskLabel(task);
}

/// What a leaf does in words: by its action's own name, or by that of its function where it is no identifier.
String wordsOf(const BTTask &leaf)
{
    const auto *const acting = dynamic_cast<const BTAction *>(&leaf);
    const auto *const asking = dynamic_cast<const BTCondition *>(&leaf);
    if (const auto action = acting ? acting->getAction().lookup() : Handle<Action>::Result())
        return action->name();
    const ReflectorPtr function = acting   ? acting->getReflectorPtr()
                                  : asking ? asking->getReflectorPtr()
                                           : ReflectorPtr();
    const String name = function ? function->getName() : String();
    return std::find(name.begin(), name.end(), ' ') != name.end() ? name : String();
}
} // namespace

std::vector<String> sortedNames(const std::unordered_map<String, Handle<BTTask>> &trees)
{
    std::vector<String> names;
    names.reserve(trees.size());
    for (const auto &[name, root] : trees)
        names.push_back(name);
    std::sort(names.begin(), names.end());
    return names;
}

String taskLabel(const BTTask &task)
{
    if (const auto *action = dynamic_cast<const BTAction *>(&task))
        return SCS("Action ") + actionText(*action);
    if (const auto *condition = dynamic_cast<const BTCondition *>(&task))
        return SCS("Condition ") + functionText(condition->getReflectorPtr());
    if (const auto *lookup = dynamic_cast<const BTSubtreeLookup *>(&task))
        return SCS("Tree ") + lookup->getSubtreeType();
    return kindOf(task);
}

String taskPath(const BTTask &task)
{
    const Handle<Object> creature = task.getParent();
    if (const auto *component = componentOf<BTComponent>(creature, ComponentKeys::behaviors))
        return pathBelow(nullptr, *creature.lookup()) + SCS(": ") + findIn(component->getTrees(), task);
    if (creature.isValid())
        return pathBelow(nullptr, *creature.lookup()) + SCS(": ") + taskLabel(task);
    const auto library = getSystem<BTLib>().lookup();
    return library ? findIn(library->getTrees(), task) : taskLabel(task);
}

String drawTask(BTTask &root)
{
    const std::vector<TaskPlace> places = tasksOf(root);
    std::vector<bool> atWork(places.size());
    std::string text;
    for (std::size_t i = 0; i < std::min(places.size(), MOST_DRAWN_TASKS); ++i)
    {
        const TaskPlace &place = places[i];
        const BTTask &parent = *places[place.parent].task;
        atWork[i] = i == 0 || (atWork[place.parent] && isAtWork(parent, parent.getTask(place.index)));
        text.append((atWork[i] ? "> " : "  "));
        text.append(std::string(place.depth * INDENT, ' '));
        text.append(taskLabel(*place.task).toCString()).append(": ").append(resultText(*place.task).toCString());
        text.append("\n");
    }
    if (places.size() > MOST_DRAWN_TASKS)
        text.append("  ... and ").append(std::to_string(places.size() - MOST_DRAWN_TASKS)).append(" nodes more\n");
    return String::copyFrom(text);
}

String tellTask(const String &behavior, BTTask &root)
{
    const BTTask *leaf = &root;
    int steps = 0;
    for (const BTTask *next = &root; next && steps < BTTask::MAX_DEPTH; next = childAtWork(*next), ++steps)
        leaf = next;
    const String words = wordsOf(*leaf);
    if (words.empty())
        return String::format("%s: %s, %s", behavior.toCString(), taskLabel(*leaf).toCString(),
                              resultText(*leaf).toCString());
    const bool failed = leaf->getLastResult() == SC_Failure;
    const bool isQuestion = dynamic_cast<const BTCondition *>(leaf) != nullptr;
    const char *const outcome = isQuestion ? (failed ? ": no" : ": yes") : failed ? ", failed" : "";
    return String::format("%s: %s%s", behavior.toCString(), words.toCString(), outcome);
}
