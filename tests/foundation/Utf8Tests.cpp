#include "foundation/Utf8.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace
{

std::string encode(char32_t c)
{
    const auto tail = [c](int shift) { return static_cast<char>(0x80 | (c >> shift & 0x3F)); };
    if (c < 0x80)
        return {static_cast<char>(c)};
    if (c < 0x800)
        return {static_cast<char>(0xC0 | c >> 6), tail(0)};
    if (c < 0x10000)
        return {static_cast<char>(0xE0 | c >> 12), tail(6), tail(0)};
    return {static_cast<char>(0xF0 | c >> 18), tail(12), tail(6), tail(0)};
}

std::u32string decode(const std::string &text)
{
    std::u32string characters;
    const char *const end = text.data() + text.size();
    for (const char *at = text.data(); at != end;)
        characters += nextUtf8Character(at, end);
    return characters;
}

bool isCharacter(char32_t c)
{
    return c <= 0x10FFFF && (c < 0xD800 || c > 0xDFFF);
}

} // namespace

TEST(Utf8, EveryCharacterComesBack)
{
    std::string text;
    std::u32string characters;
    for (char32_t c = 1; c <= 0x10FFFF; c += c < 0x3000 ? 1 : 37)
        if (isCharacter(c))
        {
            text += encode(c);
            characters += c;
        }
    EXPECT_EQ(decode(text), characters);
}

TEST(Utf8, WhatIsNoCharacterIsReplacedAndTheTextGoesOn)
{
    const std::u32string one(1, REPLACEMENT_CHARACTER);
    EXPECT_EQ(decode("a\xFFz"), U"a" + one + U"z");
    EXPECT_EQ(decode("a\x80z"), U"a" + one + U"z") << "a continuation without a beginning";
    EXPECT_EQ(decode("\xC3"), one) << "the text ends within a character";
    EXPECT_EQ(decode("\xE2\x82z"), one + U"z") << "what could have begun a character is one fault";
    EXPECT_EQ(decode("\xC0\xAF"), one + one) << "a longer form than needed";
    EXPECT_EQ(decode("\xE0\x80\xAF"), one + one + one);
    EXPECT_EQ(decode("\xED\xA0\x80"), one + one + one) << "half a pair of another encoding";
    EXPECT_EQ(decode("\xF4\x90\x80\x80"), one + one + one + one) << "beyond the last character";
}

TEST(Utf8, NoiseGivesCharactersOnlyAndSoundTextWithinItSurvives)
{
    for (unsigned seed = 0; seed < 200; ++seed)
    {
        std::mt19937 random(seed);
        std::string noise(random() % 60, '\0');
        for (char &byte : noise)
            byte = static_cast<char>(random());
        // A copy of exactly this size, so that a sanitizer sees a read behind its end.
        const std::vector<char> exact(noise.begin(), noise.end());
        for (const char *at = exact.data(), *end = at + exact.size(); at != end;)
            ASSERT_TRUE(isCharacter(nextUtf8Character(at, end))) << "seed " << seed;
        const std::u32string decoded = decode(noise + "|Öl|");
        EXPECT_EQ(decoded.substr(decoded.size() - 4), U"|Öl|") << "seed " << seed;
    }
}
