#include "port/fmod/output/LowpassGain.h"

#include <algorithm>
#include <cmath>

namespace port
{

namespace
{
constexpr float SHELF = 5000; ///< Hz, where the library's filter has half of its effect
}

float lowpassGain(float cutoff)
{
    if (!(cutoff < OPEN_LOWPASS))
        return 1;
    // The square below the shelf; at it -3 dB, the shelf's middle; 1 above.
    const float square = (cutoff / SHELF) * (cutoff / SHELF);
    return std::max(LEAST_LOWPASS_GAIN, square / std::sqrt(1 + square * square));
}

} // namespace port
