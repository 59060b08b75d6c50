// TreeShape: how the nodes of a tree stand to each other, and how each is ticked.
#pragma once

#include "ai/plans/TaskStep.h"
#include "ai/plans/TreeTurns.h"

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include <utility>
#include <vector>

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
    const TreeTurns turns;

private:
    friend void intrusive_ptr_add_ref(const TreeShape *shape) { ++shape->users; }
    friend void intrusive_ptr_release(const TreeShape *shape)
    {
        if (--shape->users == 0)
            shape->remove();
    }

    TreeShape(std::vector<TaskStep> &&steps, int depth) : steps(std::move(steps)), depth(depth), turns(this->steps) {}
    void remove() const;

    mutable int users = 0; ///< trees of the shape
};
