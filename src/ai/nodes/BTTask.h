// BTTask: a node of a behaviour tree, and what a tick of it gives.
#pragma once

#include "ai/plans/TaskTypes.h"
#include "ai/plans/TreePlan.h"

#include "object/tree/Object.h"

#include "foundation/Allocators.h"
#include "foundation/ErrorCode.h"

#include <cstddef>
#include <vector>

/// Under which all nodes of trees and their actions are made.
extern AllocationCategory BTAllocation;

/// A node of a behaviour tree.
///
/// Holds its children by handle, in the order in which they are ticked; they are not its children in the object tree,
/// where every node and action of a creature's tree stands directly below its entity. A tick is a plain call down the
/// active path. Trees that come from scripts may be of any shape: what would follow one deeper than MAX_DEPTH, or one
/// that stands within itself, stops there with an error that names the node.
class BTTask : public Object
{
    KV_REFLECTED(BTTask)
public:
    /// Nodes on the way down from a root that are followed.
    static constexpr int MAX_DEPTH = 1000;
    /// Nodes that a copy of a tree may have.
    static constexpr int MAX_COPIED = 250000;

    BTTask() = default;
    ~BTTask() override;

    void onHierarchyChange(Handle<Object> reparentedObject, Handle<Object> newParent) override;

    /// Adds a child behind the present ones and begins again at the first; returns the handle it was given.
    ///
    /// A handle to nothing is added, too: ticks report it. A node that this one stands below is refused with an error.
    virtual Handle<BTTask> addChild(Handle<BTTask> child);
    /// One tick of the node itself; parents and components use `tick`, which keeps account of it.
    virtual StatusCode run() = 0;
    /// Ends what is going on in the node and below it, so that it begins afresh.
    virtual void terminate();
    /// A copy of the node and of all below it, which nobody owns yet; BT_FAILURE where that is impossible.
    virtual ErrorReturn<Handle<BTTask>> clone() = 0;
    /// Makes an entity the parent, in the object tree, of the node and of all below it.
    virtual void setTreeParent(Handle<Entity> baseEntity);

    /// Murders the node and all below it.
    void DeleteTree();

    /// Runs the node and remembers the result; SC_Failure, with an error, at a depth that no tree should have.
    StatusCode tick() { return TreePlan::tick(*this); }
    /// Lays the tree out for its ticks, which the first one does where nobody asks.
    void prepare() { TreePlan::prepare(*this); }

    /// Whether the node was terminated; a sequence looks at it after its child's tick.
    bool getTerminated() const { return state->terminated; }
    void setTerminated(bool val);
    /// How many children the node ticks.
    std::size_t getTaskCount() const { return children.size(); }
    /// The child at an index; invalid where there is none.
    Handle<BTTask> getTask(std::size_t index) const;
    /// Index of the child that is ticked next, in the list that the node walks.
    TaskListIt getActiveTask() const { return settled().active; }
    void setActiveTask(TaskListIt val);
    /// Whether the node has been ticked.
    bool getTicked() const { return settled().lastResult != TaskState::NOT_TICKED; }
    /// What the last tick gave; SC_Undefined before the first.
    StatusCode getLastResult() const
    {
        return getTicked() ? static_cast<StatusCode>(settled().lastResult) : SC_Undefined;
    }

    /// The children in order.
    const TaskList &getTasks() const { return children; }
    /// The list that `activeTask` walks: the children, or those of them that the node has picked.
    virtual const TaskList &getWalkedTasks() const { return children; }

protected:
    /// Makes a node of a class, named after it; an invalid handle where that is impossible.
    static Handle<BTTask> makeNode(const ReflectorPtr &type);
    /// A new node of this one's class, with copies of all children.
    ErrorReturn<Handle<BTTask>> cloneWithChildren() const;
    /// Ends what is going on in the children.
    void terminateChildren();

    /// The node at a place of a list; null at its end and for a dead one.
    static BTTask *resolve(const TaskList &tasks, TaskListIt at)
    {
        return at < tasks.size() ? tasks[at].lookup().ptr : nullptr;
    }
    /// Says once that a child cannot be ticked; gives SC_InvalidHandle.
    StatusCode reportMissingChild(TaskListIt at);
    /// Logs an error about this node, with its path in its tree; later ones of the same node are not told.
    void complain(const String &what);
    /// Logs an error like `complain`, about a leaf whose function or action says that what it needs does not exist.
    void complainOfNeed(const ReflectorPtr &what);
    /// Whether nothing has been said about this node yet; true once.
    bool isFirstComplaint();

    /// One tick as the plan of the tree has it.
    StatusCode runPlanned() { return TreePlan::run(*this); }
    /// Has the plan of the tree made anew before the next tick.
    void spoilPlan();
    /// The child that is ticked next, of a node that runs by itself, in the list that it walks.
    TaskListIt &activeTask() { return state->active; }

    TaskList children;

private:
    friend class TreePlan;

    bool canTake(const Handle<BTTask> &child) const;
    /// The node's state, with all in it that ticks have left behind.
    TaskState &settled() const;
    TaskState &changeState();
    /// Fills in how a plan ticks the node, apart from its place; OTHER for what runs by itself.
    virtual void describeTo(TaskStep &) const {}

    TaskState *state = &ownState; ///< in the plan, or its own
    boost::intrusive_ptr<TreePlan> plan;
    TaskState ownState;
    bool placed = false; ///< stands below another node
    bool complained = false;
};

/// Every node below and at a root, parents before children and each once, with how deep it stands.
///
/// Goes through lists of its own rather than the processor's stack, so that any shape of tree will do.
struct TaskPlace
{
    BTTask *task;
    std::size_t parent; ///< index of the parent's place; its own for the root
    std::size_t index;  ///< among the parent's children
    std::size_t depth;  ///< 0 for the root
};
std::vector<TaskPlace> tasksOf(BTTask &root);
