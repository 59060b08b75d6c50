// KVString: bodies, making and taking apart of strings.
#include "foundation/KVString.h"

#include "foundation/Allocators.h"
#include "foundation/StringTable.h"
#include "foundation/TextBuffer.h"
#include "port/win32/ProgramImage.h"

#include <boost/format.hpp>

#include <algorithm>
#include <cstring>
#include <new>
#include <string_view>

static_assert(sizeof(String) == sizeof(void *), "a string is one pointer");

namespace
{

std::uint32_t hashText(std::string_view text)
{
    std::uint32_t h = 0;
    for (const char c : text)
        h ^= (h << 6) + (h >> 2) + static_cast<std::uint32_t>(static_cast<signed char>(c)) + 0x9E3779B9u;
    return h;
}

StringTable &internedStrings()
{
    // Never destroyed: strings of static duration outlive everything that could own it.
    static StringTable *const table = new StringTable;
    return *table;
}

StringPrivate *makeBody(std::size_t length, std::size_t ownedBytes)
{
    // Not destroyed either, and made before the first string is.
    static AllocationCategory *const category = new AllocationCategory("strings");
    void *const memory = ballocate(DefaultAllocatorGroup(), *category, sizeof(StringPrivate) + ownedBytes);
    if (!memory)
        throw std::bad_alloc();
    return ::new (memory) StringPrivate{1, 0, length, false, nullptr};
}

/// The literals met last, by address, so that a repeated use of one costs no hashing.
struct KnownLiteral
{
    const char *text;
    StringPrivate *body;
};
constexpr std::size_t KNOWN_LITERALS = 2048;
constinit KnownLiteral knownLiterals[KNOWN_LITERALS] = {};

KnownLiteral &knownLiteralFor(const char *text)
{
    // Literals stand close together; a multiplicative hash spreads neighbours over the table.
    const auto address = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(text));
    return knownLiterals[(address * 0x9E3779B1u) >> 21];
}
static_assert(KNOWN_LITERALS == 1u << (32 - 21));

StringPrivate *internBody(std::string_view text, bool mayLink)
{
    const std::uint32_t hash = hashText(text);
    if (StringPrivate *const known = internedStrings().find(text, hash))
        return known;
    StringPrivate *const body = mayLink ? StringPrivate::createAndLinkOnly(text.data(), text.size())
                                        : StringPrivate::createAndCopy(text.data(), text.size());
    body->hash = hash;
    internedStrings().add(body);
    return body;
}

} // namespace

void StringPrivate::delRef()
{
    if (refCount.fetch_sub(1, std::memory_order_acq_rel) == 1)
        deallocate(this);
}

StringPrivate *StringPrivate::createNew(std::size_t length)
{
    if (length == 0)
        return nullptr;
    StringPrivate *const body = makeBody(length, length + 1);
    body->ownBytes()[length] = 0;
    body->bytes = body->ownBytes();
    return body;
}

StringPrivate *StringPrivate::createAndCopy(const char *start, std::size_t length)
{
    StringPrivate *const body = createNew(length);
    if (body)
        std::memcpy(body->ownBytes(), start, length);
    return body;
}

StringPrivate *StringPrivate::createAndLinkOnly(const char *loc, std::size_t length)
{
    if (length == 0)
        return nullptr;
    StringPrivate *const body = makeBody(length, 0);
    body->bytes = loc;
    return body;
}

String String::fromStaticCString(const char *src)
{
    if (!src || !*src)
        return String();
    KnownLiteral &known = knownLiteralFor(src);
    if (known.text == src)
        return String(known.body);

    const bool isLiteral = port::isInProgramImage(src);
    StringPrivate *const body = internBody(src, isLiteral);
    // Elsewhere another text may come to stand at the same address.
    if (isLiteral)
        known = {src, body};
    return String(body);
}

String String::copyFromCString(const char *src, std::size_t length)
{
    return String(StringPrivate::createAndCopy(src, length));
}

String String::copyFromCString(const char *src)
{
    return src ? copyFromCString(src, std::strlen(src)) : String();
}

String String::copyFromCharVector(const std::vector<char> &src)
{
    return copyFromCString(src.data(), src.size());
}

String String::copyFrom(const std::string &src)
{
    return copyFromCString(src.data(), src.size());
}

String String::copyFrom(const boost::format &src)
{
    return copyFrom(src.str());
}

String String::copyFrom(const char *src)
{
    return copyFromCString(src);
}

String String::copyFrom(const char *src, std::size_t length)
{
    return copyFromCString(src, length);
}

String String::copyFrom(const std::vector<char> &src)
{
    return copyFromCharVector(src);
}

String String::format(const String &fmt, ...)
{
    va_list args;
    // The standard asks for a parameter that is not a reference; the compilers used here take any.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wvarargs"
    va_start(args, fmt);
#pragma GCC diagnostic pop
    String result = vformat(fmt, args);
    va_end(args);
    return result;
}

String String::format(const char *fmt, ...)
{
    va_list args;
    va_start(args, fmt);
    String result = vformat(fmt, args);
    va_end(args);
    return result;
}

String String::vformat(const String &fmt, va_list args)
{
    TextBuffer text;
    text.appendFormat(fmt.toCString(), args);
    return copyFromCString(text.data(), text.size());
}

String String::vformat(const char *fmt, va_list args)
{
    TextBuffer text;
    text.appendFormat(fmt, args);
    return copyFromCString(text.data(), text.size());
}

String String::intern() const
{
    if (empty() || isInterned())
        return *this;
    return String(internBody({begin(), size()}, false));
}

String String::findInterned() const noexcept
{
    if (empty() || isInterned())
        return *this;
    return String(internedStrings().find({begin(), size()}, hash_value(*this)));
}

std::size_t String::fixIndex(ssize_t idx) const noexcept
{
    const auto length = static_cast<ssize_t>(size());
    if (idx < 0)
        idx = std::max<ssize_t>(idx + length, 0);
    return static_cast<std::size_t>(std::min(idx, length));
}

String String::slice(ssize_t first, ssize_t last) const
{
    const std::size_t from = fixIndex(first);
    const std::size_t to = fixIndex(last);
    if (from == size() || to <= from)
        return String();
    return copyFromCString(begin() + from, to - from);
}

bool String::startsWith(const String &rhs) const noexcept
{
    return rhs.size() <= size() && std::memcmp(begin(), rhs.begin(), rhs.size()) == 0;
}

std::vector<char> String::toCharVector() const
{
    return {begin(), end()};
}

bool String::operator<(const String &rhs) const noexcept
{
    if (data == rhs.data)
        return false;
    const int order = std::memcmp(begin(), rhs.begin(), std::min(size(), rhs.size()));
    return order != 0 ? order < 0 : size() < rhs.size();
}

String String::operator+(const String &rhs) const
{
    if (empty())
        return rhs;
    if (rhs.empty())
        return *this;
    StringPrivate *const sum = StringPrivate::createNew(size() + rhs.size());
    std::memcpy(sum->ownBytes(), begin(), size());
    std::memcpy(sum->ownBytes() + size(), rhs.begin(), rhs.size());
    return String(sum);
}

bool String::equalBytes(const String &rhs) const noexcept
{
    const StringPrivate &left = *body();
    const StringPrivate &right = *rhs.body();
    return left.length == right.length && std::memcmp(left.bytes, right.bytes, left.length) == 0;
}

std::uint32_t String::computeHash() const noexcept
{
    return body()->hash = hashText({begin(), size()});
}
