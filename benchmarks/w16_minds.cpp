// W16: creatures that perceive, think, plan and steer on a map of noise: a frame of their minds.
#include "MindsLevel.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <ctime>
#include <map>

namespace
{
constexpr int WARM_UP = 120; ///< frames, in which everything sees, hears and plans for the first time

/// Processor time of this thread.
double now()
{
    timespec time;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) + 1e-9 * double(time.tv_nsec);
}

double percentile(std::vector<double> values, double share)
{
    std::sort(values.begin(), values.end());
    return values[static_cast<std::size_t>(share * double(values.size() - 1))];
}

/// What a run of a number of creatures took and did.
struct MindsRun
{
    std::vector<double> frames; ///< seconds of each
    MindsLevel::Counts counts;
    std::uint64_t hash = 0; ///< of all transforms at its end

    explicit MindsRun(int creatures)
    {
        MindsLevel level(creatures);
        for (int frame = 0; frame < WARM_UP + MindsLevel::FRAMES; ++frame)
        {
            level.move(frame);
            const double begin = now();
            level.doFrame();
            if (frame >= WARM_UP)
                frames.push_back(now() - begin);
        }
        counts = level.getCounts();
        hash = level.hashOfTransforms();
    }
};

/// The runs of a number of creatures: the first one, which others are held against, and the last one.
struct Runs
{
    MindsRun first, last;

    explicit Runs(int creatures) : first(creatures), last(creatures) {}
};

Runs &runsOf(int creatures)
{
    static std::map<int, Runs> all;
    return all.try_emplace(creatures, creatures).first->second;
}

void mindsFrame(benchmark::State &state)
{
    const auto creatures = static_cast<int>(state.range(0)), share = static_cast<int>(state.range(1));
    for (auto _ : state)
    {
        Runs &runs = runsOf(creatures);
        if (share == 50) // the other row shows the same run
            runs.last = MindsRun(creatures);
        const MindsRun &run = runs.last;
        state.counters["ns_frame"] = percentile(run.frames, double(share) / 100) * 1e9;
        state.counters["check"] = run.hash == runs.first.hash;
        state.counters["ticks"] = run.counts.ticks;
        state.counters["sight_lines"] = run.counts.sightLines;
        state.counters["lights"] = run.counts.lights;
        state.counters["sounds"] = run.counts.sounds;
        state.counters["search_frames"] = run.counts.searchFrames;
        state.counters["under_way"] = run.counts.underWay;
        state.counters["knowing"] = run.counts.knowing;
    }
}
} // namespace

BENCHMARK(mindsFrame)
    ->Name("W16/frame")
    ->ArgsProduct({{50, 500}, {50, 99}})
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
