#include "ai/nodes/BTTask.h"

#include "ai/trees/TreeText.h"

#include "engine/entities/Entity.h"
#include "object/reflection/DoxyElement.h"

#include "foundation/Logger.h"

#include <unordered_set>

AllocationCategory BTAllocation("behaviour trees");

namespace
{
/// Counts the calls within each other that go down a tree.
class Descent
{
public:
    Descent() { ++depth; }
    ~Descent() { --depth; }
    Descent(const Descent &) = delete;
    Descent &operator=(const Descent &) = delete;

    bool isTooDeep() const { return depth > BTTask::MAX_DEPTH; }

private:
    static inline constinit int depth = 0;
};

/// Counts the nodes that one copy of a tree makes.
class Copying
{
public:
    Copying()
    {
        if (running++ == 0)
            made = 0;
        ++made;
    }
    ~Copying() { --running; }
    Copying(const Copying &) = delete;
    Copying &operator=(const Copying &) = delete;

    bool isTooLarge() const { return made > BTTask::MAX_COPIED; }

private:
    static inline constinit int running = 0;
    static inline constinit int made = 0;
};

String tooDeepText()
{
    return String::format("stands deeper than %d nodes below its root and is not followed: a tree takes branches "
                          "rather than a chain, and may not stand within itself",
                          BTTask::MAX_DEPTH);
}
} // namespace

Handle<BTTask> BTTask::addChild(Handle<BTTask> child)
{
    if (!canTake(child))
    {
        complain(SCS("would stand within itself by a child that it stands below; the child is left out"));
        return child;
    }
    if (auto added = child.lookup())
        added->placed = true;
    children.push_back(child);
    activeTask = 0;
    return child;
}

/// Whether no way leads from a node down to this one.
bool BTTask::canTake(const Handle<BTTask> &child) const
{
    const auto added = child.lookup();
    if (!added)
        return true;
    if (added.ptr == this)
        return false;
    // What is built from its leaves up, or from its root down, needs no search.
    if (!placed || added->children.empty())
        return true;
    for (const TaskPlace &place : tasksOf(*added))
        if (place.task == this)
            return false;
    return true;
}

StatusCode BTTask::tick()
{
    const Descent level;
    if (level.isTooDeep()) [[unlikely]]
    {
        complain(tooDeepText());
        return SC_Failure;
    }
    ticked = true;
    return lastResult = run();
}

void BTTask::terminate()
{
    terminated = true;
    terminateChildren();
}

void BTTask::terminateChildren()
{
    const Descent level;
    if (level.isTooDeep())
    {
        complain(tooDeepText());
        return;
    }
    for (TaskListIt i = 0; i < children.size(); ++i)
        if (BTTask *child = resolve(children, i))
            child->terminate();
}

void BTTask::setTreeParent(Handle<Entity> baseEntity)
{
    setParent(baseEntity).ignoreError();
    const Descent level;
    if (level.isTooDeep())
    {
        complain(tooDeepText());
        return;
    }
    for (TaskListIt i = 0; i < children.size(); ++i)
        if (BTTask *child = resolve(children, i))
            child->setTreeParent(baseEntity);
}

void BTTask::DeleteTree()
{
    const std::vector<TaskPlace> places = tasksOf(*this);
    for (std::size_t i = places.size(); i-- > 0;)
        if (!places[i].task->isDying())
            places[i].task->murder();
}

Handle<BTTask> BTTask::getTask(std::size_t index) const
{
    return index < children.size() ? children[index] : Handle<BTTask>();
}

Handle<BTTask> BTTask::makeNode(const ReflectorPtr &type)
{
    if (!type || !type->isSubclassOf(staticType))
        return Handle<BTTask>();
    const Handle<BTTask> made = unchecked_handle_cast<BTTask>(type->construct(BTAllocation));
    if (auto node = made.lookup())
        node->setName(type->getName());
    return made;
}

ErrorReturn<Handle<BTTask>> BTTask::cloneWithChildren() const
{
    const Descent level;
    const Copying copying;
    const Handle<BTTask> copy = level.isTooDeep() || copying.isTooLarge() ? Handle<BTTask>() : makeNode(getType());
    if (!copy.isValid())
        return ErrorCode(ErrorCode::BT_FAILURE);
    for (const Handle<BTTask> &h : children)
    {
        auto child = h.lookup();
        const ErrorReturn<Handle<BTTask>> made = child ? child->clone() : ErrorReturn<Handle<BTTask>>(h);
        if (!made.succeeded())
        {
            copy.lookup()->DeleteTree();
            return ErrorCode(ErrorCode::BT_FAILURE);
        }
        copy.lookup()->addChild(made.value);
    }
    return copy;
}

StatusCode BTTask::reportMissingChild(TaskListIt at)
{
    if (isFirstComplaint())
        KV_LOGF(Logger_::I_ERROR, "%s: child %zu is no task, or one that has died; what builds the tree adds it",
                taskPath(*this).toCString(), at + 1);
    return SC_InvalidHandle;
}

void BTTask::complain(const String &what)
{
    if (isFirstComplaint())
        KV_LOGF(Logger_::I_ERROR, "%s: %s", taskPath(*this).toCString(), what.toCString());
}

bool BTTask::isFirstComplaint()
{
    const bool first = !complained;
    complained = true;
    return first;
}

std::vector<TaskPlace> tasksOf(BTTask &root)
{
    std::vector<TaskPlace> found;
    std::vector<TaskPlace> pending{{&root, 0, 0, 0}};
    std::unordered_set<const BTTask *> seen;
    while (!pending.empty())
    {
        const TaskPlace place = pending.back();
        pending.pop_back();
        if (!seen.insert(place.task).second)
            continue;
        const std::size_t here = found.size();
        found.push_back(place);
        const TaskList &tasks = place.task->getTasks();
        for (std::size_t i = tasks.size(); i-- > 0;)
            if (auto child = tasks[i].lookup())
                pending.push_back({child.ptr, here, i, place.depth + 1});
    }
    return found;
}
