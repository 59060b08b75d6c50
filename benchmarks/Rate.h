// Rate: nanoseconds an operation, as the harness reads them.
#pragma once

#include <benchmark/benchmark.h>

/// Reports nanoseconds an operation for benchmarks that do `operations` of them an iteration.
inline void reportNanoseconds(benchmark::State &state, double operations)
{
    using benchmark::Counter;
    state.counters["ns"] = Counter(operations * 1e-9, Counter::kIsIterationInvariantRate | Counter::kInvert);
}
