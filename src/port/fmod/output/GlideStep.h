// GlideStep: a time that passes, for values that glide to their goals.
#pragma once

#include <cmath>

namespace port
{

/// One step of all glides, which take some 80 ms.
struct GlideStep
{
    explicit GlideStep(float seconds) : seconds(seconds), left(std::exp(-seconds / CONSTANT)) {}

    /// A value moved on towards its goal; there at last.
    float move(float value, float goal) const
    {
        return std::abs(value - goal) < 1e-4F ? goal : goal + (value - goal) * left;
    }

    float seconds;
    float left; ///< of the way to a goal

private:
    static constexpr float CONSTANT = 0.03F; ///< s, of the exponential, which is done to the ear after 80 ms
};

} // namespace port
