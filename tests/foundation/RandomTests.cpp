// Chance and noise: ranges, repeatability and the fixed pattern.
#include "foundation/PerlinNoise.h"
#include "foundation/Random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <vector>

namespace
{

std::vector<int> draw(unsigned seed)
{
    seedEngineRand(seed);
    std::vector<int> numbers(1000);
    std::generate(numbers.begin(), numbers.end(), engineRand);
    return numbers;
}

} // namespace

TEST(EngineRand, IsRepeatableBySeed)
{
    EXPECT_EQ(draw(7), draw(7));
    EXPECT_NE(draw(7), draw(8));
}

TEST(EngineRand, StaysInItsRangeAndFillsIt)
{
    seedEngineRand(1);
    int counts[16] = {};
    for (int i = 0; i < 160'000; ++i)
    {
        const int number = engineRand();
        ASSERT_GE(number, 0);
        ASSERT_LE(number, ENGINE_RAND_MAX);
        ++counts[number / 2048];
    }
    for (const int count : counts)
        EXPECT_NEAR(count, 10'000, 500);
}

TEST(EngineRand, FreeFunctionsKeepTheirBounds)
{
    seedEngineRand(1);
    float sum = 0;
    for (int i = 0; i < 100'000; ++i)
    {
        const float fraction = frand();
        ASSERT_TRUE(fraction >= 0 && fraction < 1);
        const float ranged = randomFloat(-3, 5);
        ASSERT_TRUE(ranged >= -3 && ranged < 5);
        const float binormal = randomBinormal();
        ASSERT_TRUE(binormal >= -1 && binormal <= 1);
        sum += binormal;
    }
    EXPECT_NEAR(sum / 100'000, 0, 0.01);
}

TEST(Random, TestGeneratorsAreConstantAndSequential)
{
    ConstantBSRandom constant(4);
    EXPECT_EQ(constant.generate(), 4);
    EXPECT_EQ(constant.generate(), 4);
    SequentialBSRandom sequence(std::numeric_limits<std::int32_t>::max() - 1);
    sequence.generate();
    EXPECT_EQ(sequence.generate(), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(sequence.generate(), std::numeric_limits<std::int32_t>::min());
    MersenneTwisterRandom twister;
    for (int i = 0; i < 100; ++i)
        EXPECT_GE(twister.generate(), 0);
}

TEST(PerlinNoise, KeepsItsPattern)
{
    const PerlinNoise noise;
    EXPECT_NEAR(noise.generateNoise(Vec4(3.14f, 42, 7)), 0.136920f, 1e-5f);
    // These lie next to gradients of the kinds 4 and 14, where the pattern has a rule of its own.
    EXPECT_NEAR(noise.generateNoise(Vec4(0.5f, 0.25f, 0.75f)), -0.487139f, 1e-5f);
    EXPECT_NEAR(noise.generateNoise(Vec4(-1.25f, 2.5f, -3.75f)), 0.101800f, 1e-5f);
    EXPECT_NEAR(noise.generateNoise(Vec4(255.5f, 255.25f, 255.75f)), -0.589237f, 1e-5f);
}

TEST(PerlinNoise, VanishesAtWholeCoordinatesAndRepeatsAfter256)
{
    const PerlinNoise noise;
    EXPECT_EQ(noise.generateNoise(Vec4(-7, 300, 12)), 0);
    EXPECT_EQ(noise.generateNoise(Vec4(0.5f, 0.25f, 0.75f)), noise.generateNoise(Vec4(256.5f, -255.75f, 0.75f)));
}
