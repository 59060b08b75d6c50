#include "engine/time/PlayedTimeSource.h"

#include "foundation/Logger.h"
#include "port/win32/Diagnostics.h"
#include "port/win32/Waiting.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace
{
/// A frame that took longer than this, as one that loads a level, is waited for no longer, seconds.
constexpr double LONGEST_WAIT = 1.0;

double platformSeconds()
{
    LARGE_INTEGER counter;
    LARGE_INTEGER frequency;
    QueryPerformanceCounter(&counter);
    QueryPerformanceFrequency(&frequency);
    return static_cast<double>(counter.QuadPart) / static_cast<double>(frequency.QuadPart);
}
} // namespace

TimerTicks PlayedTimeSource::newFrame()
{
    if (paced)
        waitForFrame();
    reading = static_cast<TimerTicks>(static_cast<std::uint64_t>(reading) + static_cast<std::uint64_t>(frameTicks));
    return frameTicks;
}

void PlayedTimeSource::waitForFrame()
{
    const double now = platformSeconds();
    const double length = static_cast<double>(frameTicks) / static_cast<double>(tickRate);
    const double wait = std::min(due - now, LONGEST_WAIT);
    if (wait > 0)
        Sleep(static_cast<DWORD>(std::floor(wait * 1000)));
    due = std::max(due, now) + length;
}

void PlayedTimeSource::setPaced(bool val)
{
    paced = val;
    due = 0;
}

void PlayedTimeSource::setTickRate(std::int64_t val)
{
    if (val < 1)
        KV_LOGF(Logger_::I_ERROR, "PlayedTimeSource: a clock of %lld ticks a second is none; it stays at %lld",
                static_cast<long long>(val), static_cast<long long>(tickRate));
    else
        tickRate = val;
}
