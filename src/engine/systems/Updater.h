// Updater: one named, prioritised step of the frame.
#pragma once

#include "object/tree/ReflectorPtr.h"

#include "foundation/KVString.h"
#include "foundation/TimeTypes.h"

#include <set>
#include <utility>
#include <vector>

/// One step of the frame: a callable of no arguments, run in ascending order of priority.
///
/// Comes from a system or from a manager. Updaters of equal priority keep the order of their insertion.
struct Updater
{
    Updater() = default;
    Updater(String updaterName, ReflectorPtr fn, int priority, bool runOnStop = false)
        : updaterName(std::move(updaterName)), fn(std::move(fn)), priority(priority), runOnStop(runOnStop)
    {
    }

    bool operator<(const Updater &rhs) const { return priority < rhs.priority; }

    String updaterName;               ///< shown by the profiler
    ReflectorPtr fn;                  ///< what is called, usually a method bound to its object
    int priority = 0;                 ///< place in the frame, low first
    bool runOnStop = false;           ///< whether a stopped level still runs it
    mutable TimerTicks frameTime = 0; ///< duration of the last run, ticks of the time source; no part of the order
};

/// Updaters in the order they run.
using UpdaterSet = std::multiset<Updater>;
/// Updaters as their owner hands them over.
using UpdaterList = std::vector<Updater>;
