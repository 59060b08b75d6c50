#include "rendering/frame/FrameLimiter.h"

#include <algorithm>

void FrameLimiter::setRate(double framesPerSecond)
{
    rate = std::max(framesPerSecond, 0.0);
}

double FrameLimiter::waitAfter(double now)
{
    if (rate <= 0)
        return 0;
    const double period = 1 / rate;
    due = std::clamp(due + period, now, now + period);
    return due - now;
}
