// HostStream: text gathered for a file of the host and written in large pieces.
#pragma once

#include <cstddef>
#include <string_view>

namespace port
{

/// One destination of the process's output, on a descriptor of the host.
///
/// Constant-initialised, so that static initialisers may use it; never closes what it was given. What it gathered is
/// written by flush(), which a signal handler may call. Once a piece cannot be written it drops all that follows.
class HostStream
{
public:
    /// Sends what follows to a descriptor, or with 0 nowhere, and forgets an earlier failure.
    void attach(int newDescriptor);

    /// Gathers a text, or writes it at once on a stream that is immediate.
    void write(std::string_view text);
    /// Writes what is gathered.
    void flush();
    /// From now on every text is written at once: somebody reads along, or the process is about to end.
    void setImmediate(bool value) { immediate = value; }

    bool isAttached() const { return descriptor != 0 && failure == 0; }
    /// The descriptor; meant for those who write to it by other means, behind a flush.
    int getDescriptor() const { return descriptor; }
    /// The host's number for why a piece could not be written; 0 while all is well.
    int getFailure() const { return failure; }

private:
    // Holds some hundred lines, so that a busy log costs one system call for many of them.
    static constexpr std::size_t BUFFER_SIZE = 64 * 1024;

    int descriptor = 0; ///< 0, which is nobody's output, while there is none
    int failure = 0;
    bool immediate = false;
    std::size_t used = 0; ///< bytes waiting in `buffer`
    long lastFlushMs = 0; ///< by the coarse monotonic clock
    char buffer[BUFFER_SIZE] = {};
};

} // namespace port
