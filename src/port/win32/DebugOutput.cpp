// DebugOutput: the debug string operation on the error stream, written in large pieces.
#include "port/win32/Diagnostics.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string_view>
#include <unistd.h>

namespace
{

// Holds some hundred lines, so that a busy log costs one system call for many of them.
constexpr std::size_t BUFFER_SIZE = 64 * 1024;
// A reader of the stream sees a quiet program's lines after this time at the latest, given that another line follows.
constexpr long LONGEST_DELAY_NS = 100'000'000;
constexpr int FATAL_SIGNALS[] = {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT, SIGTRAP};

char buffer[BUFFER_SIZE];
std::size_t used = 0;   // bytes waiting in `buffer`
timespec lastFlush{};   // by the coarse monotonic clock
bool immediate = false; // write every text at once: a terminal reads along, or the process is about to end
bool prepared = false;

void writeOut(const char *text, std::size_t length)
{
    while (length > 0)
    {
        const ssize_t written = ::write(STDERR_FILENO, text, length);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return;
        text += written;
        length -= static_cast<std::size_t>(written);
    }
}

// A crash must not swallow the lines that led to it.
void flushAndDie(int signal)
{
    writeOut(buffer, used);
    used = 0;
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void installCrashFlush(int signal)
{
    struct sigaction current
    {
    };
    const bool isDefault = sigaction(signal, nullptr, &current) == 0 && current.sa_handler == SIG_DFL;
    if (isDefault)
        std::signal(signal, flushAndDie);
}

void flushAtExit()
{
    port::flushDebugOutput();
    immediate = true;
}

void prepare()
{
    prepared = true;
    immediate = ::isatty(STDERR_FILENO) != 0;
    std::atexit(flushAtExit);
    for (const int signal : FATAL_SIGNALS)
        installCrashFlush(signal);
}

bool isDue(const timespec &now)
{
    return (now.tv_sec - lastFlush.tv_sec) * 1'000'000'000L + (now.tv_nsec - lastFlush.tv_nsec) > LONGEST_DELAY_NS;
}

void gather(std::string_view text)
{
    while (!text.empty())
    {
        const std::size_t fitting = std::min(text.size(), BUFFER_SIZE - used);
        std::memcpy(buffer + used, text.data(), fitting);
        used += fitting;
        text.remove_prefix(fitting);
        if (used == BUFFER_SIZE)
            port::flushDebugOutput();
    }
}

} // namespace

void OutputDebugStringA(LPCSTR text)
{
    if (!text)
        return;
    if (!prepared)
        prepare();
    gather(text);

    timespec now;
    clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    if (immediate || isDue(now))
        port::flushDebugOutput();
}

namespace port
{

void flushDebugOutput()
{
    if (used == 0)
        return;
    writeOut(buffer, used);
    used = 0;
    clock_gettime(CLOCK_MONOTONIC_COARSE, &lastFlush);
}

} // namespace port
