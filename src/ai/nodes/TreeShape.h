// TreeShape: how the nodes of a tree stand to each other, and how each is ticked.
#pragma once

#include "ai/nodes/TaskTypes.h"

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include <cstdint>
#include <utility>
#include <vector>

/// How a node is ticked, and where its parent and its children stand.
struct TaskStep
{
    enum Kind : std::uint8_t
    {
        SELECTOR,
        SEQUENCE, ///< the last that walks its children
        INVERTER,
        FAIL_FILTER,
        UNTIL_FAIL,
        UNTIL_SUCCEED,
        OTHER,     ///< by its own `run`
        ASK,       ///< a native condition without a child
        ACT,       ///< a native action
        ELSEWHERE, ///< stands at another place of the tree already
        MISSING,   ///< a child that does not exist
        TOO_DEEP   ///< stands deeper than any node should
    };

    BTConditionFn ask = nullptr; ///< of a native condition
    BTActionFn act = nullptr;    ///< of a native action
    std::uint32_t first = 0;     ///< index of the first child's step; the others follow
    std::uint32_t count = 0;     ///< of children
    std::uint32_t parent = 0;    ///< index of the parent's step
    Kind kind = OTHER;

    bool operator==(const TaskStep &) const = default;
};

/// The steps of all nodes of a tree, children beside each other, from the root on.
///
/// Trees that are alike, as the copies that a crowd has of one, share one shape, which lives as long as one of them:
/// what their ticks read stays in the cache from creature to creature.
class TreeShape
{
public:
    using Ptr = boost::intrusive_ptr<const TreeShape>;

    /// The one shape of these steps.
    /// @param depth  levels of nodes, which follows from the steps
    static Ptr of(std::vector<TaskStep> &&steps, int depth);

    const std::vector<TaskStep> steps;
    const int depth;

private:
    friend void intrusive_ptr_add_ref(const TreeShape *shape) { ++shape->users; }
    friend void intrusive_ptr_release(const TreeShape *shape)
    {
        if (--shape->users == 0)
            shape->remove();
    }

    TreeShape(std::vector<TaskStep> &&steps, int depth) : steps(std::move(steps)), depth(depth) {}
    void remove() const;

    mutable int users = 0; ///< trees of the shape
};
