#include "engine/time/BSTimeSource.h"

#include "foundation/Logger.h"

TimerTicks BSTimeSource::newFrame()
{
    return ticksPerSecond() / frameRate;
}

void BSTimeSource::setFrameRate(std::int64_t val)
{
    if (val < 1)
    {
        KV_LOGF(Logger_::I_ERROR, "%s: a frame rate of %lli frames a second is impossible; it stays at %lli",
                toString().toCString(), static_cast<long long>(val), static_cast<long long>(frameRate));
        return;
    }
    frameRate = val;
}
