// test_fuzz [--rounds=N] [--first=N] [--seed=N]: loads damaged files through the real loaders.
#include "fuzz/FuzzRun.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

// Known to the sanitizers by these names; without them the first is null and the second unused.
extern "C" void __sanitizer_set_death_callback(void (*callback)()) __attribute__((weak));
extern "C" const char *__ubsan_default_options()
{
    return "abort_on_error=1:print_stacktrace=1";
}

namespace
{

const char *currentKind = "nothing";
std::uint64_t currentRound = 0;

void printRound()
{
    std::fprintf(stderr, "\nIt fell over %s; again: test_fuzz --rounds=1 --first=%llu --seed=%llu\n", currentKind,
                 static_cast<unsigned long long>(currentRound), static_cast<unsigned long long>(fuzzRun().seed));
}

void onCrash(int signal)
{
    printRound();
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

bool takeNumber(const char *word, const char *name, std::uint64_t &number)
{
    const std::size_t length = std::strlen(name);
    if (std::strncmp(word, name, length) != 0)
        return false;
    number = std::strtoull(word + length, nullptr, 10);
    return true;
}

} // namespace

FuzzRun &fuzzRun()
{
    static FuzzRun run;
    return run;
}

void noteRound(const char *kind, std::uint64_t round)
{
    currentKind = kind;
    currentRound = round;
}

int main(int count, char **words)
{
    testing::InitGoogleTest(&count, words);
    for (int i = 1; i < count; ++i)
        if (!takeNumber(words[i], "--rounds=", fuzzRun().rounds) &&
            !takeNumber(words[i], "--first=", fuzzRun().first) && !takeNumber(words[i], "--seed=", fuzzRun().seed))
        {
            std::fprintf(stderr, "test_fuzz: unknown word '%s'\n", words[i]);
            return 2;
        }
    if (__sanitizer_set_death_callback)
        __sanitizer_set_death_callback(printRound);
    for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGALRM})
        if (!__sanitizer_set_death_callback || signal == SIGALRM || signal == SIGABRT)
            std::signal(signal, onCrash);
    return RUN_ALL_TESTS();
}
