// RunningTasks: the children of a parallel node that still run.
#pragma once

#include "ai/nodes/TaskTypes.h"

/// Takes a child that has finished out of the list, and stands `active` at the one that was behind it.
///
/// A list that was emptied from within the child's own tick stays as it is.
/// @return whether there was none behind it: `active` is at the list's end then
bool dropFinished(TaskList &running, TaskListIt &active);
