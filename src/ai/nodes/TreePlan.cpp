#include "ai/nodes/TreePlan.h"

#include "ai/nodes/Descent.h"

#include "engine/entities/Entity.h"

#include <memory>
#include <unordered_set>
#include <utility>

namespace
{
/// Whether a plan ticks the node's children, too.
bool hasChildren(const TaskStep &step)
{
    switch (step.kind)
    {
    case TaskStep::SELECTOR:
    case TaskStep::SEQUENCE:
    case TaskStep::INVERTER:
    case TaskStep::FAIL_FILTER:
    case TaskStep::UNTIL_FAIL:
    case TaskStep::UNTIL_SUCCEED:
        return true;
    default:
        return false;
    }
}

/// Which of its children a node ticks: those that walk them the active one, all others the first.
inline std::uint32_t turnOf(const TaskStep &step, const TaskState &state)
{
    return step.kind <= TaskStep::SEQUENCE ? state.active : 0;
}

/// What a node that keeps nothing in mind makes of a child that has finished.
StatusCode filtered(TaskStep::Kind kind, StatusCode given)
{
    const bool succeeded = given == SC_Success, failed = given == SC_Failure;
    switch (kind)
    {
    case TaskStep::INVERTER:
        return succeeded ? SC_Failure : failed ? SC_Success : SC_Undefined;
    case TaskStep::FAIL_FILTER:
        return succeeded || failed ? SC_Success : SC_Undefined;
    case TaskStep::UNTIL_FAIL:
        return failed ? SC_Failure : SC_NeedMoreTime;
    default:
        return succeeded ? SC_Success : SC_NeedMoreTime;
    }
}
} // namespace

/// A tick from outside, as long as which the node's plan stays as it is.
class TreePlan::Use
{
public:
    explicit Use(BTTask &task)
    {
        prepare(task);
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
    task.state->lastResult = static_cast<std::uint8_t>(result);
    return result;
}

StatusCode TreePlan::run(BTTask &task)
{
    const Use plan(task);
    const Descent levels(plan->shape->depth);
    if (levels.isTooDeep()) [[unlikely]]
    {
        task.complain(levels.describe());
        return SC_Failure;
    }
    return plan->step(plan->indexOf(task));
}

void TreePlan::prepare(BTTask &task)
{
    if (!task.plan || task.plan->stale) [[unlikely]]
        refresh(task);
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

struct TreePlan::Layout
{
    explicit Layout(BTTask &root) : parent(root.getParent())
    {
        add(&root);
        // Level by level, so that children stand beside each other.
        for (std::size_t begin = 0, end = steps.size(); begin < end; begin = end, end = steps.size())
        {
            ++depth;
            for (std::size_t i = begin; i < end; ++i)
                addChildren(i);
        }
    }

    std::vector<TaskStep> steps;
    std::vector<BTTask *> tasks; ///< by step; null for MISSING
    int depth = 0;

private:
    void add(BTTask *task);
    void addChildren(std::size_t at);

    const Handle<Object> parent; ///< of the root
    std::unordered_set<const BTTask *> known;
};

/// Appends a node; null for one that does not exist.
void TreePlan::Layout::add(BTTask *task)
{
    tasks.push_back(task);
    TaskStep &step = steps.emplace_back();
    if (!task)
        step.kind = TaskStep::MISSING;
    else if (!known.insert(task).second)
        step.kind = TaskStep::ELSEWHERE;
    else
        task->describeTo(step);
    // A native leaf below another entity than the root's gives that its own.
    if ((step.kind == TaskStep::ASK || step.kind == TaskStep::ACT) && task->getParent() != parent)
        step = TaskStep();
}

/// Appends a node's children; a node that runs by itself sees to its own.
void TreePlan::Layout::addChildren(std::size_t at)
{
    if (!hasChildren(steps[at]))
        return;
    if (depth == BTTask::MAX_DEPTH)
    {
        steps[at].kind = TaskStep::TOO_DEEP;
        return;
    }
    const TaskList &children = tasks[at]->children;
    steps[at].first = static_cast<std::uint32_t>(steps.size());
    steps[at].count = static_cast<std::uint32_t>(children.size());
    for (const Handle<BTTask> &h : children)
    {
        add(h.lookup().ptr);
        steps.back().parent = static_cast<std::uint32_t>(at);
    }
}

void TreePlan::build(BTTask &root)
{
    Layout layout(root);
    const std::size_t count = layout.steps.size();
    const boost::intrusive_ptr<TreePlan> plan(new (count) TreePlan(root, std::move(layout)));
    TaskState *const states = std::uninitialized_value_construct_n(plan->states(), count) - count;
    for (std::size_t i = 0; i < count; ++i)
        if (plan->shape->steps[i].kind != TaskStep::MISSING && plan->shape->steps[i].kind != TaskStep::ELSEWHERE)
            plan->adopt(*plan->tasks[i], states[i]);
}

TreePlan::TreePlan(BTTask &root, Layout &&layout)
    : creature(handle_cast<Entity>(root.getParent())), shape(TreeShape::of(std::move(layout.steps), layout.depth)),
      tasks(std::move(layout.tasks)), root(root.getTypedHandle())
{
}

/// Has a node keep its state in the plan. Another plan that has it, too, is not right any more.
void TreePlan::adopt(BTTask &task, TaskState &state)
{
    state = *task.state;
    task.state = &state;
    if (task.plan)
        task.plan->spoil();
    task.plan = this;
}

inline std::uint32_t TreePlan::indexOf(const BTTask &task)
{
    return static_cast<std::uint32_t>(task.state - states());
}

/// One tick of a node of the plan: down the active path to what runs, and up again with what that gave.
inline StatusCode TreePlan::step(std::uint32_t top)
{
    const TaskStep *const steps = shape->steps.data();
    TaskState *const of = states();
    std::uint32_t at = top;
    for (std::uint32_t turn; (turn = turnOf(steps[at], of[at])) < steps[at].count;)
        at = steps[at].first + turn;

    StatusCode result;
    if (steps[at].kind == TaskStep::ASK)
        result = steps[at].ask(creature);
    else if (steps[at].kind == TaskStep::ACT)
        result = statusOf(steps[at].act(creature));
    else
        result = runOther(at);

    while (at != top)
    {
        of[at].lastResult = static_cast<std::uint8_t>(result);
        at = steps[at].parent;
        // Whoever needs more time has all above him need it, too.
        if (result != SC_NeedMoreTime || of[at].terminated)
            result = takeResult(steps[at], of[at], at, result);
    }
    return result;
}

/// What a node makes of its child's result.
inline StatusCode TreePlan::takeResult(const TaskStep &step, TaskState &state, std::uint32_t at, StatusCode given)
{
    if (step.kind == TaskStep::SEQUENCE)
    {
        if (state.terminated) [[unlikely]]
        {
            state.terminated = false;
            return SC_Success;
        }
        if (given == SC_InvalidHandle) [[unlikely]]
        {
            tasks[at]->terminate();
            return SC_InvalidHandle;
        }
        return given == SC_Failure ? begin(state, given) : advance(step, state, SC_Success);
    }
    if (given == SC_NeedMoreTime)
        return given;
    if (step.kind != TaskStep::SELECTOR)
        return filtered(step.kind, given);
    if (given == SC_Success)
        return begin(state, given);
    return given == SC_Failure ? advance(step, state, given) : SC_NeedMoreTime;
}

/// Has a node stand at its first child again, with a result.
inline StatusCode TreePlan::begin(TaskState &state, StatusCode result)
{
    state.active = 0;
    return result;
}

/// Has a node stand at its next child; behind the last one it begins again, with a result.
inline StatusCode TreePlan::advance(const TaskStep &step, TaskState &state, StatusCode atTheEnd)
{
    return ++state.active < step.count ? SC_NeedMoreTime : begin(state, atTheEnd);
}

/// What anything but a native leaf gives that ticks no child where it stands; `at` becomes the parent of a child that
/// does not exist, whose own tick ends there.
StatusCode TreePlan::runOther(std::uint32_t &at)
{
    const TaskStep &step = shape->steps[at];
    switch (step.kind)
    {
    case TaskStep::OTHER:
        return tasks[at]->run();
    case TaskStep::ELSEWHERE:
        return tasks[at]->tick();
    case TaskStep::TOO_DEEP:
        tasks[at]->complain(Descent::describe());
        return SC_Failure;
    case TaskStep::MISSING:
    {
        const std::uint32_t number = at - shape->steps[step.parent].first;
        at = step.parent;
        return tasks[at]->reportMissingChild(number);
    }
    default:
        return runWithoutChild(at);
    }
}

/// What a node gives that takes children, and has none where its turn is.
StatusCode TreePlan::runWithoutChild(std::uint32_t at)
{
    const TaskStep &step = shape->steps[at];
    if (step.count == 0 && step.kind == TaskStep::SELECTOR)
        return SC_Undefined;
    if (step.count == 0 && step.kind == TaskStep::SEQUENCE)
        return SC_Failure;
    return tasks[at]->reportMissingChild(turnOf(step, states()[at]));
}
