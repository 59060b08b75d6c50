// Random: the engine's one source of chance, and generators for scripts and tests.
#pragma once

#include <cstdint>
#include <random>

/// Largest number that engineRand yields.
constexpr int ENGINE_RAND_MAX = 32767;

/// Next number of the engine's generator, 0..32767.
int engineRand();

/// Restarts the engine's generator; equal seeds give equal sequences. A run that never calls it starts from seed 1.
void seedEngineRand(unsigned seed);

/// What the engine's generator was last restarted with.
unsigned engineSeed();

/// What all further numbers of the engine's generator follow from.
std::uint32_t engineRandState();

/// Random number in [0, 1).
inline float frand()
{
    return static_cast<float>(engineRand()) * 3.0517578e-5f;
}

/// Random number from min up to, and not including, max.
inline float randomFloat(float min, float max)
{
    return min + static_cast<float>(engineRand()) * (max - min) * 3.0517578e-5f;
}

/// Generates rand number between -1 and 1, where values close to 0 are more likely.
inline float randomBinormal()
{
    const float first = static_cast<float>(engineRand()) * 3.051851e-5f;
    return first - static_cast<float>(engineRand()) * 3.051851e-5f;
}

/// Source of integers.
class Random
{
public:
    virtual std::int32_t generate() = 0;
    virtual std::int32_t min() const = 0;
    virtual std::int32_t max() const = 0;
    virtual ~Random() = default;
};

/// Uniform non-negative integers of a generator of its own.
class MersenneTwisterRandom : public Random
{
public:
    explicit MersenneTwisterRandom(std::uint32_t seed = std::mt19937::default_seed) : generator(seed) {}
    std::int32_t generate() override;
    std::int32_t min() const override;
    std::int32_t max() const override;

private:
    std::mt19937 generator;
};

/// The same number every time.
class ConstantBSRandom : public Random
{
public:
    explicit ConstantBSRandom(std::int32_t value) : value(value) {}
    std::int32_t generate() override;
    std::int32_t min() const override;
    std::int32_t max() const override;

private:
    std::int32_t value;
};

/// Numbers at equal steps, wrapping around the range of 32 bits.
class SequentialBSRandom : public Random
{
public:
    explicit SequentialBSRandom(std::int32_t start = 0, std::int32_t step = 1) : value(start), step(step) {}
    std::int32_t generate() override;
    std::int32_t min() const override;
    std::int32_t max() const override;

private:
    std::int32_t value; ///< next number
    std::int32_t step;
};
