#include "engine/time/TimeKeeper.h"

#include "engine/time/TimeSystem.h"

#include "foundation/Logger.h"

namespace
{
// Ticks wrap at 64 bits. The unsigned detour says so to the compiler, to which a signed overflow is an error.
TimerTicks wrapped(std::uint64_t ticks)
{
    return static_cast<TimerTicks>(ticks);
}

TimerTicks wrappingProduct(TimerTicks a, TimerTicks b)
{
    return wrapped(static_cast<std::uint64_t>(a) * static_cast<std::uint64_t>(b));
}

TimerTicks unscaled(TimerTicks ticks, TimerTicks multiplier, int shift)
{
    if (multiplier == 0)
        return 0;
    const std::uint64_t shifted = static_cast<std::uint64_t>(ticks) << shift;
    // The one quotient that leaves 64 bits is the smallest number by -1.
    return multiplier == -1 ? wrapped(0 - shifted) : wrapped(shifted) / multiplier;
}
} // namespace

void TimeKeeper::newFrame(TimerTicks wallTickCount)
{
    const TimerTicks ticks = wrappingProduct(wallTickCount, multiplier) >> shift;
    value = wrapped(static_cast<std::uint64_t>(value) + static_cast<std::uint64_t>(ticks));
    frameTime = ticks;
    frameTimeSeconds = getSystemDeref<TimeSystem>().toSeconds(ticks);
}

void TimeKeeper::reset(TimerTicks wallTicks)
{
    value = wallTicks;
    frameTime = 0;
    frameTimeSeconds = 0.0;
}

void TimeKeeper::setScaling(TimerTicks multiplier_, int shift_)
{
    if (shift_ < 0 || shift_ > 63)
    {
        KV_LOGF(Logger_::I_ERROR, "%s: setScaling with a shift of %i; it must be within 0..63", toString().toCString(),
                shift_);
        return;
    }
    multiplier = multiplier_;
    shift = shift_;
}

TimerTicks TimeKeeper::getWallTimeValue() const
{
    return unscaled(value, multiplier, shift);
}

TimerTicks TimeKeeper::getWallTimeFrameTime() const
{
    return unscaled(frameTime, multiplier, shift);
}
