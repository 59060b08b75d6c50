// TextBuffer: growth, and the printf conversions.
#include "foundation/TextBuffer.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <string>
#include <string_view>

namespace
{

enum class Width
{
    INT,
    CHAR,
    SHORT,
    LONG,
    LONG_DOUBLE
};

/// One conversion of a format: "%-08.3lf" and its like.
struct Conversion
{
    bool left = false;
    bool plus = false;
    bool space = false;
    bool alternate = false;
    bool zero = false;
    int width = 0;
    int precision = -1; ///< -1 where none is given
    Width argument = Width::INT;
    char type = 0;
};

/// va_list that functions can pass on by reference.
struct Arguments
{
    va_list list;
};

bool takeFlag(char c, Conversion &conversion)
{
    switch (c)
    {
    case '-':
        return conversion.left = true;
    case '+':
        return conversion.plus = true;
    case ' ':
        return conversion.space = true;
    case '#':
        return conversion.alternate = true;
    case '0':
        return conversion.zero = true;
    default:
        return false;
    }
}

int takeNumber(const char *&fmt, Arguments &args)
{
    if (*fmt == '*')
    {
        ++fmt;
        return va_arg(args.list, int);
    }
    int number = 0;
    for (; *fmt >= '0' && *fmt <= '9'; ++fmt)
        number = std::min(number, 100'000) * 10 + (*fmt - '0');
    return number;
}

Width takeWidth(const char *&fmt)
{
    Width width = Width::INT;
    for (;; ++fmt)
    {
        if (*fmt == 'h')
            width = width == Width::SHORT ? Width::CHAR : Width::SHORT;
        else if (*fmt == 'l' || *fmt == 'z' || *fmt == 'j' || *fmt == 't' || *fmt == 'q')
            width = Width::LONG; // all of 64 bits on the host
        else if (*fmt == 'L')
            width = Width::LONG_DOUBLE;
        else
            return width;
    }
}

/// Reads what follows a '%'.
Conversion takeConversion(const char *&fmt, Arguments &args)
{
    Conversion conversion;
    while (takeFlag(*fmt, conversion))
        ++fmt;
    conversion.width = takeNumber(fmt, args);
    if (conversion.width < 0)
    {
        conversion.left = true;
        conversion.width = -conversion.width;
    }
    if (*fmt == '.')
    {
        ++fmt;
        conversion.precision = std::max(takeNumber(fmt, args), -1);
    }
    conversion.argument = takeWidth(fmt);
    conversion.type = *fmt;
    if (*fmt)
        ++fmt;
    return conversion;
}

/// Appends sign or prefix and body, padded to the conversion's width.
void appendPadded(TextBuffer &out, const Conversion &conversion, std::string_view prefix, std::string_view body,
                  bool zeroPadding)
{
    const std::size_t length = prefix.size() + body.size();
    const std::size_t width = static_cast<std::size_t>(conversion.width);
    const std::size_t padding = width > length ? width - length : 0;
    const bool padWithZeroes = zeroPadding && conversion.zero && !conversion.left;
    if (!conversion.left && !padWithZeroes)
        out.appendRepeated(' ', padding);
    out.append(prefix.data(), prefix.size());
    if (padWithZeroes)
        out.appendRepeated('0', padding);
    out.append(body.data(), body.size());
    if (conversion.left)
        out.appendRepeated(' ', padding);
}

std::string_view signOf(bool negative, const Conversion &conversion)
{
    if (negative)
        return "-";
    if (conversion.plus)
        return "+";
    return conversion.space ? " " : "";
}

void appendDigits(TextBuffer &out, const Conversion &conversion, std::string_view prefix, std::uint64_t value)
{
    const int base = conversion.type == 'o' ? 8 : (conversion.type | 0x20) == 'x' ? 16 : 10;
    char digits[64];
    char *const end =
        value == 0 && conversion.precision == 0 ? digits : std::to_chars(digits, std::end(digits), value, base).ptr;
    if (conversion.type == 'X')
        std::transform(digits, end, digits, [](char c) { return c >= 'a' ? static_cast<char>(c - 0x20) : c; });
    const std::string_view body(digits, static_cast<std::size_t>(end - digits));
    if (conversion.precision <= static_cast<int>(body.size()))
        return appendPadded(out, conversion, prefix, body, conversion.precision < 0);
    const std::string longBody =
        std::string(static_cast<std::size_t>(conversion.precision) - body.size(), '0').append(body);
    appendPadded(out, conversion, prefix, longBody, false);
}

void appendSigned(TextBuffer &out, const Conversion &conversion, Arguments &args)
{
    std::int64_t value = conversion.argument == Width::LONG ? va_arg(args.list, std::int64_t) : va_arg(args.list, int);
    if (conversion.argument == Width::SHORT)
        value = static_cast<short>(value);
    else if (conversion.argument == Width::CHAR)
        value = static_cast<signed char>(value); // NOLINT(bugprone-signed-char-misuse): a number, not a letter
    const auto magnitude = value < 0 ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
    appendDigits(out, conversion, signOf(value < 0, conversion), magnitude);
}

void appendUnsigned(TextBuffer &out, Conversion conversion, Arguments &args)
{
    std::uint64_t value =
        conversion.argument == Width::LONG ? va_arg(args.list, std::uint64_t) : va_arg(args.list, unsigned);
    if (conversion.argument == Width::SHORT)
        value = static_cast<unsigned short>(value);
    else if (conversion.argument == Width::CHAR)
        value = static_cast<unsigned char>(value);
    std::string_view prefix = "";
    if (conversion.alternate && value != 0 && conversion.type == 'x')
        prefix = "0x";
    if (conversion.alternate && value != 0 && conversion.type == 'X')
        prefix = "0X";
    if (conversion.alternate && conversion.type == 'o')
    {
        // The first digit has to be a zero, which a precision may already bring.
        char digits[32];
        const auto length = std::to_chars(digits, std::end(digits), value, 8).ptr - digits;
        if (conversion.precision <= length && (value != 0 || conversion.precision == 0))
            conversion.precision = static_cast<int>(value == 0 ? 1 : length + 1);
    }
    appendDigits(out, conversion, prefix, value);
}

void appendPointer(TextBuffer &out, const Conversion &conversion, Arguments &args)
{
    const auto address = reinterpret_cast<std::uintptr_t>(va_arg(args.list, void *));
    if (address == 0)
        return appendPadded(out, conversion, "", "(nil)", false);
    Conversion hexadecimal = conversion;
    hexadecimal.type = 'x';
    appendDigits(out, hexadecimal, "0x", address);
}

void appendText(TextBuffer &out, const Conversion &conversion, Arguments &args)
{
    const char *text = va_arg(args.list, const char *);
    if (!text)
        text = "(null)";
    const std::size_t length =
        conversion.precision < 0 ? std::strlen(text) : strnlen(text, static_cast<std::size_t>(conversion.precision));
    appendPadded(out, conversion, "", {text, length}, false);
}

/// Digits of a finite magnitude in fixed notation for the common case; null where to_chars has to do it.
///
/// The product with a power of ten is rounded once, so that only a result exactly between two last digits needs its
/// rounding error looked at.
char *writeFixed(char *out, double magnitude, int precision)
{
    static constexpr double POWERS[] = {1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9};
    constexpr double LARGEST_EXACT = 4503599627370496.0; // 2^52: above it halves are not represented
    if (precision >= static_cast<int>(std::size(POWERS)))
        return nullptr;
    const double scaled = magnitude * POWERS[precision];
    if (!(scaled < LARGEST_EXACT))
        return nullptr;
    auto units = static_cast<std::uint64_t>(scaled);
    const double rest = scaled - static_cast<double>(units);
    if (rest == 0.5)
    {
        const double error = std::fma(magnitude, POWERS[precision], -scaled);
        units += error > 0 || (error == 0 && (units & 1));
    }
    else
        units += rest > 0.5;

    const auto divisor = static_cast<std::uint64_t>(POWERS[precision]);
    out = std::to_chars(out, out + 20, units / divisor).ptr;
    if (precision == 0)
        return out;
    *out = '.';
    std::uint64_t fraction = units % divisor;
    for (int digit = precision; digit > 0; --digit, fraction /= 10)
        out[digit] = static_cast<char>('0' + fraction % 10);
    return out + 1 + precision;
}

/// For what to_chars has no counterpart: hexadecimal notation, the alternate form, long double.
template <class Float>
void appendBySnprintf(TextBuffer &out, const Conversion &conversion, Float value)
{
    std::string fmt = "%";
    for (const auto &[isSet, flag] :
         {std::pair(conversion.left, '-'), std::pair(conversion.plus, '+'), std::pair(conversion.space, ' '),
          std::pair(conversion.alternate, '#'), std::pair(conversion.zero, '0')})
        if (isSet)
            fmt += flag;
    fmt += "*.*";
    if (sizeof(Float) > sizeof(double))
        fmt += 'L';
    fmt += conversion.type;
    const int length = std::snprintf(nullptr, 0, fmt.c_str(), conversion.width, conversion.precision, value);
    if (length <= 0)
        return;
    char *const target = out.reserve(static_cast<std::size_t>(length) + 1);
    std::snprintf(target, static_cast<std::size_t>(length) + 1, fmt.c_str(), conversion.width, conversion.precision,
                  value);
    out.commit(target + length);
}

char *writeMagnitude(char *out, char *limit, double magnitude, const Conversion &conversion)
{
    const int precision = conversion.precision < 0 ? 6 : conversion.precision;
    switch (conversion.type | 0x20)
    {
    case 'e':
        return std::to_chars(out, limit, magnitude, std::chars_format::scientific, precision).ptr;
    case 'g':
        return std::to_chars(out, limit, magnitude, std::chars_format::general, precision).ptr;
    default:
        if (char *const end = writeFixed(out, magnitude, precision))
            return end;
        return std::to_chars(out, limit, magnitude, std::chars_format::fixed, precision).ptr;
    }
}

void appendFloat(TextBuffer &out, const Conversion &conversion, Arguments &args)
{
    if (conversion.argument == Width::LONG_DOUBLE)
        return appendBySnprintf(out, conversion, va_arg(args.list, long double));
    const double value = va_arg(args.list, double);
    constexpr int LONGEST_STACK_PRECISION = 100;
    if (conversion.alternate || (conversion.type | 0x20) == 'a' || conversion.precision > LONGEST_STACK_PRECISION)
        return appendBySnprintf(out, conversion, value);

    char digits[512]; // 309 digits before the point, at most 100 behind it
    const char *const end = std::isfinite(value)
                                ? writeMagnitude(digits, std::end(digits), std::fabs(value), conversion)
                                : std::to_chars(digits, std::end(digits), std::fabs(value)).ptr;
    std::string_view body(digits, static_cast<std::size_t>(end - digits));
    if (conversion.type <= 'Z')
        std::transform(body.begin(), body.end(), digits,
                       [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 0x20) : c; });
    appendPadded(out, conversion, signOf(std::signbit(value), conversion), body, std::isfinite(value));
}

void appendConversion(TextBuffer &out, const Conversion &conversion, std::string_view source, Arguments &args)
{
    switch (conversion.type)
    {
    case 'd':
    case 'i':
        return appendSigned(out, conversion, args);
    case 'u':
    case 'x':
    case 'X':
    case 'o':
        return appendUnsigned(out, conversion, args);
    case 's':
        return appendText(out, conversion, args);
    case 'c':
    {
        const char character = static_cast<char>(va_arg(args.list, int));
        return appendPadded(out, conversion, "", {&character, 1}, false);
    }
    case 'p':
        return appendPointer(out, conversion, args);
    case 'f':
    case 'F':
    case 'e':
    case 'E':
    case 'g':
    case 'G':
    case 'a':
    case 'A':
        return appendFloat(out, conversion, args);
    case '%':
        return out.append('%');
    default:
        out.append(source.data(), source.size());
    }
}

} // namespace

void TextBuffer::grow(std::size_t count)
{
    const std::size_t length = size();
    const std::size_t room = std::max(2 * static_cast<std::size_t>(limit - begin), length + count + 1);
    std::unique_ptr<char[]> larger(new char[room]);
    std::memcpy(larger.get(), begin, length + 1);
    heap = std::move(larger);
    begin = heap.get();
    end = begin + length;
    limit = begin + room;
}

void TextBuffer::appendRepeated(char character, std::size_t count)
{
    char *const target = reserve(count);
    std::memset(target, character, count);
    commit(target + count);
}

void TextBuffer::appendInteger(std::int64_t value)
{
    char *const target = reserve(20);
    commit(std::to_chars(target, target + 20, value).ptr);
}

void TextBuffer::appendFormat(const char *fmt, va_list args)
{
    Arguments copy;
    va_copy(copy.list, args);
    for (;;)
    {
        const char *const percent = std::strchr(fmt, '%');
        if (!percent)
            break;
        append(fmt, static_cast<std::size_t>(percent - fmt));
        fmt = percent + 1;
        const Conversion conversion = takeConversion(fmt, copy);
        appendConversion(*this, conversion, {percent, static_cast<std::size_t>(fmt - percent)}, copy);
    }
    append(fmt);
    va_end(copy.list);
}
