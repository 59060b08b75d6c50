#include "port/d3d9/PngFile.h"

#include "port/win32/WholeFile.h"

#include <stb/stb_image_write.h>

namespace
{
constexpr int CHANNELS = 3;

void append(void *target, void *bytes, int count)
{
    static_cast<std::string *>(target)->append(static_cast<const char *>(bytes), static_cast<std::size_t>(count));
}
} // namespace

std::string port::writePngFile(const char *designed, int width, int height, const unsigned char *top, int rowStep)
{
    std::string encoded;
    if (!stbi_write_png_to_func(append, &encoded, width, height, CHANNELS, top, rowStep))
        return "There is too little memory to encode it.";
    return writeWholeFile(designed, encoded);
}
