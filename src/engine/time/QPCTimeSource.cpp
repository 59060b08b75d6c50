#include "engine/time/QPCTimeSource.h"

#include "port/win32/Diagnostics.h"

TimerTicks QPCTimeSource::ticksPerSecond()
{
    LARGE_INTEGER frequency;
    QueryPerformanceFrequency(&frequency);
    return frequency.QuadPart;
}

TimerTicks QPCTimeSource::newFrame()
{
    const TimerTicks start = now();
    const TimerTicks ticks = start - lastFrameStart;
    lastFrameStart = start;
    return ticks;
}

TimerTicks QPCTimeSource::now()
{
    LARGE_INTEGER counter;
    QueryPerformanceCounter(&counter);
    return counter.QuadPart;
}
