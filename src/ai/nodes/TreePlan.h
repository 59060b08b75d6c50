// TreePlan: a tree laid out for its ticks.
#pragma once

#include "ai/nodes/TaskTypes.h"

#include "object/tree/Object.h"

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include <cstdint>
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

/// What a tick reads and writes of a node: half a cache line.
struct TaskCell
{
    /// How the node is ticked.
    enum Kind : std::uint8_t
    {
        OTHER, ///< by its own `run`
        SELECTOR,
        SEQUENCE,
        INVERTER,
        FAIL_FILTER,
        UNTIL_FAIL,
        UNTIL_SUCCEED,
        ASK,       ///< a native condition without a child
        ACT,       ///< a native action
        ELSEWHERE, ///< stands at another place of the tree already
        MISSING,   ///< a child that does not exist
        TOO_DEEP   ///< stands deeper than any node should
    };
    static constexpr std::uint8_t NOT_TICKED = 255;

    struct Children
    {
        std::uint32_t first; ///< index of the first one's cell; the others follow
        std::uint32_t count;
    };

    BTTask *task = nullptr; ///< null for MISSING
    union
    {
        Children children = {0, 0};
        BTConditionFn ask;
        BTActionFn act;
    };
    TaskListIt active = 0;    ///< the node's activeTask
    Handle<Entity> creature;  ///< of a native leaf
    std::uint32_t parent = 0; ///< index of the parent's cell
    Kind kind = OTHER;
    bool terminated = false;
    std::uint8_t lastResult = NOT_TICKED; ///< a StatusCode
};

static_assert(sizeof(TaskCell) == 32, "two cells share a cache line");

/// The nodes of a tree in one array, children beside each other, so that a tick touches little memory and looks up no
/// handle.
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

    explicit TreePlan(Handle<BTTask> root) : root(root) {}
    static void refresh(BTTask &task);
    static void build(BTTask &root);
    void add(const Handle<BTTask> &h);
    void addChildren(std::size_t at);
    void settle();

    StatusCode step(TaskCell &top);
    TaskCell *childToTick(TaskCell &cell, StatusCode &result);
    StatusCode takeResult(TaskCell &cell, StatusCode given);
    StatusCode selectorResult(TaskCell &cell, StatusCode given);
    StatusCode sequenceResult(TaskCell &cell, StatusCode given);
    StatusCode withoutChild(TaskCell &cell);
    StatusCode tickElsewhere(TaskCell &cell);
    bool hasChild(const TaskCell &cell, TaskListIt at) const;

    std::vector<TaskCell> cells;
    Handle<BTTask> root;
    int depth = 0;   ///< levels of nodes
    int users = 0;   ///< nodes that have their cells here
    int running = 0; ///< ticks from outside that are under way
    bool stale = false;
};
