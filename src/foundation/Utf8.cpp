#include "foundation/Utf8.h"

namespace
{

/// What a first byte promises: how many bytes follow it, and the range of the first of them.
///
/// That range is what keeps out overlong forms, surrogates and numbers that are too large.
struct Lead
{
    int continuations; ///< -1: no character begins with this byte
    unsigned char lowest = 0x80;
    unsigned char highest = 0xBF;
};

Lead classify(unsigned char first)
{
    if (first < 0x80)
        return {0};
    if (first < 0xC2 || first > 0xF4)
        return {-1};
    if (first < 0xE0)
        return {1};
    if (first < 0xF0)
        return {2, static_cast<unsigned char>(first == 0xE0 ? 0xA0 : 0x80),
                static_cast<unsigned char>(first == 0xED ? 0x9F : 0xBF)};
    return {3, static_cast<unsigned char>(first == 0xF0 ? 0x90 : 0x80),
            static_cast<unsigned char>(first == 0xF4 ? 0x8F : 0xBF)};
}

} // namespace

char32_t nextUtf8Character(const char *&at, const char *end)
{
    const auto first = static_cast<unsigned char>(*at++);
    Lead lead = classify(first);
    if (lead.continuations <= 0)
        return lead.continuations == 0 ? first : REPLACEMENT_CHARACTER;
    char32_t character = first & (0x3Fu >> lead.continuations);
    for (int i = 0; i < lead.continuations; ++i)
    {
        const unsigned char next = at == end ? 0 : static_cast<unsigned char>(*at);
        if (next < lead.lowest || next > lead.highest)
            return REPLACEMENT_CHARACTER;
        character = character << 6 | (next & 0x3Fu);
        lead = {lead.continuations};
        ++at;
    }
    return character;
}
