// FunctionTimeProfiler: times a function from where the guard stands to the end of its block.
#pragma once

#include "tools/profiler/ProfilerSystem.h"

/// Records its own lifetime with the profiler, which it starts if need be; lower folders use ProfilerScope.
class FunctionTimeProfiler
{
public:
    /// @param func        what is measured
    /// @param profileKey  what it works on
    /// @param verbose     log the duration at the end
    FunctionTimeProfiler(const String &func, const String &profileKey, bool verbose = false)
        : beginID(getSystemDeref<ProfilerSystem>().beginScope(func, profileKey)), func(func), profileKey(profileKey),
          verbose(verbose)
    {
    }
    ~FunctionTimeProfiler() { getSystemDeref<ProfilerSystem>().endScope(beginID, func, profileKey, verbose); }
    FunctionTimeProfiler(const FunctionTimeProfiler &) = delete;
    FunctionTimeProfiler &operator=(const FunctionTimeProfiler &) = delete;

private:
    EventID beginID;
    String func;
    String profileKey;
    bool verbose;
};
