// WalkedTasks: the lists that some nodes walk in place of their children.
#pragma once

#include "ai/nodes/BTTask.h"

/// Takes a child that has finished out of the running ones, and stands `active` at the one that was behind it.
///
/// A list that was emptied from within the child's own tick stays as it is.
/// @return whether there was none behind it: `active` is at the list's end then
bool dropFinished(TaskList &running, TaskListIt &active);

/// A list of children in an order of chance, and whether it is to be shuffled anew before the next tick.
struct ShuffledTasks
{
    TaskList shuffledChildren;
    bool shouldReshuffle = true;

    /// Takes the children in an order that the engine's generator decides. Allocates for the first time only.
    void shuffle(const TaskList &children);
};
