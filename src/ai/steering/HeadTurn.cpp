#include "ai/steering/HeadTurn.h"

#include <algorithm>
#include <cmath>

void HeadTurn::advance(double seconds, double fastest, double quickening)
{
    if (std::isinf(quickening))
    {
        left = std::max(left - fastest * seconds, 0.0);
        speed = left > 0 ? fastest : 0;
        return;
    }
    speed = std::clamp(speed, -fastest, fastest);
    if (speed < 0)
        drive(seconds, -speed / quickening, quickening);
    if (speed * speed < 2 * quickening * left)
    {
        const double peak = std::min(fastest, std::sqrt(quickening * left + speed * speed / 2));
        drive(seconds, (peak - speed) / quickening, quickening);
        drive(seconds, left / speed - speed / (2 * quickening), 0);
    }
    brake(seconds, quickening);
}

/// Turns for a duration under an even change of speed, or for as long as there is time.
void HeadTurn::drive(double &seconds, double duration, double quickening)
{
    const double time = duration > 0 ? std::min(duration, seconds) : 0; // one that is no number is none
    left -= (speed + quickening * time / 2) * time;
    speed += quickening * time;
    seconds -= time;
}

/// Comes to rest at the end: by the quickening, and harder where the end has come nearer than that allows.
void HeadTurn::brake(double seconds, double quickening)
{
    if (seconds <= 0)
        return;
    const double slowing = left > 0 ? std::max(quickening, speed * speed / (2 * left)) : 0;
    if (left <= 0 || speed <= slowing * seconds)
    {
        left = speed = 0;
        return;
    }
    left = std::max(left - (speed - slowing * seconds / 2) * seconds, 0.0);
    speed -= slowing * seconds;
}
