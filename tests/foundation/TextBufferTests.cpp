// Formatting: every conversion against the C library's own.
#include "foundation/TextBuffer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <random>
#include <string>

namespace
{

std::string ours(const char *fmt, ...)
{
    va_list args;
    va_start(args, fmt);
    TextBuffer text;
    text.appendFormat(fmt, args);
    va_end(args);
    return {text.data(), text.size()};
}

template <class... Args>
std::string theirs(const char *fmt, Args... args)
{
    char text[2048];
    std::snprintf(text, sizeof text, fmt, args...);
    return text;
}

template <class... Args>
void expectSame(const char *fmt, Args... args)
{
    EXPECT_EQ(ours(fmt, args...), theirs(fmt, args...)) << fmt;
}

} // namespace

#pragma GCC diagnostic ignored "-Wformat-security"

TEST(TextBuffer, FormatsIntegersLikeTheCLibrary)
{
    for (const char *fmt :
         {"%d", "%i", "%5d", "%-5d|", "%05d", "%+d", "% d",   "%.3d",   "%8.3d", "%-8.3d|", "%08.3d", "%.0d", "%u",
          "%x", "%X", "%#x", "%#X",   "%o",   "%#o", "%#.5o", "%#010x", "%hd",   "%hhd",    "%hu",    "%hhx"})
        for (const int value :
             {0, 1, -1, 42, -4711, 70'000, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
            expectSame(fmt, value);
    for (const char *fmt : {"%ld", "%lld", "%zu", "%lx", "%jd", "%20ld", "%-20ld|"})
        for (const long value : {0L, -1L, std::numeric_limits<long>::min(), std::numeric_limits<long>::max()})
            expectSame(fmt, value);
}

TEST(TextBuffer, FormatsFloatsLikeTheCLibrary)
{
    const double infinity = std::numeric_limits<double>::infinity();
    for (const char *fmt :
         {"%f",    "%.0f", "%.1f", "%.2f", "%.3f", "%.9f", "%.12f", "%10.2f", "%-10.2f|", "%010.2f", "%+.1f", "% .1f",
          "%#.0f", "%e",   "%.3e", "%E",   "%g",   "%.3g", "%G",    "%#g",    "%a",       "%.120f",  "%08g"})
        for (const double value :
             {0.0,  -0.0,     0.5,  1.5,    2.5,  0.125,  -0.375, 1.005,    9.995,     0.05,        99.995,
              1e-7, 123456.0, 1e15, 4.5e15, 1e22, -1e100, 1e300,  infinity, -infinity, std::nan("")})
            expectSame(fmt, value);
}

TEST(TextBuffer, RoundsRandomNumbersToTheLastDigitExactly)
{
    std::mt19937_64 random(14);
    for (int i = 0; i < 20'000; ++i)
    {
        const double magnitude = std::ldexp(static_cast<double>(random() >> 11), static_cast<int>(random() % 100) - 90);
        const double nearTie = static_cast<double>(random() % 2'000'000) / 2000.0;
        const int precision = static_cast<int>(random() % 10);
        expectSame("%.*f", precision, magnitude);
        expectSame("%.*f", precision, nearTie);
        expectSame("%.*f", precision, -static_cast<double>(static_cast<float>(nearTie)));
        expectSame("%.*g", precision, magnitude);
    }
}

TEST(TextBuffer, FormatsTextCharactersAndPointersLikeTheCLibrary)
{
    expectSame("%s and %10s and %-10s|", "one", "two", "three");
    expectSame("%.2s|%*s|%-*s|%.*s", "abc", 6, "x", 6, "y", 1, "zz");
    expectSame("%c%5c%-5c|%%", 'a', 'b', 'c');
    expectSame("%p %20p", reinterpret_cast<void *>(0x1234), reinterpret_cast<void *>(0));
    EXPECT_EQ(ours("%s", nullptr), "(null)");
    EXPECT_EQ(ours("%.1s", "\xFF\xFE"), "\xFF");
}

TEST(TextBuffer, KeepsWhatIsNoConversion)
{
    EXPECT_EQ(ours("100%"), "100%");
    EXPECT_EQ(ours("%y and %"), "%y and %");
    EXPECT_EQ(ours(""), "");
}

TEST(TextBuffer, OutgrowsItsStackWithoutLosingText)
{
    const std::string half(400, 'x');
    EXPECT_EQ(ours("%s%d%s", half.c_str(), 7, half.c_str()), half + "7" + half);
    EXPECT_EQ(ours("%1000d", 7), std::string(999, ' ') + "7");

    TextBuffer text;
    std::string expected;
    for (int i = 0; i < 3000; ++i)
    {
        text.appendInteger(i);
        expected += std::to_string(i);
    }
    EXPECT_EQ(text.data(), expected);
}
