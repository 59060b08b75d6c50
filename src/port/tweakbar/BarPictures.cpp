#include "port/tweakbar/BarPictures.h"

#include "port/d3d9/Texture.h"
#include "port/d3dx9/d3dx9tex.h"
#include "port/win32/HostPath.h"

#include <algorithm>

namespace port
{

namespace
{
constexpr int READS_A_FRAME = 2;
constexpr std::uint64_t FRAMES_BETWEEN_LOOKS = 90;
constexpr std::size_t MOST_PICTURES = 400;
} // namespace

void BarPictures::beginFrame(IDirect3DDevice9 *newDevice)
{
    device = newDevice;
    ++frame;
    readsLeft = READS_A_FRAME;
}

unsigned BarPictures::find(const char *file)
{
    if (!device || !file[0])
        return 0;
    Picture &picture = pictures[file];
    picture.lastSeen = frame;
    if (frame >= picture.nextLook && readsLeft > 0)
        bringUpToDate(picture, file);
    const unsigned texture = picture.texture ? static_cast<Texture *>(picture.texture)->id() : 0;
    if (pictures.size() > MOST_PICTURES)
        dropOldest();
    return texture;
}

void BarPictures::bringUpToDate(Picture &picture, const std::string &file)
{
    picture.nextLook = frame + FRAMES_BETWEEN_LOOKS;
    std::error_code missing;
    const auto written = std::filesystem::last_write_time(hostPath(file.c_str()), missing);
    if (missing || (picture.texture && written == picture.written))
        return;
    --readsLeft;
    IDirect3DTexture9 *texture = nullptr;
    if (FAILED(D3DXCreateTextureFromFileA(device, file.c_str(), &texture)))
        return;
    if (picture.texture)
        picture.texture->Release();
    picture.texture = texture;
    picture.written = written;
}

void BarPictures::dropOldest()
{
    const auto older = [](const auto &a, const auto &b) { return a.second.lastSeen < b.second.lastSeen; };
    const auto oldest = std::min_element(pictures.begin(), pictures.end(), older);
    if (oldest->second.lastSeen == frame)
        return; // all of them are seen
    if (oldest->second.texture)
        oldest->second.texture->Release();
    pictures.erase(oldest);
}

void BarPictures::release()
{
    for (const auto &[file, picture] : pictures)
        if (picture.texture)
            picture.texture->Release();
    pictures.clear();
    device = nullptr;
}

} // namespace port
