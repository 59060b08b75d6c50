#include "ai/nodes/TreePlan.h"

#include "ai/nodes/Descent.h"

#include "engine/entities/Entity.h"

namespace
{
/// Whether a plan ticks the node's children, too.
bool hasChildren(const TaskCell &cell)
{
    switch (cell.kind)
    {
    case TaskCell::SELECTOR:
    case TaskCell::SEQUENCE:
    case TaskCell::INVERTER:
    case TaskCell::FAIL_FILTER:
    case TaskCell::UNTIL_FAIL:
    case TaskCell::UNTIL_SUCCEED:
        return true;
    default:
        return false;
    }
}

StatusCode inverted(StatusCode result)
{
    switch (result)
    {
    case SC_Success:
        return SC_Failure;
    case SC_Failure:
        return SC_Success;
    case SC_NeedMoreTime:
        return SC_NeedMoreTime;
    default:
        return SC_Undefined;
    }
}

StatusCode withoutFailure(StatusCode result)
{
    switch (result)
    {
    case SC_Success:
    case SC_Failure:
        return SC_Success;
    case SC_NeedMoreTime:
        return SC_NeedMoreTime;
    default:
        return SC_Undefined;
    }
}
} // namespace

/// A tick from outside, as long as which the node's plan stays as it is.
class TreePlan::Use
{
public:
    explicit Use(BTTask &task)
    {
        if (!task.plan || task.plan->stale) [[unlikely]]
            refresh(task);
        plan = task.plan.get();
        ++plan->running;
    }
    ~Use()
    {
        // Its last node may have gone over to another plan meanwhile.
        if (--plan->running == 0 && plan->users == 0) [[unlikely]]
            delete plan;
    }
    Use(const Use &) = delete;
    Use &operator=(const Use &) = delete;

    TreePlan *operator->() const { return plan; }

private:
    const CremationHold hold;
    TreePlan *plan;
};

StatusCode TreePlan::tick(BTTask &task)
{
    const StatusCode result = run(task);
    task.cell->lastResult = static_cast<std::uint8_t>(result);
    return result;
}

StatusCode TreePlan::run(BTTask &task)
{
    const Use plan(task);
    const Descent levels(plan->depth);
    if (levels.isTooDeep()) [[unlikely]]
    {
        task.complain(levels.describe());
        return SC_Failure;
    }
    return plan->step(*task.cell);
}

/// Makes a node's plan anew, unless it is being ticked.
void TreePlan::refresh(BTTask &task)
{
    const boost::intrusive_ptr<TreePlan> former = task.plan;
    if (former && former->running > 0)
        return;
    // From the root that it was made for, unless that has died.
    const auto top = former ? former->root.lookup() : Handle<BTTask>::Result();
    if (top)
        build(*top);
    if (!task.plan || task.plan->stale)
        build(task);
}

void TreePlan::build(BTTask &root)
{
    const boost::intrusive_ptr<TreePlan> plan(new TreePlan(root.getTypedHandle()));
    plan->add(root.getTypedHandle());
    // Level by level, so that children stand beside each other.
    for (std::size_t begin = 0, end = plan->cells.size(); begin < end; begin = end, end = plan->cells.size())
    {
        ++plan->depth;
        for (std::size_t i = begin; i < end; ++i)
            plan->addChildren(i);
    }
    plan->settle();
}

/// Appends the cells of a node's children; a node that runs by itself sees to its own.
void TreePlan::addChildren(std::size_t at)
{
    if (!hasChildren(cells[at]))
        return;
    if (depth == BTTask::MAX_DEPTH)
    {
        cells[at].kind = TaskCell::TOO_DEEP;
        return;
    }
    const TaskList &children = cells[at].task->children;
    cells[at].children = {static_cast<std::uint32_t>(cells.size()), static_cast<std::uint32_t>(children.size())};
    for (const Handle<BTTask> &h : children)
    {
        add(h);
        cells.back().parent = static_cast<std::uint32_t>(at);
    }
}

/// Appends the cell of a node, with the state that the node is in.
void TreePlan::add(const Handle<BTTask> &h)
{
    TaskCell &cell = cells.emplace_back();
    BTTask *const task = h.lookup().ptr;
    cell.task = task;
    if (!task)
    {
        cell.kind = TaskCell::MISSING;
        return;
    }
    if (task->plan.get() == this)
    {
        cell.kind = TaskCell::ELSEWHERE;
        return;
    }
    // Another plan that has it, too, is not right any more.
    if (task->plan)
        task->plan->spoil();
    cell.active = task->cell->active;
    cell.terminated = task->cell->terminated;
    cell.lastResult = task->cell->lastResult;
    task->describeTo(cell);
    task->plan = this;
}

/// Has the nodes keep their state in their cells, which stay where they are from now on.
void TreePlan::settle()
{
    for (TaskCell &cell : cells)
        if (cell.kind != TaskCell::MISSING && cell.kind != TaskCell::ELSEWHERE)
            cell.task->cell = &cell;
}

/// One tick of a node of the plan: down the active path to what runs, and up again with what that gave.
inline StatusCode TreePlan::step(TaskCell &top)
{
    TaskCell *cell = &top;
    StatusCode result = SC_Undefined;
    while (TaskCell *const child = childToTick(*cell, result))
        cell = child;
    while (cell != &top)
    {
        cell->lastResult = static_cast<std::uint8_t>(result);
        cell = &cells[cell->parent];
        result = takeResult(*cell, result);
    }
    return result;
}

/// The child that a node ticks; null for one that gives its result without, which is set then.
inline TaskCell *TreePlan::childToTick(TaskCell &cell, StatusCode &result)
{
    switch (cell.kind)
    {
    case TaskCell::SELECTOR:
    case TaskCell::SEQUENCE:
        if (hasChild(cell, cell.active)) [[likely]]
            return &cells[cell.children.first + cell.active];
        result = withoutChild(cell);
        return nullptr;
    case TaskCell::ASK:
        result = cell.ask(cell.creature);
        return nullptr;
    case TaskCell::ACT:
        result = statusOf(cell.act(cell.creature));
        return nullptr;
    case TaskCell::INVERTER:
    case TaskCell::FAIL_FILTER:
    case TaskCell::UNTIL_FAIL:
    case TaskCell::UNTIL_SUCCEED:
        if (hasChild(cell, 0)) [[likely]]
            return &cells[cell.children.first];
        result = cell.task->reportMissingChild(0);
        return nullptr;
    default:
        result = tickElsewhere(cell);
        return nullptr;
    }
}

/// What a node makes of its child's result.
inline StatusCode TreePlan::takeResult(TaskCell &cell, StatusCode given)
{
    switch (cell.kind)
    {
    case TaskCell::SELECTOR:
        return selectorResult(cell, given);
    case TaskCell::SEQUENCE:
        return sequenceResult(cell, given);
    case TaskCell::INVERTER:
        return inverted(given);
    case TaskCell::FAIL_FILTER:
        return withoutFailure(given);
    case TaskCell::UNTIL_FAIL:
        return given == SC_Failure ? SC_Failure : SC_NeedMoreTime;
    default:
        return given == SC_Success ? SC_Success : SC_NeedMoreTime;
    }
}

inline StatusCode TreePlan::selectorResult(TaskCell &cell, StatusCode given)
{
    switch (given)
    {
    case SC_Success:
        cell.active = 0;
        return SC_Success;
    case SC_Failure:
        if (++cell.active < cell.children.count)
            return SC_NeedMoreTime;
        cell.active = 0;
        return SC_Failure;
    default:
        return SC_NeedMoreTime;
    }
}

inline StatusCode TreePlan::sequenceResult(TaskCell &cell, StatusCode given)
{
    if (cell.terminated)
    {
        cell.terminated = false;
        return SC_Success;
    }
    switch (given)
    {
    case SC_NeedMoreTime:
        return SC_NeedMoreTime;
    case SC_Failure:
        cell.active = 0;
        return SC_Failure;
    case SC_InvalidHandle:
        cell.task->terminate();
        return SC_InvalidHandle;
    default:
        if (++cell.active < cell.children.count)
            return SC_NeedMoreTime;
        cell.active = 0;
        return SC_Success;
    }
}

inline bool TreePlan::hasChild(const TaskCell &cell, TaskListIt at) const
{
    return at < cell.children.count && cells[cell.children.first + at].kind != TaskCell::MISSING;
}

/// What a selector or a sequence gives that has no child, or a dead one where its turn is.
StatusCode TreePlan::withoutChild(TaskCell &cell)
{
    if (cell.children.count > 0)
        return cell.task->reportMissingChild(cell.active);
    return cell.kind == TaskCell::SELECTOR ? SC_Undefined : SC_Failure;
}

/// Ticks a node that the plan does not tick itself.
StatusCode TreePlan::tickElsewhere(TaskCell &cell)
{
    if (cell.kind == TaskCell::ELSEWHERE)
        return cell.task->tick();
    if (cell.kind == TaskCell::OTHER)
        return cell.task->run();
    cell.task->complain(Descent::describe());
    return SC_Failure;
}
