// W15: five hundred sounds in a house of 256 rooms: a frame on the game's thread, and the mixing of what is heard.
#include "SoundLevel.h"

#include "platform/sound/SoundSystem.h"
#include "port/fmod/FmodExtras.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <ctime>

namespace
{
using House = bench::SoundHouse;

/// Processor time of this thread.
double now()
{
    timespec time;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) + 1e-9 * double(time.tv_nsec);
}

double secondsOf(const auto &step)
{
    const double begin = now();
    step();
    return now() - begin;
}

double percentile(std::vector<double> values, double share)
{
    std::sort(values.begin(), values.end());
    return values[static_cast<std::size_t>(share * double(values.size() - 1))];
}

/// What a run of the house took: seconds of each frame, and of mixing.
struct HouseRun
{
    std::vector<double> frames;
    double mixing = 0, heardSeconds = 0, power = 0, samples = 0;

    HouseRun()
    {
        SoundLevel level;
        FMOD::EventSystem &audio = *getSystemDeref<SoundSystem>().getEventSystem();
        std::vector<float> stereo;
        for (int frame = 0; frame < House::frames; ++frame)
        {
            level.move(frame);
            frames.push_back(secondsOf([&] { level.doFrame(); }));
            mixing += secondsOf([&] { port::renderAudio(audio, House::frame, stereo); });
            heardSeconds += double(stereo.size()) / 2 / House::rate;
            for (const float value : stereo)
                power += double(value) * double(value);
            samples += double(stereo.size());
        }
    }
    double loudness() const { return 10 * std::log10(power / samples); }
};

void soundFrame(benchmark::State &state)
{
    for (auto _ : state)
    {
        const HouseRun run;
        state.counters["ns_frame"] = percentile(run.frames, double(state.range(0)) / 100) * 1e9;
        state.counters["check"] = run.loudness();
    }
}

void soundMix(benchmark::State &state)
{
    for (auto _ : state)
    {
        const HouseRun run;
        state.counters["ns_mix"] = run.mixing / run.heardSeconds * 1e9;
        state.counters["check"] = run.loudness();
    }
}
} // namespace

BENCHMARK(soundFrame)->Name("W15a/frame")->Arg(50)->Arg(99)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(soundMix)->Name("W15b/mix")->Iterations(1)->Unit(benchmark::kMillisecond);
