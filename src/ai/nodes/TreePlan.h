// TreePlan: a tree laid out for its ticks.
#pragma once

#include "ai/nodes/TaskTypes.h"
#include "ai/nodes/TreeShape.h"

#include "object/tree/Object.h"

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include <cstddef>
#include <cstdint>
#include <new>
#include <vector>

class BTTask;

/// The result of a leaf whose step gave a status.
inline StatusCode statusOf(ActionStatus status)
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

/// What ticks change of a node.
struct TaskState
{
    static constexpr std::uint8_t NOT_TICKED = 255;

    TaskListIt active = 0;                ///< the node's activeTask
    std::uint8_t lastResult = NOT_TICKED; ///< a StatusCode
    bool terminated = false;
};

/// The nodes of a tree laid out for its ticks, so that those touch little memory and look up no handle: how they are
/// ticked in the shape that all trees of the kind share, what ticks change of them beside each other in the plan.
///
/// Made with a tree's first tick, and anew with the first one after a node of it has died, got a child or moved. Kept by
/// its nodes, which have their state in it. Holds what selectors, sequences and filters do; all other nodes run by
/// themselves, and what stands below them has plans of its own.
class TreePlan
{
public:
    /// One tick of a node, by its plan, which is made first where it does not hold.
    ///
    /// SC_Failure, with an error, at a depth that no tree should have. Nothing is cremated meanwhile.
    static StatusCode tick(BTTask &task);
    /// What a tick of a node does and gives, without account of it; otherwise like `tick`.
    static StatusCode run(BTTask &task);

    /// Makes a node's plan where there is none that holds.
    static void prepare(BTTask &task);
    /// Has the plan made anew before the next tick from outside.
    void spoil() { stale = true; }

private:
    class Use;

    friend void intrusive_ptr_add_ref(TreePlan *plan) { ++plan->users; }
    friend void intrusive_ptr_release(TreePlan *plan)
    {
        if (--plan->users == 0 && plan->running == 0)
            delete plan;
    }

    /// The nodes that a plan is made of, as they are found.
    struct Layout;

    TreePlan(BTTask &root, Layout &&layout);
    ~TreePlan() = default;
    static void *operator new(std::size_t size, std::size_t nodes)
    {
        return ::operator new(size + nodes * sizeof(TaskState));
    }
    static void operator delete(void *plan) { ::operator delete(plan); }
    static void operator delete(void *plan, std::size_t) { ::operator delete(plan); }

    static void refresh(BTTask &task);
    static void build(BTTask &root);
    void adopt(BTTask &task, TaskState &state);

    /// By step; they stand right behind the plan, so that a tick finds both in one place.
    TaskState *states() { return reinterpret_cast<TaskState *>(this + 1); }
    std::uint32_t indexOf(const BTTask &task);
    StatusCode step(std::uint32_t top);
    StatusCode takeResult(const TaskStep &step, TaskState &state, std::uint32_t at, StatusCode given);
    static StatusCode begin(TaskState &state, StatusCode result);
    static StatusCode advance(const TaskStep &step, TaskState &state, StatusCode atTheEnd);
    StatusCode runOther(std::uint32_t &at);
    StatusCode runWithoutChild(std::uint32_t at);

    int users = 0;   ///< nodes that have their states here
    int running = 0; ///< ticks from outside that are under way
    bool stale = false;
    Handle<Entity> creature; ///< that the native leaves are given
    TreeShape::Ptr shape;
    std::vector<BTTask *> tasks; ///< by step; null for MISSING
    Handle<BTTask> root;
};
static_assert(alignof(TreePlan) >= alignof(TaskState));
