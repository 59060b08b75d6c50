// W12: one scope, its begin and its end recorded in the profiler's ring with the time of the run's clock.
#include "Rate.h"

#include "foundation/ProfilerScope.h"
#include "tools/profiler/ProfilerSystem.h"

namespace
{
void scope(benchmark::State &state)
{
    const ProfilerSystem &profiler = getSystemDeref<ProfilerSystem>();
    const String category = SCS("UPDATER");
    const String name = SCS("physicsManager");
    const EventID before = profiler.getLastEventID();
    std::int64_t scopes = 0;
    for (auto _ : state)
    {
        const ProfilerScope measured(category, name);
        ++scopes;
    }
    const auto recorded = static_cast<double>(profiler.getLastEventID() - before);
    state.counters["check"] = recorded / static_cast<double>(scopes);
    reportNanoseconds(state, 1);
}
} // namespace

BENCHMARK(scope)->Name("W12/scope");
