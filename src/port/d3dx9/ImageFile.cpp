#include "port/d3dx9/ImageFile.h"

#include "port/d3d9/Formats.h"
#include "port/d3dx9/ImageMemory.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <memory>
#include <stb/stb_image.h>

namespace
{

using namespace port;

constexpr UINT maxSide = 16384; ///< pixels; guards the arithmetic against broken headers
/// Deflate makes at most 1032 bytes of one, and a pixel is a bit at least: no sound file holds more pixels a byte.
constexpr std::size_t mostPixelsPerByte = 1032 * 8;

// The DDS file header behind its magic word, as published.
struct DdsPixelFormat
{
    DWORD size, flags, fourCC, bitCount, redMask, greenMask, blueMask, alphaMask;
};
struct DdsHeader
{
    DWORD size, flags, height, width, pitch, depth, levelCount, reserved[11];
    DdsPixelFormat pixelFormat;
    DWORD caps[4], reserved2;
};
static_assert(sizeof(DdsHeader) == 124);

constexpr char ddsMagic[] = {'D', 'D', 'S', ' '};
constexpr DWORD ddsHasLevelCount = 0x20000;
constexpr DWORD ddsHasFourCC = 0x4;
constexpr DWORD ddsHasAlpha = 0x1;
constexpr DWORD ddsIsAlphaOnly = 0x2;
constexpr DWORD ddsIsVolumeOrCube = 0x200000 | 0x200;
constexpr DWORD fourCCDX10 = 0x30315844;

struct MaskedFormat
{
    D3DFORMAT format;
    DWORD bitCount, redMask, greenMask, blueMask, alphaMask;
};

constexpr MaskedFormat maskedFormats[] = {
    {D3DFMT_A8R8G8B8, 32, 0xff0000, 0xff00, 0xff, 0xff000000},
    {D3DFMT_X8R8G8B8, 32, 0xff0000, 0xff00, 0xff, 0},
    {D3DFMT_A8B8G8R8, 32, 0xff, 0xff00, 0xff0000, 0xff000000},
    {D3DFMT_X8B8G8R8, 32, 0xff, 0xff00, 0xff0000, 0},
    {D3DFMT_R8G8B8, 24, 0xff0000, 0xff00, 0xff, 0},
    {D3DFMT_A8L8, 16, 0xff, 0, 0, 0xff00},
    {D3DFMT_L8, 8, 0xff, 0, 0, 0},
    {D3DFMT_A8, 8, 0, 0, 0, 0xff},
};

D3DFORMAT formatOf(const DdsPixelFormat &pixels)
{
    if (pixels.flags & ddsHasFourCC)
    {
        if (pixels.fourCC == fourCCDX10)
            throw ImageError("the DDS file has an extended header, which is not supported; save it as DXT1, DXT3, DXT5 "
                             "or 32-bit colour");
        const auto format = static_cast<D3DFORMAT>(pixels.fourCC);
        if (const FormatInfo *info = findFormat(format); info && !info->depth)
            return format;
        throw ImageError("the DDS file's format code " + std::to_string(pixels.fourCC) + " is not supported");
    }
    const bool alphaCounts = pixels.flags & (ddsHasAlpha | ddsIsAlphaOnly);
    const DWORD alphaMask = alphaCounts ? pixels.alphaMask : 0;
    for (const MaskedFormat &known : maskedFormats)
        if (known.bitCount == pixels.bitCount && known.redMask == pixels.redMask &&
            (known.greenMask == pixels.greenMask || known.greenMask == 0) && known.alphaMask == alphaMask)
            return known.format;
    throw ImageError("the DDS file's " + std::to_string(pixels.bitCount) + "-bit pixels are in no supported order");
}

Image readDds(const std::vector<std::byte> &file)
{
    DdsHeader header;
    constexpr std::size_t start = sizeof(ddsMagic) + sizeof(header);
    if (file.size() < start)
        throw ImageError("the DDS file ends inside its header");
    std::memcpy(&header, file.data() + sizeof(ddsMagic), sizeof(header));
    if (header.size != sizeof(header) || header.width == 0 || header.height == 0 || header.width > maxSide ||
        header.height > maxSide)
        throw ImageError("the DDS file's header is broken");
    if (header.caps[1] & ddsIsVolumeOrCube)
        throw ImageError("the DDS file holds a cube or volume, and only flat textures are supported");

    Image image{header.width, header.height, formatOf(header.pixelFormat), {}};
    const FormatInfo &format = *findFormat(image.format);
    const UINT full = fullLevelCount(image.width, image.height);
    const UINT count = header.flags & ddsHasLevelCount ? std::clamp<UINT>(header.levelCount, 1, full) : 1;
    std::size_t position = start;
    for (UINT level = 0; level < count; ++level)
    {
        const UINT width = std::max(1u, image.width >> level), height = std::max(1u, image.height >> level);
        const std::size_t bytes = rowBytes(format, width) * rowCount(format, height);
        if (file.size() - position < bytes)
            throw ImageError("the DDS file is cut off: level " + std::to_string(level) + " of " +
                             std::to_string(count) + " wants " + std::to_string(bytes) + " bytes, and " +
                             std::to_string(file.size() - position) + " are left");
        const auto first = file.begin() + static_cast<std::ptrdiff_t>(position);
        image.levels.emplace_back(first, first + static_cast<std::ptrdiff_t>(bytes));
        position += bytes;
    }
    return image;
}

/// Looks at the header alone: what it claims must be possible before memory is taken for it.
void checkClaim(const stbi_uc *bytes, std::size_t size)
{
    int width = 0, height = 0, channels = 0;
    if (size > INT_MAX || !stbi_info_from_memory(bytes, static_cast<int>(size), &width, &height, &channels))
        throw ImageError("not a readable DDS, PNG, TGA, JPEG or BMP image, or broken in its header");
    const auto sides = std::to_string(width) + " x " + std::to_string(height);
    if (width <= 0 || height <= 0 || UINT(width) > maxSide || UINT(height) > maxSide)
        throw ImageError("the image claims " + sides + " pixels, and a side of " + std::to_string(maxSide) +
                         " is the most");
    if (std::size_t(width) * std::size_t(height) > mostPixelsPerByte * size)
        throw ImageError("the image claims " + sides + " pixels, and its " + std::to_string(size) +
                         " bytes cannot hold them: it is cut off or its header is broken");
}

Image readCommon(const std::vector<std::byte> &file)
{
    const ImageMemory memory;
    int width = 0, height = 0, channels = 0;
    const auto *bytes = reinterpret_cast<const stbi_uc *>(file.data());
    checkClaim(bytes, file.size());
    const std::unique_ptr<stbi_uc, void (*)(void *)> pixels(
        stbi_load_from_memory(bytes, static_cast<int>(file.size()), &width, &height, &channels, 4), stbi_image_free);
    if (!pixels)
        throw ImageError(std::string("not a readable DDS, PNG, TGA, JPEG or BMP image (") + stbi_failure_reason() +
                         ")");
    Image image{static_cast<UINT>(width), static_cast<UINT>(height), D3DFMT_A8B8G8R8, {}};
    const auto *first = reinterpret_cast<const std::byte *>(pixels.get());
    image.levels.emplace_back(first, first + static_cast<std::ptrdiff_t>(width) * height * 4);
    return image;
}

// Block compression

struct Color
{
    unsigned r, g, b;
};

Color unpack565(unsigned packed)
{
    const unsigned r = packed >> 11, g = (packed >> 5) & 63, b = packed & 31;
    return {r * 255 / 31, g * 255 / 63, b * 255 / 31};
}

Color mix(const Color &a, const Color &b, unsigned weightA, unsigned weightB)
{
    const unsigned sum = weightA + weightB;
    return {(a.r * weightA + b.r * weightB) / sum, (a.g * weightA + b.g * weightB) / sum,
            (a.b * weightA + b.b * weightB) / sum};
}

using Block = std::byte[16][4]; ///< pixels of a block row by row, as red, green, blue, alpha

/// The colour half of a block. Only DXT1 knows the mode of three colours and a hole.
void decodeColors(const std::uint8_t *data, bool mayHaveHole, Block &block)
{
    const unsigned first = data[0] | data[1] << 8, second = data[2] | data[3] << 8;
    Color palette[4] = {unpack565(first), unpack565(second), {}, {}};
    const bool hole = mayHaveHole && first <= second;
    palette[2] = hole ? mix(palette[0], palette[1], 1, 1) : mix(palette[0], palette[1], 2, 1);
    if (!hole)
        palette[3] = mix(palette[0], palette[1], 1, 2);
    for (unsigned pixel = 0; pixel < 16; ++pixel)
    {
        const unsigned index = (data[4 + pixel / 4] >> (pixel % 4 * 2)) & 3;
        const Color &color = palette[index];
        block[pixel][0] = static_cast<std::byte>(color.r);
        block[pixel][1] = static_cast<std::byte>(color.g);
        block[pixel][2] = static_cast<std::byte>(color.b);
        block[pixel][3] = static_cast<std::byte>(hole && index == 3 ? 0 : 255);
    }
}

void decodeFlatAlpha(const std::uint8_t *data, Block &block)
{
    for (unsigned pixel = 0; pixel < 16; ++pixel)
        block[pixel][3] = static_cast<std::byte>(((data[pixel / 2] >> (pixel % 2 * 4)) & 15) * 17);
}

void decodeSmoothAlpha(const std::uint8_t *data, Block &block)
{
    const unsigned first = data[0], second = data[1];
    unsigned palette[8] = {first, second, 0, 0, 0, 0, 0, 255};
    const unsigned steps = first > second ? 7 : 5;
    for (unsigned index = 1; index < steps; ++index)
        palette[index + 1] = (first * (steps - index) + second * index) / steps;
    std::uint64_t bits = 0;
    std::memcpy(&bits, data + 2, 6);
    for (unsigned pixel = 0; pixel < 16; ++pixel, bits >>= 3)
        block[pixel][3] = static_cast<std::byte>(palette[bits & 7]);
}

void decodeBlock(D3DFORMAT format, const std::uint8_t *data, Block &block)
{
    decodeColors(format == D3DFMT_DXT1 ? data : data + 8, format == D3DFMT_DXT1, block);
    if (format == D3DFMT_DXT3)
        decodeFlatAlpha(data, block);
    else if (format == D3DFMT_DXT5)
        decodeSmoothAlpha(data, block);
}

std::vector<std::byte> decompressLevel(const std::vector<std::byte> &level, D3DFORMAT format, UINT width, UINT height)
{
    std::vector<std::byte> pixels(static_cast<std::size_t>(width) * height * 4);
    const auto *data = reinterpret_cast<const std::uint8_t *>(level.data());
    const unsigned blockBytes = findFormat(format)->blockBytes;
    for (UINT top = 0; top < height; top += 4)
        for (UINT left = 0; left < width; left += 4, data += blockBytes)
        {
            Block block;
            decodeBlock(format, data, block);
            for (UINT y = 0; y < std::min(4u, height - top); ++y)
                std::memcpy(&pixels[(static_cast<std::size_t>(top + y) * width + left) * 4], block[y * 4],
                            std::min(4u, width - left) * 4);
        }
    return pixels;
}

} // namespace

namespace port
{

Image readImage(const std::vector<std::byte> &file)
{
    const bool dds = file.size() >= sizeof(ddsMagic) && std::memcmp(file.data(), ddsMagic, sizeof(ddsMagic)) == 0;
    return dds ? readDds(file) : readCommon(file);
}

Image decompress(const Image &compressed)
{
    Image image{compressed.width, compressed.height, D3DFMT_A8B8G8R8, {}};
    for (UINT level = 0; level < compressed.levels.size(); ++level)
        image.levels.push_back(decompressLevel(compressed.levels[level], compressed.format,
                                               std::max(1u, image.width >> level),
                                               std::max(1u, image.height >> level)));
    return image;
}

} // namespace port
