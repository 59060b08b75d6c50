// MasterTimer: the frame step of the level that a node stands in.
#pragma once

#include "engine/time/TimeKeeper.h"
#include "object/tree/Handle.h"
#include "object/tree/KvFields.h"

/// Finds the timer "master" above an object and remembers it.
///
/// The owner forgets it when the object tree above it changes, in its `onHierarchyChange`.
class MasterTimer
{
    KV_FIELDS
public:
    /// The timer of the coordinator above an object; null without one.
    const TimeKeeper *find(Object &below)
    {
        const auto known = timer.lookup();
        return known ? known.ptr : search(below);
    }
    void forget() { timer = Handle<TimeKeeper>(); }

private:
    const TimeKeeper *search(Object &below);

    Handle<TimeKeeper> timer;
};
