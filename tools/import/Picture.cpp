#include "Picture.h"

#include "port/d3dx9/ImageFile.h"

#include <algorithm>
#include <utility>

Picture Picture::flat(std::uint8_t red, std::uint8_t green, std::uint8_t blue, unsigned width, unsigned height)
{
    Picture picture{width, height, {}};
    for (std::size_t pixel = 0; pixel < std::size_t(width) * height; ++pixel)
        picture.bytes.insert(picture.bytes.end(), {red, green, blue, 255});
    return picture;
}

Picture Picture::resized(unsigned newWidth, unsigned newHeight) const
{
    Picture result{newWidth, newHeight, std::vector<std::uint8_t>(std::size_t(newWidth) * newHeight * 4)};
    const auto begin = [](std::size_t place, unsigned size, unsigned newSize) { return place * size / newSize; };
    const auto end = [](std::size_t place, unsigned size, unsigned newSize)
    { return ((place + 1) * size + newSize - 1) / newSize; };
    for (unsigned y = 0; y < newHeight; ++y)
        for (unsigned x = 0; x < newWidth; ++x)
        {
            std::size_t sums[4] = {}, count = 0;
            for (std::size_t row = begin(y, height, newHeight); row < end(y, height, newHeight); ++row)
                for (std::size_t column = begin(x, width, newWidth); column < end(x, width, newWidth); ++column)
                {
                    const std::uint8_t *pixel = &bytes[(row * width + column) * 4];
                    for (int channel = 0; channel < 4; ++channel)
                        sums[channel] += pixel[channel];
                    ++count;
                }
            for (std::size_t channel = 0; channel < 4; ++channel)
                result.bytes[(std::size_t(y) * newWidth + x) * 4 + channel] =
                    static_cast<std::uint8_t>((sums[channel] + count / 2) / count);
        }
    return result;
}

bool Picture::isGrey() const
{
    for (std::size_t at = 0; at < bytes.size(); at += 4)
        if (bytes[at] != bytes[at + 1] || bytes[at] != bytes[at + 2])
            return false;
    return true;
}

bool Picture::isBlack() const
{
    for (std::size_t at = 0; at < bytes.size(); at += 4)
        if (bytes[at] || bytes[at + 1] || bytes[at + 2])
            return false;
    return true;
}

Picture readPicture(const std::vector<std::byte> &file)
{
    port::Image image = port::readImage(file);
    if (image.format == D3DFMT_DXT1 || image.format == D3DFMT_DXT3 || image.format == D3DFMT_DXT5)
        image = port::decompress(image);
    const bool blueFirst = image.format == D3DFMT_A8R8G8B8 || image.format == D3DFMT_X8R8G8B8;
    if (!blueFirst && image.format != D3DFMT_A8B8G8R8 && image.format != D3DFMT_X8B8G8R8)
        throw port::ImageError("its pixels are in no order that can be taken over; save it as PNG");
    const std::vector<std::byte> &pixels = image.levels.front();
    Picture picture{image.width, image.height, std::vector<std::uint8_t>(pixels.size())};
    std::transform(pixels.begin(), pixels.end(), picture.bytes.begin(),
                   [](std::byte byte) { return static_cast<std::uint8_t>(byte); });
    for (std::size_t at = 0; blueFirst && at < picture.bytes.size(); at += 4)
        std::swap(picture.bytes[at], picture.bytes[at + 2]);
    return picture;
}
