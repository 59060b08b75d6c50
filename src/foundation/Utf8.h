// Utf8: text as the characters it stands for.
#pragma once

#include <string>

/// Stands for what is no character: bad bytes, and what a font cannot show.
constexpr char32_t REPLACEMENT_CHARACTER = 0xFFFD;

/// The next character of a UTF-8 text, which is not empty; moves `at` behind it.
///
/// Bytes that are no UTF-8 (stray or missing continuations, overlong forms, surrogates, beyond U+10FFFF) give one
/// REPLACEMENT_CHARACTER for each longest run that could have begun a character, and the text goes on behind it.
char32_t nextUtf8Character(const char *&at, const char *end);

/// Whether a byte of a UTF-8 text is the first one of a character.
inline bool beginsCharacter(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0u) != 0x80u;
}

/// A character in UTF-8; empty for what is none.
std::string utf8Of(char32_t character);
