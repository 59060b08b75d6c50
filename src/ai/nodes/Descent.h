// Descent: how far the calls at work have gone down trees.
#pragma once

#include "ai/nodes/BTTask.h"

/// Counts, as long as it lives, as some levels of calls on the way down a tree.
class Descent
{
public:
    explicit Descent(int levels = 1) : levels(levels) { depth += levels; }
    ~Descent() { depth -= levels; }
    Descent(const Descent &) = delete;
    Descent &operator=(const Descent &) = delete;

    bool isTooDeep() const { return depth > BTTask::MAX_DEPTH; }
    /// What is wrong with the node at which it is too deep.
    static String describe();

private:
    const int levels;
    static inline constinit int depth = 0;
};
