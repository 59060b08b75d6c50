#include "port/process/HostStream.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <unistd.h>

namespace port
{

namespace
{
// A reader of the stream sees a quiet program's lines after this time at the latest, given that another line follows.
constexpr long LONGEST_DELAY_MS = 100;

long coarseMilliseconds()
{
    timespec now;
    clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    return now.tv_sec * 1000L + now.tv_nsec / 1'000'000;
}

/// Writes all of it; the host's number for what prevented that, 0 for nothing.
int writeOut(int descriptor, const char *text, std::size_t length)
{
    while (length > 0)
    {
        const ssize_t written = ::write(descriptor, text, length);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return written < 0 ? errno : ENOSPC;
        text += written;
        length -= static_cast<std::size_t>(written);
    }
    return 0;
}
} // namespace

void HostStream::attach(int newDescriptor)
{
    flush();
    descriptor = newDescriptor;
    failure = 0;
}

void HostStream::write(std::string_view text)
{
    if (!isAttached())
        return;
    while (!text.empty())
    {
        const std::size_t fitting = std::min(text.size(), BUFFER_SIZE - used);
        std::memcpy(buffer + used, text.data(), fitting);
        used += fitting;
        text.remove_prefix(fitting);
        if (used == BUFFER_SIZE)
            flush();
    }
    if (immediate || coarseMilliseconds() - lastFlushMs > LONGEST_DELAY_MS)
        flush();
}

void HostStream::flush()
{
    if (used == 0)
        return;
    const int formerError = errno;
    if (isAttached())
        failure = writeOut(descriptor, buffer, used);
    used = 0;
    lastFlushMs = coarseMilliseconds();
    errno = formerError;
}

} // namespace port
