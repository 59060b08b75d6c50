#include "Picture.h"

#include <algorithm>
#include <cstring>

namespace
{

// The header's flags and sizes, as published.
constexpr std::uint32_t headerSize = 124, pixelFormatSize = 32;
constexpr std::uint32_t hasCapsSizesFormatLevels = 0x1 | 0x2 | 0x4 | 0x1000 | 0x20000, hasLinearSize = 0x80000;
constexpr std::uint32_t isTextureWithLevels = 0x8 | 0x1000 | 0x400000;
constexpr std::uint32_t hasFourCC = 0x4, fourCCDxt1 = 0x31545844, magic = 0x20534444;
constexpr int channels = 3;

typedef int Texels[16][channels]; ///< of a block, row by row

void append(std::vector<std::byte> &file, std::uint32_t word)
{
    for (int shift = 0; shift < 32; shift += 8)
        file.push_back(static_cast<std::byte>(word >> shift));
}

unsigned pack565(const int (&color)[channels])
{
    return unsigned((color[0] * 31 + 127) / 255) << 11 | unsigned((color[1] * 63 + 127) / 255) << 5 |
           unsigned((color[2] * 31 + 127) / 255);
}

void unpack565(unsigned packed, int (&color)[channels])
{
    const unsigned red = packed >> 11, green = (packed >> 5) & 63, blue = packed & 31;
    color[0] = static_cast<int>(red << 3 | red >> 2);
    color[1] = static_cast<int>(green << 2 | green >> 4);
    color[2] = static_cast<int>(blue << 3 | blue >> 2);
}

/// A block's texels; beyond the picture's edge its last ones repeat.
void takeBlock(const Picture &picture, unsigned left, unsigned top, Texels &texels)
{
    for (unsigned i = 0; i < 16; ++i)
    {
        const std::size_t x = std::min(left + i % 4, picture.width - 1), y = std::min(top + i / 4, picture.height - 1);
        const std::uint8_t *pixel = &picture.bytes[(y * picture.width + x) * 4];
        std::copy(pixel, pixel + channels, texels[i]);
    }
}

/// The two colors a block is mixed of: the ends of the range of its widest channel, and what the others have there.
void findEnds(const Texels &texels, int (&low)[channels], int (&high)[channels])
{
    int sums[channels] = {}, widest = 0;
    std::copy(texels[0], texels[0] + channels, low);
    std::copy(texels[0], texels[0] + channels, high);
    for (const auto &texel : texels)
        for (int channel = 0; channel < channels; ++channel)
        {
            low[channel] = std::min(low[channel], texel[channel]);
            high[channel] = std::max(high[channel], texel[channel]);
            sums[channel] += texel[channel];
        }
    for (int channel = 1; channel < channels; ++channel)
        if (high[channel] - low[channel] > high[widest] - low[widest])
            widest = channel;
    for (int channel = 0; channel < channels; ++channel)
    {
        int covariance = 0;
        for (const auto &texel : texels)
            covariance += (16 * texel[widest] - sums[widest]) * texel[channel];
        const int inset = (high[channel] - low[channel]) / 16; // the outermost texels are few
        low[channel] += inset;
        high[channel] -= inset;
        if (covariance < 0)
            std::swap(low[channel], high[channel]);
    }
}

/// For each texel, which of the four colors along the way from `second` to `first` is nearest: two bits each.
std::uint32_t chooseColors(const Texels &texels, unsigned first, unsigned second)
{
    static constexpr std::uint32_t codeOfStep[] = {1, 3, 2, 0};
    int from[channels], to[channels], way[channels], length = 0;
    unpack565(second, from);
    unpack565(first, to);
    for (int channel = 0; channel < channels; ++channel)
    {
        way[channel] = to[channel] - from[channel];
        length += way[channel] * way[channel];
    }
    std::uint32_t codes = 0;
    for (int i = 0; i < 16; ++i)
    {
        int along = 0;
        for (int channel = 0; channel < channels; ++channel)
            along += (texels[i][channel] - from[channel]) * way[channel];
        const int step = std::clamp((6 * along + length) / (2 * length), 0, 3);
        codes |= codeOfStep[step] << (2 * i);
    }
    return codes;
}

void appendBlock(std::vector<std::byte> &file, const Texels &texels)
{
    int low[channels], high[channels];
    findEnds(texels, low, high);
    // The larger number comes first; the other order would mean a block with a hole.
    const unsigned a = pack565(low), b = pack565(high), first = std::max(a, b), second = std::min(a, b);
    append(file, first | second << 16);
    append(file, first == second ? 0 : chooseColors(texels, first, second));
}

void appendLevel(std::vector<std::byte> &file, const Picture &level)
{
    Texels texels;
    for (unsigned top = 0; top < level.height; top += 4)
        for (unsigned left = 0; left < level.width; left += 4)
        {
            takeBlock(level, left, top, texels);
            appendBlock(file, texels);
        }
}

unsigned countLevels(const Picture &picture)
{
    unsigned levels = 1;
    for (unsigned side = std::max(picture.width, picture.height); side > 1; side /= 2)
        ++levels;
    return levels;
}

} // namespace

std::vector<std::byte> encodeDds(const Picture &picture)
{
    const std::uint32_t firstBytes = ((picture.width + 3) / 4) * ((picture.height + 3) / 4) * 8;
    const unsigned levels = countLevels(picture);
    std::vector<std::byte> file;
    file.reserve(firstBytes * std::size_t(2) + 256);
    for (const std::uint32_t word : {magic, headerSize, hasCapsSizesFormatLevels | hasLinearSize, picture.height,
                                     picture.width, firstBytes, 0u, levels})
        append(file, word);
    file.resize(file.size() + 11 * sizeof(std::uint32_t));
    for (const std::uint32_t word : {pixelFormatSize, hasFourCC, fourCCDxt1, 0u, 0u, 0u, 0u, 0u})
        append(file, word);
    for (const std::uint32_t word : {isTextureWithLevels, 0u, 0u, 0u, 0u})
        append(file, word);

    appendLevel(file, picture);
    Picture level;
    for (unsigned i = 1; i < levels; ++i)
    {
        const Picture &larger = i == 1 ? picture : level;
        level = larger.resized(std::max(1u, larger.width / 2), std::max(1u, larger.height / 2));
        appendLevel(file, level);
    }
    return file;
}
