// ProfilerScope: marks a stretch of code for the profiler, which installs itself as the sink.
#pragma once

#include "foundation/KVString.h"

#include <cstdint>

/// Who records scopes.
class IProfilerSink
{
public:
    /// Records that a scope begins.
    /// @return number that endScope is given
    virtual std::uint64_t beginScope(const String &category, const String &name) = 0;
    /// Records that a scope ends.
    /// @param verbose  its duration is to be logged as well
    virtual void endScope(std::uint64_t beginID, const String &category, const String &name, bool verbose) = 0;

protected:
    ~IProfilerSink() = default;
};

/// The sink in force; null, the initial state, records nothing.
extern IProfilerSink *profilerSink;

/// Reports its own lifetime to the sink that was in force at its start.
class ProfilerScope
{
public:
    /// @param verbose  log the duration at the end
    ProfilerScope(const String &category, const String &name, bool verbose = false) : sink(profilerSink)
    {
        if (!sink)
            return;
        this->category = category;
        this->name = name;
        this->verbose = verbose;
        beginID = sink->beginScope(category, name);
    }
    ~ProfilerScope()
    {
        // A sink that was taken down while the scope was open must not be called any more.
        if (sink && sink == profilerSink)
            sink->endScope(beginID, category, name, verbose);
    }
    ProfilerScope(const ProfilerScope &) = delete;
    ProfilerScope &operator=(const ProfilerScope &) = delete;

private:
    IProfilerSink *sink;
    String category;
    String name;
    std::uint64_t beginID = 0; ///< number of the begin record
    bool verbose = false;
};
