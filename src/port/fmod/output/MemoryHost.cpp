#include "port/fmod/output/MemoryHost.h"

#include <AL/al.h>
#include <AL/alext.h>

#include <cmath>

namespace port
{

ALCdevice *MemoryHost::open()
{
    const auto openLoopback =
        reinterpret_cast<LPALCLOOPBACKOPENDEVICESOFT>(alcGetProcAddress(nullptr, "alcLoopbackOpenDeviceSOFT"));
    return openLoopback ? openLoopback(nullptr) : nullptr;
}

std::vector<ALCint> MemoryHost::getAttributes() const
{
    return {ALC_FORMAT_CHANNELS_SOFT, ALC_STEREO_SOFT, ALC_FORMAT_TYPE_SOFT, ALC_FLOAT_SOFT, ALC_FREQUENCY, rate,
            ALC_OUTPUT_LIMITER_SOFT,  ALC_TRUE};
}

void MemoryHost::render(ALCdevice *device, float *stereo, int count)
{
    static const auto renderSamples =
        reinterpret_cast<LPALCRENDERSAMPLESSOFT>(alcGetProcAddress(nullptr, "alcRenderSamplesSOFT"));
    renderSamples(device, stereo, count);
    pass(count);
}

long MemoryHost::takeFrames(double seconds)
{
    if (!(seconds > 0) || !std::isfinite(seconds))
        return 0;
    remainder += seconds * rate;
    // A time meant as whole frames must not lose one to rounding.
    const double whole = std::floor(remainder + 1e-6);
    remainder -= whole;
    return static_cast<long>(whole);
}

} // namespace port
