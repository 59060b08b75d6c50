// TreePlan: a tree laid out for its ticks.
#pragma once

#include "ai/plans/TaskTypes.h"
#include "ai/plans/TreeShape.h"

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

/// The nodes of a tree laid out for its ticks, so that those touch little memory and look up no handle: how they are
/// ticked in the shape that all trees of the kind share, what ticks change of them beside each other in the plan.
///
/// Made with a tree's first tick, and anew with the first one after a node of it has died, got a child or moved. Kept by
/// its nodes, which have their state in it. Holds what selectors, sequences and filters do; all other nodes run by
/// themselves, and what stands below them has plans of its own.
///
/// While it is known at which leaf the tree stands, a tick of the root goes by the turns of the shape, and notes no more
/// than what the leaf gave; that is written into the nodes once somebody looks at them (`settle`). Otherwise it goes down
/// and up the tree, which comes to the same.
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
    void spoil()
    {
        stale = true;
        forgetPlace();
    }
    /// Writes into the nodes what ticks have left behind.
    void settle()
    {
        if (ticks > 0)
            writeDown();
    }
    /// Has the next tick walk: a node's state, which was settled, is changed by other than a tick of the root.
    void forgetPlace() { place = TreeTurns::NOWHERE; }

private:
    class Use;

    friend void intrusive_ptr_add_ref(TreePlan *plan) { ++plan->users; }
    friend void intrusive_ptr_release(TreePlan *plan)
    {
        if (--plan->users == 0)
            plan->endUnlessRunning();
    }

    /// The nodes that a plan is made of, as they are found.
    struct Layout;

    TreePlan(BTTask &root, Layout &&layout);
    ~TreePlan() = default;
    /// What a leaf gave in the last tick that came to it since all was written down.
    struct Note
    {
        std::uint16_t tick; ///< which of the ticks since then; 0 for none
        std::uint8_t result;
    };

    static void *operator new(std::size_t size, std::size_t nodes)
    {
        return ::operator new(size + nodes * (sizeof(Note) + sizeof(TaskState)), LINE);
    }
    static void operator delete(void *plan) { ::operator delete(plan, LINE); }
    static void operator delete(void *plan, std::size_t) { ::operator delete(plan, LINE); }

    static StatusCode tickByWalking(BTTask &task);
    static void refresh(BTTask &task);
    static void build(BTTask &root);
    void adopt(BTTask &task, TaskState &state);

    // By step; they stand right behind the plan, so that a tick finds all in two lines of the cache.
    Note *notes() { return reinterpret_cast<Note *>(this + 1); }
    TaskState *states() { return reinterpret_cast<TaskState *>(notes() + count); }
    std::uint32_t indexOf(const BTTask &task);
    void endUnlessRunning()
    {
        if (running == 0)
            delete this;
    }
    StatusCode turn();
    StatusCode climbToRoot(std::uint32_t leaf, StatusCode given);
    void writeDown();
    StatusCode call(std::uint32_t at);
    StatusCode walk(std::uint32_t top);
    StatusCode climb(std::uint32_t from, std::uint32_t top, StatusCode result);
    StatusCode takeResult(std::uint32_t at, StatusCode given);
    StatusCode runOther(std::uint32_t at);
    StatusCode runWithoutChild(std::uint32_t at);

    static constexpr std::align_val_t LINE{64};

    int users = 0;   ///< nodes that have their states here
    int running = 0; ///< ticks from outside that are under way
    TreeShape::Ptr shape;
    Handle<Entity> creature; ///< that the native leaves are given
    std::uint16_t ticks = 0; ///< noted and not written down
    bool stale = false;
    std::uint8_t place = TreeTurns::NOWHERE; ///< leaf that is next, if that tells all of where the tree stands
    std::uint64_t ended = 0;                 ///< steps of a tree with a place that go another way once
    BTTask *const top;                       ///< the first of the tasks; dead once the plan is stale
    const std::size_t count;                 ///< of steps
    std::vector<BTTask *> tasks;             ///< by step; null for MISSING
    Handle<BTTask> root;
};
static_assert(alignof(TreePlan) >= alignof(TaskState));
