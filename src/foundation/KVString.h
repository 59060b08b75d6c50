// KVString: the engine's immutable, reference-counted, interning string.
#pragma once

#include "foundation/IStringizable.h"

#include <boost/format/format_fwd.hpp>

#include <atomic>
#include <climits>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

typedef std::ptrdiff_t ssize_t;

/// Shared body of the strings that hold one text.
///
/// The text stands behind the header with a terminating zero, or is foreign static text that outlives the run.
/// Interned bodies live for the whole run and are not counted.
struct StringPrivate
{
    std::atomic<std::int32_t> refCount; ///< strings that share this body; does not move once interned
    std::uint32_t hash;                 ///< hash_value of the text, 0 until it is first asked for
    std::size_t length;                 ///< bytes of the text, without a terminating zero
    bool interned;                      ///< the only body of its text
    const char *bytes;                  ///< the text

    void addRef();
    void delRef();

    /// Body with room for `length` bytes, left to its maker, and a terminating zero; null for length 0.
    static StringPrivate *createNew(std::size_t length);
    /// Body with a copy of the text; null for length 0.
    static StringPrivate *createAndCopy(const char *start, std::size_t length);
    /// Body that refers to zero-terminated text elsewhere; null for length 0.
    static StringPrivate *createAndLinkOnly(const char *loc, std::size_t length);
    /// The bytes of a body that createNew made, for its maker to fill in.
    char *ownBytes() { return reinterpret_cast<char *>(this + 1); }
};

/// Immutable text that is cheap to copy and compare.
///
/// One pointer; the empty string owns nothing. Bytes are not interpreted; they may hold zeroes. Two interned strings
/// compare by pointer, and copying one touches no counter, which is why names come from SCS or intern().
class String : public IStringizable
{
public:
    typedef const char *const_iterator;
    typedef char value_type;

    String() noexcept = default;
    String(const String &other) noexcept : data(other.data) { retain(); }
    String(String &&other) noexcept : data(other.data) { other.data = 0; }
    ~String() { release(); }
    String &operator=(const String &other) noexcept
    {
        const std::uintptr_t old = data;
        other.retain();
        data = other.data;
        releaseWord(old);
        return *this;
    }
    String &operator=(String &&other) noexcept
    {
        if (this == &other)
            return *this;
        const std::uintptr_t old = data;
        data = other.data;
        other.data = 0;
        releaseWord(old);
        return *this;
    }

    /// Interned string of a text that lives as long as the program, which is not copied.
    ///
    /// Text outside the program's own image may be short-lived and is copied.
    /// @cost one table look-up; the first use of a text allocates one small header
    static String fromStaticCString(const char *src);
    static String copyFromCString(const char *src, std::size_t length);
    /// Copy of a zero-terminated text; null counts as empty.
    static String copyFromCString(const char *src);
    static String copyFromCharVector(const std::vector<char> &src);
    static String copyFrom(const std::string &src);
    static String copyFrom(const boost::format &src);
    static String copyFrom(const char *src);
    static String copyFrom(const char *src, std::size_t length);
    static String copyFrom(const std::vector<char> &src);

    /// Text in the manner of printf, independent of the locale.
    static String format(const String &fmt, ...);
    static String format(const char *fmt, ...) __attribute__((format(printf, 1, 2)));
    static String vformat(const String &fmt, va_list args);
    static String vformat(const char *fmt, va_list args) __attribute__((format(printf, 1, 0)));

    /// The one interned string of this text.
    /// @cost one table look-up
    String intern() const;
    /// The interned string of this text if there is one already, the empty string otherwise.
    String findInterned() const noexcept;
    bool isInterned() const noexcept { return (data & INTERNED_BIT) != 0; }
    /// Number that two interned strings share exactly when their texts are equal; it differs from run to run.
    std::uintptr_t getIdentity() const noexcept { return data; }

    /// Part of the text; negative indices count from the end, both are clamped to the text.
    String slice(ssize_t first = 0, ssize_t last = INT_MAX) const;
    bool startsWith(const String &rhs) const noexcept;

    /// The text with a terminating zero, never null; valid while a string of this body lives.
    const char *toCString() const noexcept { return data ? body()->bytes : NOTHING; }
    const String &toString() const noexcept { return *this; }
    std::vector<char> toCharVector() const;
    std::size_t size() const noexcept { return data ? body()->length : 0; }
    bool empty() const noexcept { return data == 0; }
    const_iterator begin() const noexcept { return toCString(); }
    const_iterator end() const noexcept { return begin() + size(); }
    /// Character at an index, without a bounds check.
    char operator[](std::size_t index) const noexcept { return toCString()[index]; }

    bool operator==(const String &rhs) const noexcept
    {
        // Two interned strings, the common case, are equal only as one body.
        if ((data & rhs.data & INTERNED_BIT) == 0) [[unlikely]]
            return data == rhs.data || (data && rhs.data && equalBytes(rhs));
        return data == rhs.data;
    }
    bool operator!=(const String &rhs) const noexcept { return !(*this == rhs); }
    /// Byte order, unsigned; a text that begins another comes before it.
    bool operator<(const String &rhs) const noexcept;
    String operator+(const String &rhs) const;

    /// Hash of the text, the same in every run.
    /// @cost constant after the first call on a body
    friend std::uint32_t hash_value(const String &text) noexcept
    {
        if (!text.data)
            return 0;
        const std::uint32_t known = text.body()->hash;
        return known ? known : text.computeHash();
    }

private:
    // Set in `data` beside the address when the body is interned, so that copies and comparisons need not read it.
    static constexpr std::uintptr_t INTERNED_BIT = 1;
    // One place for all: a literal would have another address in every function that it is compiled into.
    static constexpr char NOTHING[] = "";

    explicit String(StringPrivate *made) noexcept : data(reinterpret_cast<std::uintptr_t>(made))
    {
        if (made && made->interned)
            data |= INTERNED_BIT;
    }
    StringPrivate *body() const noexcept { return reinterpret_cast<StringPrivate *>(data & ~INTERNED_BIT); }
    static bool isCounted(std::uintptr_t word) noexcept { return word != 0 && (word & INTERNED_BIT) == 0; }
    void retain() const noexcept
    {
        if (isCounted(data))
            body()->addRef();
    }
    void release() noexcept { releaseWord(data); }
    static void releaseWord(std::uintptr_t word) noexcept
    {
        if (isCounted(word))
            reinterpret_cast<StringPrivate *>(word)->delRef();
    }
    std::size_t fixIndex(ssize_t idx) const noexcept;
    bool equalBytes(const String &rhs) const noexcept;
    std::uint32_t computeHash() const noexcept;

    std::uintptr_t data = 0; ///< address of the shared StringPrivate and INTERNED_BIT; 0 for the empty string
};

/// Interned string of a literal, which is not copied.
inline String SCS(const char *str)
{
    return String::fromStaticCString(str);
}

template <>
struct std::hash<String>
{
    std::size_t operator()(const String &text) const noexcept { return hash_value(text); }
};

inline void StringPrivate::addRef()
{
    refCount.fetch_add(1, std::memory_order_relaxed);
}
