#include "ai/nodes/BTTask.h"

#include "ai/nodes/Descent.h"
#include "ai/nodes/LeafCall.h"
#include "ai/trees/TreeText.h"

#include "engine/entities/Entity.h"

#include "foundation/Logger.h"

#include <unordered_set>

AllocationCategory BTAllocation("behaviour trees");

namespace
{
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
    changeState().active = 0;
    spoilPlan();
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

void BTTask::spoilPlan()
{
    if (plan)
        plan->spoil();
}

BTTask::~BTTask()
{
    spoilPlan();
}

void BTTask::onHierarchyChange(Handle<Object>, Handle<Object>)
{
    spoilPlan();
}

TaskState &BTTask::settled() const
{
    if (plan)
        plan->settle();
    return *state;
}

/// The node's state, for a change that no tick of the tree makes.
TaskState &BTTask::changeState()
{
    TaskState &changed = settled();
    if (plan)
        plan->forgetPlace();
    return changed;
}

void BTTask::setTerminated(bool val)
{
    changeState().terminated = val;
}

void BTTask::setActiveTask(TaskListIt val)
{
    changeState().active = val;
}

void BTTask::terminate()
{
    settled().terminated = true; // only a sequence heeds it, whose own terminate changes more
    terminateChildren();
}

void BTTask::terminateChildren()
{
    const Descent level;
    if (level.isTooDeep())
    {
        complain(level.describe());
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
        complain(level.describe());
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
        KV_LOGF(Logger_::I_ERROR, "%s: child %u is no task, or one that has died; what builds the tree adds it",
                taskPath(*this).toCString(), at + 1);
    return SC_InvalidHandle;
}

void BTTask::complain(const String &what)
{
    if (isFirstComplaint())
        KV_LOGF(Logger_::I_ERROR, "%s: %s", taskPath(*this).toCString(), what.toCString());
}

void BTTask::complainOfNeed(const ReflectorPtr &what)
{
    // The text is made once, not with each tick. A warning: a level may well go without what its trees look for.
    if (isFirstComplaint())
        KV_LOGF(Logger_::I_WARNING, "%s: %s", taskPath(*this).toCString(), describeNeed(what).toCString());
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
