// TextBuffer: text put together on the stack, with formatting of its own.
#pragma once

#include "foundation/KVString.h"

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>

/// Text under construction; allocates only beyond 512 bytes. Always zero-terminated.
///
/// Formats like printf in the C locale, whatever the locale of the process.
class TextBuffer
{
public:
    TextBuffer() { local[0] = 0; }
    TextBuffer(const TextBuffer &) = delete;
    TextBuffer &operator=(const TextBuffer &) = delete;

    void append(const char *bytes, std::size_t count)
    {
        char *const target = reserve(count);
        std::memcpy(target, bytes, count);
        commit(target + count);
    }
    void append(const String &bytes) { append(bytes.begin(), bytes.size()); }
    void append(const char *bytes) { append(bytes, std::strlen(bytes)); }
    void append(char character) { append(&character, 1); }
    void appendRepeated(char character, std::size_t count);
    void appendInteger(std::int64_t value);
    /// Appends in the manner of printf. A conversion that printf does not know is appended as it stands.
    void appendFormat(const char *fmt, va_list args) __attribute__((format(printf, 2, 0)));
    void clear() { commit(begin); }

    /// Room for `count` more bytes and a terminating zero.
    /// @return where they begin; commit() says how far they were written
    char *reserve(std::size_t count)
    {
        if (count >= static_cast<std::size_t>(limit - end))
            grow(count);
        return end;
    }
    /// Ends the text at `newEnd`, within the room reserved.
    void commit(char *newEnd)
    {
        end = newEnd;
        *end = 0;
    }

    const char *data() const { return begin; }
    std::size_t size() const { return static_cast<std::size_t>(end - begin); }

private:
    void grow(std::size_t count);

    char local[512];
    std::unique_ptr<char[]> heap;        ///< used when the text outgrows `local`
    char *begin = local;                 ///< start of the text
    char *end = local;                   ///< its terminating zero
    char *limit = local + sizeof(local); ///< end of the room
};
