#include "port/fmod/events/SmoothedPath.h"

#include "port/fmod/output/LowpassGain.h"

#include <algorithm>
#include <cmath>

namespace port
{

namespace
{
constexpr float HOLD_SECONDS = 0.25F;
} // namespace

void SmoothedPath::tell(const SoundPath &path)
{
    if (told.lowpass != path.lowpass)
        toldLowpass = lowpassGain(path.lowpass);
    told = path;
    held = HOLD_SECONDS;
}

void SmoothedPath::advance(const FMOD_VECTOR &own, const GlideStep &step)
{
    const bool counts = held > 0;
    held = std::max(0.0F, held - step.seconds);
    if (!counts && gain == 1 && lowpass == 1 && reverb == 1 && off.x == 0 && off.y == 0 && off.z == 0)
    {
        fresh = false;
        return;
    }
    const auto glide = [&](float &value, float goal) { value = fresh ? goal : step.move(value, goal); };
    glide(off.x, counts ? told.apparent.x - own.x : 0);
    glide(off.y, counts ? told.apparent.y - own.y : 0);
    glide(off.z, counts ? told.apparent.z - own.z : 0);
    glide(gain, counts ? told.gain : 1);
    glide(lowpass, counts ? toldLowpass : 1);
    glide(reverb, counts ? told.reverb : 1);
    fresh = false;
}

} // namespace port
