#include "platform/sound/SoundVolume.h"

#include "foundation/Logger.h"

#include <algorithm>
#include <cmath>

float volumeFrom(float val, float last, const String &of)
{
    if (val >= 0 && val <= 1)
        return val;
    const float taken = std::isfinite(val) ? std::clamp(val, 0.f, 1.f) : last;
    KV_LOGF(Logger_::I_WARNING, "The volume of %s lies in 0..1: it was set to %g and is %g.", of.toCString(),
            static_cast<double>(val), static_cast<double>(taken));
    return taken;
}
