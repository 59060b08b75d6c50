// TaskTypes: what the nodes of behaviour trees give, take and are listed by.
#pragma once

#include "object/tree/Handle.h"

#include "foundation/KVString.h"

#include <cstdint>
#include <vector>

class BTTask;
class Entity;

/// What a tick of a node gives.
enum StatusCode
{
    SC_Success = 0,      ///< finished, succeeded
    SC_Failure = 1,      ///< finished, failed
    SC_NeedMoreTime = 2, ///< to be ticked again in the next frame
    SC_Undefined = 3,    ///< nothing that means anything: no children, an unknown result
    SC_InvalidHandle = 4 ///< what the node needed does not exist
};

/// What a step of an action gives.
enum ActionStatus
{
    AS_InProgress = 0,
    AS_Complete = 1,
    AS_Failed = 2,
    AS_InvalidHandle = 3 ///< what the action needed does not exist
};

/// Step of a leaf, as a function of the entity that acts.
using BTActionFn = ActionStatus (*)(Handle<Entity> hEntity);
/// Question that a leaf asks about the entity that acts.
using BTConditionFn = StatusCode (*)(Handle<Entity> hEntity);
/// Name of a behaviour, which is that of its tree.
using BTType = String;
/// Nodes in the order in which they are ticked.
using TaskList = std::vector<Handle<BTTask>>;
/// Place in a TaskList: an index, so that it outlives changes of the list.
using TaskListIt = std::uint32_t;
