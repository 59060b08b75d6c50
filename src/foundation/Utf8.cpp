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

std::string utf8Of(char32_t character)
{
    if (character < 0x80)
        return std::string(1, static_cast<char>(character));
    if (character > 0x10FFFF || (character >= 0xD800 && character < 0xE000))
        return std::string();
    const int more = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
    constexpr unsigned leads[] = {0x00, 0xC0, 0xE0, 0xF0};
    std::string text(1, static_cast<char>(leads[more] | character >> (6 * more)));
    for (int shift = 6 * (more - 1); shift >= 0; shift -= 6)
        text += static_cast<char>(0x80u | (character >> shift & 0x3Fu));
    return text;
}
