// TreePlan: a tree laid out for its ticks.
#pragma once

#include "ai/nodes/TaskTypes.h"

#include "object/tree/Object.h"

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include <cstdint>
#include <vector>

class BTTask;

/// The result of a leaf whose step gave a status.
StatusCode statusOf(ActionStatus status);

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
        MISSING    ///< a child that does not exist
    };
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
    TaskListIt active = 0;   ///< the node's activeTask
    Handle<Entity> creature; ///< of a native leaf
    Kind kind = OTHER;
    bool terminated = false;
    bool ticked = false;
    std::uint8_t lastResult = SC_Undefined;
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
    /// A tick from outside: has the node's plan, made first where it does not hold, stay as it is as long as it lives.
    ///
    /// Nothing is cremated meanwhile.
    class Use
    {
    public:
        explicit Use(BTTask &task);
        ~Use() { --plan->running; }
        Use(const Use &) = delete;
        Use &operator=(const Use &) = delete;

        TreePlan *operator->() const { return plan.get(); }

    private:
        const CremationHold hold;
        boost::intrusive_ptr<TreePlan> plan;
    };

    /// One tick of a node of this plan; SC_Failure, with an error, at a depth that no tree should have.
    StatusCode tick(TaskCell &cell);
    /// What a tick of a node does and gives, without account of it.
    StatusCode step(TaskCell &cell);

    /// Has the plan made anew before the next tick from outside.
    void spoil() { stale = true; }
    bool isStale() const { return stale; }

private:
    friend void intrusive_ptr_add_ref(TreePlan *plan) { ++plan->users; }
    friend void intrusive_ptr_release(TreePlan *plan)
    {
        if (--plan->users == 0)
            delete plan;
    }

    explicit TreePlan(Handle<BTTask> root) : root(root) {}
    static void refresh(BTTask &task);
    static void build(BTTask &root);
    void addChildren(std::size_t at);
    void add(const Handle<BTTask> &h);
    void settle();

    bool hasChild(const TaskCell &cell, TaskListIt at) const;
    StatusCode selector(TaskCell &cell);
    StatusCode sequence(TaskCell &cell);
    StatusCode filter(TaskCell &cell);

    std::vector<TaskCell> cells;
    Handle<BTTask> root;
    int users = 0;   ///< nodes that have their cells here, and ticks from outside that are under way
    int running = 0; ///< ticks from outside that are under way
    bool stale = false;
};
