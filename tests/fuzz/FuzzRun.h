// FuzzRun: how many damaged files a run loads, and how to tell which one it fell over.
#pragma once

#include <cstdint>

/// Settings of the run, from the program's own arguments.
struct FuzzRun
{
    std::uint64_t rounds = 2500; ///< damaged files of each kind; --rounds=N
    std::uint64_t first = 0;     ///< number of the first one; --first=N
    std::uint64_t seed = 1;      ///< --seed=N
};

/// The settings in force.
FuzzRun &fuzzRun();

/// Notes what is being loaded; a crash prints it with the words that repeat it.
void noteRound(const char *kind, std::uint64_t round);
