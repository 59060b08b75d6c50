#include "port/d3d9/Formats.h"

#include <algorithm>
#include <bit>

namespace
{

using port::FormatInfo;

constexpr FormatInfo formats[] = {
    {D3DFMT_A8R8G8B8,
     "A8R8G8B8",
     GL_RGBA8,
     GL_BGRA,
     GL_UNSIGNED_INT_8_8_8_8_REV,
     1,
     4,
     false,
     {GL_RED, GL_GREEN, GL_BLUE, GL_ALPHA}},
    {D3DFMT_X8R8G8B8,
     "X8R8G8B8",
     GL_RGBA8,
     GL_BGRA,
     GL_UNSIGNED_INT_8_8_8_8_REV,
     1,
     4,
     false,
     {GL_RED, GL_GREEN, GL_BLUE, GL_ONE}},
    {D3DFMT_A8B8G8R8,
     "A8B8G8R8",
     GL_RGBA8,
     GL_RGBA,
     GL_UNSIGNED_BYTE,
     1,
     4,
     false,
     {GL_RED, GL_GREEN, GL_BLUE, GL_ALPHA}},
    {D3DFMT_X8B8G8R8,
     "X8B8G8R8",
     GL_RGBA8,
     GL_RGBA,
     GL_UNSIGNED_BYTE,
     1,
     4,
     false,
     {GL_RED, GL_GREEN, GL_BLUE, GL_ONE}},
    {D3DFMT_R8G8B8, "R8G8B8", GL_RGB8, GL_BGR, GL_UNSIGNED_BYTE, 1, 3, false, {GL_RED, GL_GREEN, GL_BLUE, GL_ONE}},
    {D3DFMT_A8, "A8", GL_R8, GL_RED, GL_UNSIGNED_BYTE, 1, 1, false, {GL_ZERO, GL_ZERO, GL_ZERO, GL_RED}},
    {D3DFMT_L8, "L8", GL_R8, GL_RED, GL_UNSIGNED_BYTE, 1, 1, false, {GL_RED, GL_RED, GL_RED, GL_ONE}},
    {D3DFMT_A8L8, "A8L8", GL_RG8, GL_RG, GL_UNSIGNED_BYTE, 1, 2, false, {GL_RED, GL_RED, GL_RED, GL_GREEN}},
    {D3DFMT_A16B16G16R16F,
     "A16B16G16R16F",
     GL_RGBA16F,
     GL_RGBA,
     GL_HALF_FLOAT,
     1,
     8,
     false,
     {GL_RED, GL_GREEN, GL_BLUE, GL_ALPHA}},
    {D3DFMT_A32B32G32R32F,
     "A32B32G32R32F",
     GL_RGBA32F,
     GL_RGBA,
     GL_FLOAT,
     1,
     16,
     false,
     {GL_RED, GL_GREEN, GL_BLUE, GL_ALPHA}},
    {D3DFMT_R32F, "R32F", GL_R32F, GL_RED, GL_FLOAT, 1, 4, false, {GL_RED, GL_ONE, GL_ONE, GL_ONE}},
    {D3DFMT_D24S8,
     "D24S8",
     GL_DEPTH24_STENCIL8,
     GL_DEPTH_STENCIL,
     GL_UNSIGNED_INT_24_8,
     1,
     4,
     true,
     {GL_RED, GL_ZERO, GL_ZERO, GL_ONE}},
    {D3DFMT_DXT1,
     "DXT1",
     GL_COMPRESSED_RGBA_S3TC_DXT1_EXT,
     GL_NONE,
     GL_NONE,
     4,
     8,
     false,
     {GL_RED, GL_GREEN, GL_BLUE, GL_ALPHA}},
    {D3DFMT_DXT3,
     "DXT3",
     GL_COMPRESSED_RGBA_S3TC_DXT3_EXT,
     GL_NONE,
     GL_NONE,
     4,
     16,
     false,
     {GL_RED, GL_GREEN, GL_BLUE, GL_ALPHA}},
    {D3DFMT_DXT5,
     "DXT5",
     GL_COMPRESSED_RGBA_S3TC_DXT5_EXT,
     GL_NONE,
     GL_NONE,
     4,
     16,
     false,
     {GL_RED, GL_GREEN, GL_BLUE, GL_ALPHA}},
};

} // namespace

const port::FormatInfo *port::findFormat(D3DFORMAT format)
{
    for (const FormatInfo &info : formats)
        if (info.format == format)
            return &info;
    return nullptr;
}

std::size_t port::rowBytes(const FormatInfo &format, unsigned width)
{
    return static_cast<std::size_t>((width + format.blockSize - 1) / format.blockSize) * format.blockBytes;
}

unsigned port::rowCount(const FormatInfo &format, unsigned height)
{
    return (height + format.blockSize - 1) / format.blockSize;
}

unsigned port::fullLevelCount(unsigned width, unsigned height)
{
    return static_cast<unsigned>(std::bit_width(std::max(width, height)));
}
