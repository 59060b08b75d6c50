#include "physics/doors/LeafDrive.h"

#include <algorithm>
#include <cmath>

float LeafDrive::advance(float way, const Manner &manner, float seconds)
{
    const float direction = way < 0.f ? -1.f : 1.f;
    const float left = way * direction, before = speed * direction;
    const float gathered = std::min(before + manner.topSpeed / manner.startTime * seconds, manner.topSpeed);
    // The speed after the frame from which the rest of the way suffices to stop evenly:
    // v*v = 2*d*(left - (before+v)/2*t).
    const float deceleration = manner.topSpeed * manner.topSpeed / (2.f * manner.easing);
    const float half = 0.5f * deceleration * seconds;
    const float square = half * half + 2.f * deceleration * (left - 0.5f * before * seconds);
    const float stoppable = square > 0.f ? std::max(std::sqrt(square) - half, 0.f) : 0.f;
    const float after = std::min(gathered, stoppable);

    const float moved = 0.5f * (before + after) * seconds;
    if (left - moved < ARRIVED)
    {
        speed = 0.f;
        return way;
    }
    speed = after * direction;
    return moved * direction;
}

void LeafDrive::setSpeed(float val)
{
    speed = std::isfinite(val) ? val : 0.f;
}
