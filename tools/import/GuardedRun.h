// GuardedRun: work on files from anywhere, in a process that may break down alone.
#pragma once

#include <functional>
#include <string>

/// How guarded work ended.
struct GuardedEnd
{
    int code = 1;      ///< what the work returned
    std::string fault; ///< why it did not come to its end; empty if it did
};

/// Runs work in a process of its own, with a limit on time, memory and stack.
///
/// The libraries that read foreign files have faults of their own; whatever a damaged file makes of them ends here.
/// What the work changes in memory is lost, what it prints and writes stays.
/// @param work  returns 0 to 63
GuardedEnd runGuarded(const std::function<int()> &work);

/// Notes what guarded work is about to do, as "reading 'chair.mtl'": the fault tells it if the work ends there.
void noteStep(const std::string &step);
