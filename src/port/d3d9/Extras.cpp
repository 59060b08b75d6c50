#include "port/d3d9/D3D9Extras.h"

#include "port/d3d9/Device.h"
#include "port/d3d9/PngFile.h"

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

std::string saveBackBuffer(IDirect3DDevice9 *device, const char *pngFile)
{
    Device *ours = Device::from(device);
    if (!ours || !ours->getBackBufferTexture() || !pngFile)
        return "There is no back buffer.";
    const Texture &texture = *ours->getBackBufferTexture();
    const auto width = static_cast<int>(texture.levelWidth(0)), height = static_cast<int>(texture.levelHeight(0));
    std::vector<unsigned char> pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glGetTextureImage(texture.id(), 0, GL_RGB, GL_UNSIGNED_BYTE, static_cast<GLsizei>(pixels.size()), pixels.data());
    return writePngFile(pngFile, width, height, pixels.data(), width * 3);
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
