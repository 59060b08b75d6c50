// Chance: the variation of what is started, repeatable by its seed.
#pragma once

#include <cstdint>

namespace port
{

/// A sequence of numbers that looks like chance; the same seed gives the same one.
class Chance
{
public:
    explicit Chance(std::uint64_t seed) : state(seed) {}

    /// 0 up to, not including, 1.
    float unit()
    {
        state += 0x9E3779B97F4A7C15U;
        std::uint64_t mixed = (state ^ (state >> 30)) * 0xBF58476D1CE4E5B9U;
        mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBU;
        return static_cast<float>((mixed ^ (mixed >> 31)) >> 40) / 16777216.0F;
    }
    /// -1 up to 1.
    float either() { return 2 * unit() - 1; }

private:
    std::uint64_t state;
};

} // namespace port
