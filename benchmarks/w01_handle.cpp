// W1: 100,000 look-ups of 32-bit handles in random order: all alive, all dead, three quarters alive.
#include "Rate.h"
#include "Subjects.h"

#include "bench_common.h"

namespace
{
void handle(benchmark::State &state)
{
    const bench::HandleCase order;
    std::vector<Handle<BenchPoint>> handles;
    for (std::uint32_t i = 0; i < bench::HandleCase::created; ++i)
    {
        handles.push_back(construct<BenchPoint>(defaultAllocationCategory));
        handles.back().lookup()->value = i;
    }
    for (std::uint32_t victim : order.victims)
        handles[victim].lookup()->murder();
    cremateDeadObjects();

    const auto &indices = state.range(0) == 0 ? order.qLive : state.range(0) == 1 ? order.qDead : order.qMixed;
    std::vector<Handle<BenchPoint>> queries;
    for (std::uint32_t i : indices)
        queries.push_back(handles[i]);

    std::uint64_t sum = 0;
    std::uint64_t found = 0;
    for (auto _ : state)
    {
        sum = found = 0;
        for (const Handle<BenchPoint> &h : queries)
        {
            if (auto object = h.lookup())
            {
                sum += object->value;
                ++found;
            }
        }
        benchmark::DoNotOptimize(sum);
    }
    state.counters["check"] = double(found);
    reportNanoseconds(state, double(queries.size()));

    for (const Handle<BenchPoint> &h : handles)
    {
        if (auto object = h.lookup())
            object->murder();
    }
    cremateDeadObjects();
}
} // namespace

BENCHMARK(handle)->Name("W1/handle")->ArgName("0live_1dead_2mixed")->Arg(0)->Arg(1)->Arg(2);
