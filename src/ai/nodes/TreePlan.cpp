#include "ai/nodes/TreePlan.h"

#include "ai/nodes/Descent.h"

#include "engine/entities/Entity.h"

namespace
{
bool isLeaf(const TaskCell &cell)
{
    return cell.kind == TaskCell::ASK || cell.kind == TaskCell::ACT;
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

StatusCode statusOf(ActionStatus status)
{
    switch (status)
    {
    case AS_InProgress:
        return SC_NeedMoreTime;
    case AS_Complete:
        return SC_Success;
    case AS_Failed:
        return SC_Failure;
    default:
        return SC_Undefined;
    }
}

TreePlan::Use::Use(BTTask &task)
{
    if (!task.plan || task.plan->stale) [[unlikely]]
        refresh(task);
    plan = task.plan;
    ++plan->running;
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
    for (std::size_t i = 0; i < plan->cells.size(); ++i)
        plan->addChildren(i);
    plan->settle();
}

/// Appends the cells of a node's children; a node that runs by itself sees to its own.
void TreePlan::addChildren(std::size_t at)
{
    const TaskCell::Kind kind = cells[at].kind;
    if (kind == TaskCell::MISSING || kind == TaskCell::ELSEWHERE || kind == TaskCell::OTHER)
        return;
    const TaskList &children = cells[at].task->children;
    if (isLeaf(cells[at]))
        return;
    cells[at].children = {static_cast<std::uint32_t>(cells.size()), static_cast<std::uint32_t>(children.size())};
    for (const Handle<BTTask> &h : children)
        add(h);
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
    cell.ticked = task->cell->ticked;
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

StatusCode TreePlan::tick(TaskCell &cell)
{
    const Descent level;
    if (level.isTooDeep()) [[unlikely]]
    {
        cell.task->complain(level.describe());
        return SC_Failure;
    }
    const StatusCode result = step(cell);
    cell.ticked = true;
    cell.lastResult = static_cast<std::uint8_t>(result);
    return result;
}

StatusCode TreePlan::step(TaskCell &cell)
{
    switch (cell.kind)
    {
    case TaskCell::SELECTOR:
        return selector(cell);
    case TaskCell::SEQUENCE:
        return sequence(cell);
    case TaskCell::ASK:
        return cell.ask(cell.creature);
    case TaskCell::ACT:
        return statusOf(cell.act(cell.creature));
    case TaskCell::OTHER:
        return cell.task->run();
    case TaskCell::ELSEWHERE:
        return cell.task->tick();
    default:
        return filter(cell);
    }
}

bool TreePlan::hasChild(const TaskCell &cell, TaskListIt at) const
{
    return at < cell.children.count && cells[cell.children.first + at].kind != TaskCell::MISSING;
}

StatusCode TreePlan::selector(TaskCell &cell)
{
    if (cell.children.count == 0)
        return SC_Undefined;
    if (!hasChild(cell, cell.active))
        return cell.task->reportMissingChild(cell.active);

    switch (tick(cells[cell.children.first + cell.active]))
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

StatusCode TreePlan::sequence(TaskCell &cell)
{
    if (cell.children.count == 0)
        return SC_Failure;
    if (!hasChild(cell, cell.active))
        return cell.task->reportMissingChild(cell.active);

    const StatusCode result = tick(cells[cell.children.first + cell.active]);
    if (cell.terminated)
    {
        cell.terminated = false;
        return SC_Success;
    }
    switch (result)
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

StatusCode TreePlan::filter(TaskCell &cell)
{
    if (!hasChild(cell, 0))
        return cell.task->reportMissingChild(0);
    const StatusCode result = tick(cells[cell.children.first]);
    switch (cell.kind)
    {
    case TaskCell::INVERTER:
        return inverted(result);
    case TaskCell::FAIL_FILTER:
        return withoutFailure(result);
    case TaskCell::UNTIL_FAIL:
        return result == SC_Failure ? SC_Failure : SC_NeedMoreTime;
    default:
        return result == SC_Success ? SC_Success : SC_NeedMoreTime;
    }
}
