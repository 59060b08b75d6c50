// The rendering benchmark: the scene of W10, or a level, drawn by the engine through its own frame.
//
//   bench_render N lights(0..16) shadow(0|1) [picture.png|-] [frames] [profile]
//   bench_render LEVEL 0 0 [picture.png|-] [frames] [profile]
//
// Prints the median frame, the CPU time of the drawing thread and of all, draw calls and changes of state; with
// "profile" the time of each pass as well.
#include "PassClock.h"
#include "W10Scene.h"

#include "engine/levels/GameLoop.h"
#include "engine/systems/SystemSystem.h"
#include "engine/time/TimeSystem.h"
#include "object/python/PythonCalls.h"
#include "port/d3d9/D3D9Extras.h"
#include "rendering/device/GraphicsSystem2.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <functional>
#include <string>

namespace
{

constexpr int WARM_UP_FRAMES = 5;

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return (values[(values.size() - 1) / 2] + values[values.size() / 2]) / 2;
}

double cpuMilliseconds(clockid_t clock)
{
    timespec time = {};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
}

/// One frame of the scene that the first argument names.
std::function<void()> makeScene(int argc, char **argv)
{
    const char *what = argc > 1 ? argv[1] : "1000";
    if (!std::isdigit(static_cast<unsigned char>(*what)))
    {
        getSystemDeref<GameLoopSystem>().setCurrentlyActiveCoordinator(loadLevel(String::copyFromCString(what)));
        return [] { getSystemDeref<GameLoopSystem>().doFrame(); };
    }
    const int lights = argc > 2 ? std::atoi(argv[2]) : 16;
    const bool shadow = argc > 3 && std::atoi(argv[3]);
    return [scene = std::make_shared<W10Scene>(std::atoi(what), lights, shadow)] { scene->frame(); };
}

void measure(const std::function<void()> &frame, int frames, const char *what)
{
    std::vector<double> milliseconds;
    const double threadBegin = cpuMilliseconds(CLOCK_THREAD_CPUTIME_ID);
    const double processBegin = cpuMilliseconds(CLOCK_PROCESS_CPUTIME_ID);
    for (int i = 0; i < frames; ++i)
    {
        const auto begin = std::chrono::steady_clock::now();
        frame();
        milliseconds.push_back(
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count());
    }
    const port::FrameStats stats = port::lastFrameStats(getSystemDeref<GraphicsSystem2>().getDevice());
    std::printf("N=%s median_ms=%.1f min_ms=%.1f thread_cpu_ms=%.1f cpu_ms=%.1f draws=%u triangles=%llu "
                "state_changes=%u targets=%u uploads=%u\n",
                what, median(milliseconds), *std::min_element(milliseconds.begin(), milliseconds.end()),
                (cpuMilliseconds(CLOCK_THREAD_CPUTIME_ID) - threadBegin) / frames,
                (cpuMilliseconds(CLOCK_PROCESS_CPUTIME_ID) - processBegin) / frames, stats.draws,
                static_cast<unsigned long long>(stats.triangles), stats.stateChanges, stats.targetChanges,
                stats.uploads);
}

} // namespace

int main(int argc, char **argv)
{
    SystemSystem::bootstrap();
    initPython();
    const std::function<void()> frame = makeScene(argc, argv);
    TimeSystem &time = getSystemDeref<TimeSystem>();
    time.checkTPS();
    time.newFrame();
    for (int i = 0; i < WARM_UP_FRAMES; ++i)
        frame();
    const int frames = argc > 5 ? std::max(1, std::atoi(argv[5])) : 10;
    measure(frame, frames, argc > 1 ? argv[1] : "1000");
    if (argc > 6 && std::strcmp(argv[6], "profile") == 0)
    {
        PassClock clock;
        profilerSink = &clock;
        for (int i = 0; i < frames; ++i)
            frame();
        profilerSink = nullptr;
        clock.print(frames);
    }
    if (argc > 4 && std::strcmp(argv[4], "-") != 0)
    {
        getSystemDeref<GraphicsSystem2>().captureScreen(String::copyFromCString(argv[4]));
        frame();
    }
    std::fflush(stdout);
    std::_Exit(0); // the driver's threads need no orderly end
}
