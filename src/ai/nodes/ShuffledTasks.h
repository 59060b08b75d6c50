// ShuffledTasks: the children of a node in an order of chance.
#pragma once

#include "ai/nodes/BTTask.h"

/// A list of children and whether it is to be shuffled anew before the next tick.
struct ShuffledTasks
{
    TaskList shuffledChildren;
    bool shouldReshuffle = true;

    /// Takes the children in an order that the engine's generator decides. Allocates for the first time only.
    void shuffle(const TaskList &children);
};
