// Formats: how each D3DFORMAT stands in memory and which format of the graphics library carries it.
#pragma once

#include "port/d3d9/d3d9types.h"

#include <cstddef>
#include <epoxy/gl.h>

namespace port
{

/// One pixel format. Compressed formats count in blocks of 4 x 4 pixels, the others in single pixels.
struct FormatInfo
{
    D3DFORMAT format;
    const char *name;
    GLenum internalFormat;
    GLenum external; ///< GL_NONE for compressed formats
    GLenum type;     ///< GL_NONE for compressed formats
    unsigned blockSize;
    unsigned blockBytes;
    bool depth;
    GLint swizzle[4]; ///< where the shader's r, g, b, a come from
};

/// The record of a format, or null for one that is not supported.
const FormatInfo *findFormat(D3DFORMAT format);

/// Bytes of one row of blocks.
std::size_t rowBytes(const FormatInfo &format, unsigned width);

/// Rows of blocks.
unsigned rowCount(const FormatInfo &format, unsigned height);

/// Levels of a full chain down to 1 x 1.
unsigned fullLevelCount(unsigned width, unsigned height);

} // namespace port
