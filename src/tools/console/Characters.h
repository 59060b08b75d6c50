// Characters: texts counted and cut as UTF-8 has their characters.
#pragma once

#include "foundation/Utf8.h"

#include <cstddef>
#include <string_view>

/// Bytes of the longest beginning of a text that has no more than so many characters.
inline std::size_t bytesOf(std::string_view text, std::size_t characters)
{
    std::size_t at = 0;
    for (std::size_t count = 0; at < text.size(); ++at)
        if (beginsCharacter(text[at]) && ++count > characters)
            break;
    return at;
}

inline std::size_t charactersOf(std::string_view text)
{
    std::size_t count = 0;
    for (const char byte : text)
        count += beginsCharacter(byte) ? 1u : 0u;
    return count;
}
