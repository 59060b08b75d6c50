// W13: copy, compare, hash and find 4096 names.
#include "Rate.h"

#include "foundation/KVString.h"
#include "foundation/NameMap.h"

#include "bench_common.h"

namespace
{
constexpr double count = 4096;

/// The names as scripts and the table hold them: interned.
std::vector<String> makeInterned()
{
    std::vector<String> names;
    for (const auto &name : bench::makeNames())
        names.push_back(String::copyFrom(name.data()).intern());
    return names;
}

void copy(benchmark::State &state)
{
    const auto from = makeInterned();
    std::vector<String> to(from.size());
    for (auto _ : state)
    {
        for (std::size_t i = 0; i < from.size(); ++i)
        {
            String name(from[i]);
            to[i] = std::move(name);
        }
        benchmark::ClobberMemory();
    }
    reportNanoseconds(state, count);
}

void equal(benchmark::State &state)
{
    const auto a = makeInterned();
    const auto b = makeInterned();
    std::size_t hits = 0;
    for (auto _ : state)
    {
        for (std::size_t i = 0; i < a.size(); ++i)
            hits += a[i] == b[i];
        benchmark::DoNotOptimize(hits);
    }
    state.counters["check"] = double(hits % a.size());
    reportNanoseconds(state, count);
}

void unequal(benchmark::State &state)
{
    const auto a = makeInterned();
    auto b = makeInterned();
    bench::shuffle(b, 131);
    std::size_t hits = 0;
    for (auto _ : state)
    {
        for (std::size_t i = 0; i < a.size(); ++i)
            hits += a[i] == b[i];
        benchmark::DoNotOptimize(hits);
    }
    reportNanoseconds(state, count);
}

void hash(benchmark::State &state)
{
    const auto names = makeInterned();
    std::size_t sum = 0;
    for (auto _ : state)
    {
        for (const String &name : names)
            sum += hash_value(name);
        benchmark::DoNotOptimize(sum);
    }
    reportNanoseconds(state, count);
}

void find(benchmark::State &state)
{
    auto names = makeInterned();
    NameMap<int> map;
    for (const String &name : names)
        map[name] = 1;
    bench::shuffle(names, 132);
    int hits = 0;
    for (auto _ : state)
    {
        for (const String &name : names)
            hits += *map.find(name);
        benchmark::DoNotOptimize(hits);
    }
    state.counters["check"] = double(hits > 0);
    reportNanoseconds(state, count);
}
} // namespace

BENCHMARK(copy)->Name("W13/copy");
BENCHMARK(equal)->Name("W13/equal");
BENCHMARK(unequal)->Name("W13/unequal");
BENCHMARK(hash)->Name("W13/hash");
BENCHMARK(find)->Name("W13/find");
