// ImageFile: reads image files into levels that a texture takes as they are.
#pragma once

#include "port/d3d9/d3d9types.h"

#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

namespace port
{

/// Why an image file cannot be read, without its name.
class ImageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Pixels in one of the device's formats, largest level first, rows from top to bottom and close together.
struct Image
{
    UINT width = 0;
    UINT height = 0;
    D3DFORMAT format = D3DFMT_UNKNOWN;
    std::vector<std::vector<std::byte>> levels;
};

/// Reads a DDS, PNG, TGA, JPEG or BMP file that lies in memory.
/// @throws ImageError
Image readImage(const std::vector<std::byte> &file);

/// The same image as A8B8G8R8, for drivers without compressed textures.
Image decompress(const Image &compressed);

} // namespace port
