// Descent: how far the calls at work have gone down trees.
#pragma once

#include "ai/nodes/BTTask.h"

/// Counts, as long as it lives, as one call on the way down a tree.
class Descent
{
public:
    Descent() { ++depth; }
    ~Descent() { --depth; }
    Descent(const Descent &) = delete;
    Descent &operator=(const Descent &) = delete;

    bool isTooDeep() const { return depth > BTTask::MAX_DEPTH; }
    /// What is wrong with the node at which it is too deep.
    String describe() const
    {
        return String::format("stands deeper than %d nodes below its root and is not followed: a tree takes branches "
                              "rather than a chain, and may not stand within itself",
                              BTTask::MAX_DEPTH);
    }

private:
    static inline constinit int depth = 0;
};
