// Picture: the pixels of a texture on its way from a model's file to the game's.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

/// Red, green, blue and opacity of each pixel, a byte each, rows from top to bottom.
struct Picture
{
    unsigned width = 0, height = 0;
    std::vector<std::uint8_t> bytes; ///< four a pixel

    /// One color all over, as small as a compressed picture can be.
    static Picture flat(std::uint8_t red, std::uint8_t green, std::uint8_t blue, unsigned width = 4,
                        unsigned height = 4);

    /// The same picture in another size; each pixel is the mean of those it covers.
    Picture resized(unsigned newWidth, unsigned newHeight) const;

    /// Whether every pixel has as much red as green and blue.
    bool isGrey() const;
    bool isBlack() const;
};

/// Reads a DDS, PNG, TGA, JPEG or BMP file that lies in memory.
/// @throws port::ImageError  with the cause
Picture readPicture(const std::vector<std::byte> &file);

/// A DDS file of a picture: DXT1, with all smaller levels. Opacity is left out.
std::vector<std::byte> encodeDds(const Picture &picture);
