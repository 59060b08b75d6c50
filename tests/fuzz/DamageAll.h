// DamageAll: runs a loader on damaged copies of whole files.
#pragma once

#include "fuzz/FuzzRun.h"
#include "fuzz/Mutation.h"

#include <gtest/gtest.h>

#include <unistd.h>

constexpr unsigned longestLoad = 20; ///< seconds; a loader that takes longer hangs

/// What an undamaged file of a kind looks like.
struct Sample
{
    const char *kind;
    Bytes bytes;
};

/// Runs a loader on damaged copies of each sample; the sound sample itself comes first.
template <class Load>
void damageAll(const std::vector<Sample> &samples, Load load)
{
    const FuzzRun &run = fuzzRun();
    for (const Sample &sample : samples)
    {
        EXPECT_TRUE(load(sample.bytes)) << "the sound " << sample.kind;
        for (std::uint64_t round = run.first; round < run.first + run.rounds && !testing::Test::HasFailure(); ++round)
        {
            SCOPED_TRACE(testing::Message() << sample.kind << ", --first=" << round << " --seed=" << run.seed);
            noteRound(sample.kind, round);
            const Bytes damaged = Mutation(run.seed, round)(sample.bytes);
            alarm(longestLoad);
            load(damaged);
            alarm(0);
        }
    }
}
