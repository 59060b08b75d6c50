#include "port/win32/WideText.h"

#include "port/win32/Diagnostics.h"

#include <cstring>

namespace
{
constexpr char32_t NOT_UTF8 = 0xFFFD;

/// Reads one character and moves past it; a byte that begins none stands for itself.
char32_t readCharacter(const unsigned char *&at, const unsigned char *end)
{
    const unsigned char lead = *at++;
    if (lead < 0x80)
        return lead;

    const int length = lead >= 0xF0 && lead < 0xF5 ? 3 : lead >= 0xE0 && lead < 0xF0 ? 2 : lead >= 0xC2 && lead < 0xE0;
    if (length == 0 || end - at < length)
        return NOT_UTF8;
    char32_t character = lead & (0x3F >> length);
    for (int i = 0; i < length; ++i)
    {
        if ((at[i] & 0xC0) != 0x80)
            return NOT_UTF8;
        character = (character << 6) | (at[i] & 0x3F);
    }

    static constexpr char32_t smallest[] = {0, 0x80, 0x800, 0x10000};
    const bool surrogate = character >= 0xD800 && character < 0xE000;
    if (character < smallest[length] || character > 0x10FFFF || surrogate)
        return NOT_UTF8;
    at += length;
    return character;
}

/// The character in one or two units.
int toUnits(char32_t character, WCHAR units[2])
{
    if (character < 0x10000)
    {
        units[0] = static_cast<WCHAR>(character);
        return 1;
    }
    units[0] = static_cast<WCHAR>(0xD800 + ((character - 0x10000) >> 10));
    units[1] = static_cast<WCHAR>(0xDC00 + ((character - 0x10000) & 0x3FF));
    return 2;
}
} // namespace

int MultiByteToWideChar(UINT, DWORD, LPCSTR bytes, int byteCount, LPWSTR wide, int wideCount)
{
    if (!bytes || byteCount == 0 || byteCount < -1 || wideCount < 0 || (wideCount > 0 && !wide))
    {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }

    const std::size_t length = byteCount < 0 ? std::strlen(bytes) + 1 : static_cast<std::size_t>(byteCount);
    const auto *at = reinterpret_cast<const unsigned char *>(bytes);
    const auto *end = at + length;
    int written = 0;
    while (at < end)
    {
        WCHAR units[2];
        const int count = toUnits(readCharacter(at, end), units);
        if (wideCount > 0 && written + count > wideCount)
        {
            SetLastError(ERROR_INSUFFICIENT_BUFFER);
            return 0;
        }
        if (wideCount > 0)
            std::memcpy(wide + written, units, count * sizeof(WCHAR));
        written += count;
    }
    return written;
}
