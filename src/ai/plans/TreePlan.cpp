#include "ai/plans/TreePlan.h"

#include "ai/nodes/Descent.h"

#include "engine/entities/Entity.h"

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <unordered_set>
#include <utility>

/// A tick from outside, as long as which the plan stays as it is, and nothing is cremated.
class TreePlan::Use
{
public:
    explicit Use(TreePlan &plan) : plan(plan) { ++plan.running; }
    ~Use()
    {
        --plan.running;
        // Its last node may have gone over to another plan meanwhile.
        if (plan.users == 0) [[unlikely]]
            plan.endUnlessRunning();
    }
    Use(const Use &) = delete;
    Use &operator=(const Use &) = delete;

private:
    const CremationHold hold;
    TreePlan &plan;
};

StatusCode TreePlan::tick(BTTask &task)
{
    TreePlan *const plan = task.plan.get();
    if (plan && plan->place != TreeTurns::NOWHERE && plan->top == &task) [[likely]]
    {
        const Use use(*plan);
        return plan->turn();
    }
    return tickByWalking(task);
}

/// A tick of a node from which no turn is known.
StatusCode TreePlan::tickByWalking(BTTask &task)
{
    const StatusCode result = run(task);
    task.state->lastResult = static_cast<std::uint8_t>(result);
    return result;
}

StatusCode TreePlan::run(BTTask &task)
{
    prepare(task);
    TreePlan &plan = *task.plan;
    const Use use(plan);
    plan.settle();
    return plan.walk(plan.indexOf(task));
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
    if (!steps[at].takesChildren())
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
    std::uninitialized_value_construct_n(plan->notes(), count);
    TaskState *const states = std::uninitialized_value_construct_n(plan->states(), count) - count;
    for (std::size_t i = 0; i < count; ++i)
        if (plan->shape->steps[i].kind != TaskStep::MISSING && plan->shape->steps[i].kind != TaskStep::ELSEWHERE)
            plan->adopt(*plan->tasks[i], states[i]);
}

TreePlan::TreePlan(BTTask &root, Layout &&layout)
    : shape(TreeShape::of(std::move(layout.steps), layout.depth)), creature(handle_cast<Entity>(root.getParent())),
      top(&root), count(layout.tasks.size()), tasks(std::move(layout.tasks)), root(root.getTypedHandle())
{
}

/// Has a node keep its state in the plan. Another plan that has it, too, is not right any more.
void TreePlan::adopt(BTTask &task, TaskState &state)
{
    if (task.plan)
    {
        task.plan->settle();
        task.plan->spoil();
    }
    state = *task.state;
    task.state = &state;
    task.plan = this;
}

inline std::uint32_t TreePlan::indexOf(const BTTask &task)
{
    return static_cast<std::uint32_t>(task.state - states());
}

/// One tick of the root of a tree with a place.
inline StatusCode TreePlan::turn()
{
    const std::uint8_t leaf = place;
    const StatusCode given = call(leaf);
    const TreeTurns::Turn *const turn = place == leaf ? shape->turns.find(leaf, given) : nullptr;
    if (!turn || (turn->heeded & ended) != 0) [[unlikely]]
        return climbToRoot(leaf, given);
    if (ticks == std::numeric_limits<std::uint16_t>::max()) [[unlikely]]
        settle();
    notes()[leaf] = Note{++ticks, static_cast<std::uint8_t>(given)};
    place = turn->next;
    return static_cast<StatusCode>(turn->result);
}

/// The end of a tick of the root whose turn is not known.
StatusCode TreePlan::climbToRoot(std::uint32_t leaf, StatusCode given)
{
    const StatusCode result = climb(leaf, 0, given);
    states()[0].lastResult = static_cast<std::uint8_t>(result);
    return result;
}

/// Repeats in the nodes, in their order, the last ticks that came to each leaf: of earlier ones nothing is left.
void TreePlan::writeDown()
{
    std::array<std::uint8_t, TreeTurns::MOST_STEPS> leaves;
    std::size_t told = 0;
    for (std::size_t i = 0; i < count; ++i)
        if (notes()[i].tick > 0)
            leaves[told++] = static_cast<std::uint8_t>(i);
    std::sort(leaves.begin(), leaves.begin() + static_cast<std::ptrdiff_t>(told),
              [this](std::uint8_t lhs, std::uint8_t rhs) { return notes()[lhs].tick < notes()[rhs].tick; });
    for (std::size_t i = 0; i < told; ++i)
    {
        Note &note = notes()[leaves[i]];
        shape->turns.leaveBehind(leaves[i], static_cast<StatusCode>(note.result), states());
        note.tick = 0;
    }
    ticks = 0;
}

/// One tick of a node of the plan: down the active path to what runs, and up again with what that gave.
StatusCode TreePlan::walk(std::uint32_t top)
{
    const TaskStep *const steps = shape->steps.data();
    std::uint32_t at = top;
    for (std::uint32_t turn; (turn = steps[at].turnOf(states()[at])) < steps[at].count;)
        at = steps[at].first + turn;
    StatusCode result;
    if (steps[at].kind == TaskStep::MISSING) [[unlikely]]
    {
        // A child that does not exist has no tick; it is its parent's that ends there.
        const std::uint32_t number = at - steps[steps[at].parent].first;
        at = steps[at].parent;
        result = tasks[at]->reportMissingChild(number);
    }
    else
        result = call(at);
    return climb(at, top, result);
}

/// What a node gives that ticks no child where it stands.
inline StatusCode TreePlan::call(std::uint32_t at)
{
    const TaskStep &step = shape->steps[at];
    if (step.kind == TaskStep::ASK)
        return step.ask(creature);
    if (step.kind == TaskStep::ACT)
        return statusOf(step.act(creature));
    return runOther(at);
}

/// Takes a result in all nodes above one, up to another.
StatusCode TreePlan::climb(std::uint32_t from, std::uint32_t top, StatusCode result)
{
    settle(); // the leaf may have ticked the tree
    for (std::uint32_t at = from; at != top;)
    {
        states()[at].lastResult = static_cast<std::uint8_t>(result);
        at = shape->steps[at].parent;
        result = takeResult(at, result);
    }
    place = stale ? TreeTurns::NOWHERE : shape->turns.placeOf(states());
    ended = shape->turns.endedOf(states());
    return result;
}

/// What a node makes of its child's result.
StatusCode TreePlan::takeResult(std::uint32_t at, StatusCode given)
{
    const TaskStep &step = shape->steps[at];
    if (!step.isEndedBy(states()[at], given)) [[likely]]
        return step.take(states()[at], given);
    tasks[at]->terminate();
    return given;
}

/// What anything but a native leaf gives that ticks no child where it stands.
StatusCode TreePlan::runOther(std::uint32_t at)
{
    // Trees within trees go down by here; a leaf that is a function ticks nothing.
    const Descent levels(shape->depth);
    if (levels.isTooDeep()) [[unlikely]]
    {
        tasks[at]->complain(Descent::describe());
        return SC_Failure;
    }
    switch (shape->steps[at].kind)
    {
    case TaskStep::OTHER:
        return tasks[at]->run();
    case TaskStep::ELSEWHERE:
        return tasks[at]->tick();
    case TaskStep::TOO_DEEP:
        tasks[at]->complain(Descent::describe());
        return SC_Failure;
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
    return tasks[at]->reportMissingChild(step.turnOf(states()[at]));
}
