// PassClock: how long each pass of a frame takes, with the driver drained at both its ends.
#pragma once

#include "foundation/ProfilerScope.h"

#include <chrono>
#include <map>
#include <string>
#include <vector>

/// A profiler sink that times the scopes of passes and of the frame's brackets.
///
/// What it measures is longer than the frame is without it, since nothing overlaps any more. Scopes nest; the time of a
/// scope counts that of those inside it.
class PassClock final : public IProfilerSink
{
public:
    std::uint64_t beginScope(const String &category, const String &name) override;
    void endScope(std::uint64_t beginID, const String &category, const String &name, bool verbose) override;

    /// Prints milliseconds a frame, the scopes in the order of their first beginning.
    void print(int frames) const;

private:
    typedef std::chrono::steady_clock Clock;
    struct Entry
    {
        std::string label;
        double milliseconds = 0;
        int calls = 0;
    };

    std::vector<Entry> entries;
    std::map<std::string, std::size_t> places;
    std::vector<std::pair<std::size_t, Clock::time_point>> open;
};
