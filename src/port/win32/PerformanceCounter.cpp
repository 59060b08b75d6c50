// The performance counter: the processor's own where the host trusts it, the host's clock otherwise.
#include "port/win32/Diagnostics.h"

#include <cstdint>
#include <cstdio>
#include <string_view>
#include <ctime>
#if defined(__x86_64__)
#include <x86intrin.h>
#endif

namespace
{
constexpr std::int64_t NANOSECONDS = 1'000'000'000;

std::int64_t hostClock()
{
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<std::int64_t>(now.tv_sec) * NANOSECONDS + now.tv_nsec;
}

#if defined(__x86_64__)
std::int64_t processorCounter()
{
    return static_cast<std::int64_t>(__rdtsc());
}

/// Whether the counter runs at one rate and alike on all processors: the host checks that, and says what it found.
bool hostTrustsProcessor()
{
    char source[4] = {};
    std::FILE *file = std::fopen("/sys/devices/system/clocksource/clocksource0/current_clocksource", "r");
    if (!file)
        return false;
    const bool isProcessor = std::fgets(source, sizeof(source), file) && source == std::string_view("tsc");
    std::fclose(file);
    return isProcessor;
}

/// Both clocks at one moment: of several readings the one that was least interrupted.
struct Moment
{
    std::int64_t counter = 0;
    std::int64_t nanoseconds = 0;

    Moment()
    {
        std::int64_t shortest = INT64_MAX;
        for (int i = 0; i < 16; ++i)
        {
            const std::int64_t before = processorCounter();
            const std::int64_t clock = hostClock();
            const std::int64_t length = processorCounter() - before;
            if (length >= shortest)
                continue;
            shortest = length;
            counter = before + length / 2;
            nanoseconds = clock;
        }
    }
};

/// Ticks a second of the processor's counter; 0 where it is of no use.
std::int64_t measureProcessorRate()
{
    if (!hostTrustsProcessor())
        return 0;
    // Long enough for a rate that is right to a few millionths.
    constexpr timespec pause{0, 4'000'000};
    const Moment first;
    nanosleep(&pause, nullptr);
    const Moment second;
    const auto ticks = static_cast<double>(second.counter - first.counter);
    return static_cast<std::int64_t>(ticks * NANOSECONDS / static_cast<double>(second.nanoseconds - first.nanoseconds));
}
#else
std::int64_t processorCounter()
{
    return 0;
}

std::int64_t measureProcessorRate()
{
    return 0;
}
#endif

/// Ticks a second of the processor's counter, measured when the program is loaded; 0: the host's clock counts.
const std::int64_t processorRate = measureProcessorRate();
} // namespace

BOOL QueryPerformanceCounter(LARGE_INTEGER *count)
{
    count->QuadPart = processorRate ? processorCounter() : hostClock();
    return TRUE;
}

BOOL QueryPerformanceFrequency(LARGE_INTEGER *frequency)
{
    frequency->QuadPart = processorRate ? processorRate : NANOSECONDS;
    return TRUE;
}
