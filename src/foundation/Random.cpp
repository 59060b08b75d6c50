// Random: the engine's generator and the small generators for scripts and tests.
#include "foundation/Random.h"

#include <limits>

namespace
{

// A linear congruential generator modulo 2^32; its low bits have short periods and are dropped.
constexpr std::uint32_t MULTIPLIER = 1664525;
constexpr std::uint32_t INCREMENT = 1013904223;

std::uint32_t state = 1;
unsigned lastSeed = 1;

} // namespace

int engineRand()
{
    state = state * MULTIPLIER + INCREMENT;
    return static_cast<int>((state >> 16) & ENGINE_RAND_MAX);
}

void seedEngineRand(unsigned seed)
{
    state = seed;
    lastSeed = seed;
}

unsigned engineSeed()
{
    return lastSeed;
}

std::uint32_t engineRandState()
{
    return state;
}

std::int32_t MersenneTwisterRandom::generate()
{
    return static_cast<std::int32_t>(generator() >> 1);
}

std::int32_t MersenneTwisterRandom::min() const
{
    return 0;
}

std::int32_t MersenneTwisterRandom::max() const
{
    return std::numeric_limits<std::int32_t>::max();
}

std::int32_t ConstantBSRandom::generate()
{
    return value;
}

std::int32_t ConstantBSRandom::min() const
{
    return value;
}

std::int32_t ConstantBSRandom::max() const
{
    return value;
}

std::int32_t SequentialBSRandom::generate()
{
    const std::int32_t current = value;
    value = static_cast<std::int32_t>(static_cast<std::uint32_t>(value) + static_cast<std::uint32_t>(step));
    return current;
}

std::int32_t SequentialBSRandom::min() const
{
    return std::numeric_limits<std::int32_t>::min();
}

std::int32_t SequentialBSRandom::max() const
{
    return std::numeric_limits<std::int32_t>::max();
}
