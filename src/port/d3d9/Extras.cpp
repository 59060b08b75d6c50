#include "port/d3d9/D3D9Extras.h"

#include "port/d3d9/Device.h"
#include "port/d3d9/PngFile.h"

#include <algorithm>
#include <vector>

namespace
{

int openEvents = 0;

constexpr std::size_t maxEventName = 127; ///< longer names are cut: they are labels only

/// Narrow form of a name for the library's debug groups; what is not ASCII becomes a question mark.
GLsizei narrow(LPCWSTR name, char (&text)[maxEventName + 1])
{
    std::size_t length = 0;
    for (; name && name[length] && length < maxEventName; ++length)
        text[length] = name[length] < 0x80 ? static_cast<char>(name[length]) : '?';
    text[length] = '\0';
    return static_cast<GLsizei>(length);
}

/// Rows of red, green and blue from the top.
struct Pixels
{
    int width = 0;
    int height = 0;
    std::vector<unsigned char> bytes;
};

/// The device's back buffer; nothing where it has none.
Pixels readBackBuffer(IDirect3DDevice9 *device)
{
    Pixels read;
    port::Device *const ours = port::Device::from(device);
    if (!ours || !ours->getBackBufferTexture())
        return read;
    const port::Texture &texture = *ours->getBackBufferTexture();
    read.width = static_cast<int>(texture.levelWidth(0));
    read.height = static_cast<int>(texture.levelHeight(0));
    read.bytes.resize(static_cast<std::size_t>(read.width) * static_cast<std::size_t>(read.height) * 3);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glGetTextureImage(texture.id(), 0, GL_RGB, GL_UNSIGNED_BYTE, static_cast<GLsizei>(read.bytes.size()),
                      read.bytes.data());
    return read;
}

/// Mean of a rectangle's values of one colour, which holds a pixel at least.
unsigned char meanOf(const Pixels &from, int left, int top, int right, int bottom, int colour)
{
    int sum = 0, count = 0;
    for (int y = top; y < std::max(bottom, top + 1); ++y)
        for (int x = left; x < std::max(right, left + 1); ++x, ++count)
            sum += from.bytes[(static_cast<std::size_t>(y) * static_cast<std::size_t>(from.width) +
                               static_cast<std::size_t>(x)) *
                                  3 +
                              static_cast<std::size_t>(colour)];
    return static_cast<unsigned char>(sum / count);
}

/// The middle of a picture in the shape of width by height, in that size.
Pixels shrunk(const Pixels &from, int width, int height)
{
    const int across = std::min(from.width, from.height * width / height);
    const int down = std::min(from.height, from.width * height / width);
    const int left = (from.width - across) / 2, top = (from.height - down) / 2;
    Pixels small{width, height, {}};
    small.bytes.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            for (int colour = 0; colour < 3; ++colour)
                small.bytes.push_back(meanOf(from, left + across * x / width, top + down * y / height,
                                             left + across * (x + 1) / width, top + down * (y + 1) / height, colour));
    return small;
}

std::string write(const Pixels &picture, const char *pngFile)
{
    return port::writePngFile(pngFile, picture.width, picture.height, picture.bytes.data(), picture.width * 3);
}

constexpr const char *NOTHING_TO_SAVE = "There is no back buffer.";

} // namespace

namespace port
{

FrameStats lastFrameStats(IDirect3DDevice9 *device)
{
    const Device *ours = Device::from(device);
    return ours ? ours->getLastStats() : FrameStats{};
}

FrameStats currentFrameStats(IDirect3DDevice9 *device)
{
    const Device *ours = Device::from(device);
    return ours ? ours->getStats() : FrameStats{};
}

void beginCountingPixels(IDirect3DDevice9 *device)
{
    if (Device *ours = Device::from(device))
        ours->beginCountingPixels();
}

std::uint64_t endCountingPixels(IDirect3DDevice9 *device)
{
    Device *ours = Device::from(device);
    return ours ? ours->endCountingPixels() : 0;
}

std::string saveBackBuffer(IDirect3DDevice9 *device, const char *pngFile)
{
    const Pixels picture = readBackBuffer(device);
    return picture.bytes.empty() || !pngFile ? NOTHING_TO_SAVE : write(picture, pngFile);
}

std::string saveSmallBackBuffer(IDirect3DDevice9 *device, const char *pngFile, int width, int height)
{
    const Pixels picture = readBackBuffer(device);
    if (picture.bytes.empty() || !pngFile || width <= 0 || height <= 0)
        return NOTHING_TO_SAVE;
    return write(shrunk(picture, width, height), pngFile);
}

void setPresentOverlay(IDirect3DDevice9 *device, std::function<void(int width, int height)> overlay)
{
    if (Device *ours = Device::from(device))
        ours->setOverlay(std::move(overlay));
}

bool drawsInSoftware(IDirect3DDevice9 *device)
{
    const Device *ours = Device::from(device);
    return ours && ours->drawsInSoftware();
}

void setDeviceLost(IDirect3DDevice9 *device, bool lost)
{
    if (Device *ours = Device::from(device))
        ours->setLost(lost);
}

} // namespace port

int D3DPERF_BeginEvent(D3DCOLOR, LPCWSTR name)
{
    if (!port::Device::current())
        return -1;
    char text[maxEventName + 1];
    const GLsizei length = narrow(name, text);
    glPushDebugGroup(GL_DEBUG_SOURCE_APPLICATION, 0, length, text);
    return openEvents++;
}

int D3DPERF_EndEvent()
{
    if (openEvents == 0)
        return -1;
    --openEvents;
    if (port::Device::current())
        glPopDebugGroup();
    return openEvents;
}
