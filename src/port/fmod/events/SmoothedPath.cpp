#include "port/fmod/events/SmoothedPath.h"

#include "port/fmod/output/LowpassGain.h"

#include <algorithm>
#include <cmath>

namespace port
{

namespace
{
constexpr float GLIDE_SECONDS = 0.03F; ///< of the exponential, which is done to the ear after 80 ms
constexpr float HOLD_SECONDS = 0.25F;
} // namespace

float glideShare(float seconds)
{
    return std::exp(-seconds / GLIDE_SECONDS);
}

void SmoothedPath::tell(const SoundPath &path)
{
    told = path;
    held = HOLD_SECONDS;
}

void SmoothedPath::advance(const FMOD_VECTOR &own, float seconds)
{
    const bool counts = held > 0;
    held = std::max(0.0F, held - seconds);
    if (!counts && gain == 1 && lowpass == 1 && reverb == 1 && off.x == 0 && off.y == 0 && off.z == 0)
    {
        fresh = false;
        return;
    }
    const float left = fresh ? 0 : glideShare(seconds);
    const auto glide = [left](float &value, float goal)
    { value = std::abs(value - goal) < 1e-4F ? goal : goal + (value - goal) * left; };
    fresh = false;
    glide(off.x, counts ? told.apparent.x - own.x : 0);
    glide(off.y, counts ? told.apparent.y - own.y : 0);
    glide(off.z, counts ? told.apparent.z - own.z : 0);
    glide(gain, counts ? told.gain : 1);
    glide(lowpass, counts ? lowpassGain(told.lowpass) : 1);
    glide(reverb, counts ? told.reverb : 1);
}

} // namespace port
