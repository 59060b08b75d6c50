#include "rendering/device/DeviceTextures.h"

#include "rendering/device/DeviceCalls.h"

#include "assets/cache/AssetUploader.h"
#include "assets/cache/TextureAsset.h"

#include "foundation/Logger.h"
#include "port/d3dx9/d3dx9tex.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>

namespace
{

ErrorCode verified(HRESULT hr, const char *text)
{
    const ErrorCode result = dxCall(hr);
    KV_VERIFY(result.succeeded(), "%s\n\n%s", text, result.getErrorString().toCString());
    return result;
}

bool hasSize(IDirect3DTexture9 &texture, int width, int height)
{
    D3DSURFACE_DESC description = {};
    return SUCCEEDED(texture.GetLevelDesc(0, &description)) && description.Width == static_cast<UINT>(width) &&
           description.Height == static_cast<UINT>(height);
}

/// Replaces a texture, or none, by an empty one of an image's size.
ErrorCode makeCoverageTexture(IDirect3DDevice9 &device, const CoverageImage &image, IDirect3DTexture9 *&texture)
{
    releaseAndForget(texture);
    return verified(D3DXCreateTexture(&device, static_cast<UINT>(image.width), static_cast<UINT>(image.height), 1, 0,
                                      D3DFMT_A8L8, D3DPOOL_MANAGED, &texture),
                    "Could not create texture.");
}

ErrorCode copyCoverage(IDirect3DTexture9 &texture, const CoverageImage &image, const PixelRectangle &part)
{
    const RECT region{part.left, part.top, part.right, part.bottom};
    D3DLOCKED_RECT locked = {};
    const ErrorCode result = verified(texture.LockRect(0, &locked, &region, 0), "Could not lock texture to load data.");
    if (!result.succeeded())
        return result;
    for (int y = part.top; y < part.bottom; ++y)
    {
        const std::uint8_t *from = image.rows + std::ptrdiff_t(y) * image.width + part.left;
        auto *to = reinterpret_cast<std::uint16_t *>(static_cast<std::byte *>(locked.pBits) +
                                                     std::ptrdiff_t(y - part.top) * locked.Pitch);
        std::transform(from, from + (part.right - part.left), to,
                       [&image](std::uint8_t coverage)
                       { return static_cast<std::uint16_t>(image.grey | coverage << 8); });
    }
    return verified(texture.UnlockRect(0), "Could not unlock texture.");
}

} // namespace

ErrorCode DeviceTextures::upload(IDirect3DDevice9 &device, const Handle<TextureAsset> &texture)
{
    const ErrorCode result = read(device, texture);
    if (texture.isValid() && !result.succeeded())
        KV_LOGF(Logger_::I_ERROR, "%s", port::lastTextureError().c_str());
    return result;
}

String DeviceTextures::replace(IDirect3DDevice9 &device, const Handle<TextureAsset> &texture)
{
    return read(device, texture).succeeded() ? String() : String::copyFrom(port::lastTextureError());
}

ErrorCode DeviceTextures::read(IDirect3DDevice9 &device, const Handle<TextureAsset> &texture)
{
    const auto asset = texture.lookup();
    if (!asset)
        return ErrorCode::BAD_HANDLE;
    IDirect3DTexture9 *loaded = nullptr;
    const ErrorCode result = dxCall(D3DXCreateTextureFromFileA(&device, asset->getFileName().toCString(), &loaded));
    if (loaded)
    {
        IDirect3DTexture9 *&entry = staticTextures[texture];
        releaseAndForget(entry);
        entry = loaded;
    }
    return result;
}

ErrorCode DeviceTextures::uploadCoverage(IDirect3DDevice9 &device, const Handle<TextureAsset> &texture,
                                         const CoverageImage &image)
{
    IDirect3DTexture9 *&entry = staticTextures[texture];
    const bool fits = entry && hasSize(*entry, image.width, image.height);
    const PixelRectangle whole{0, 0, image.width, image.height};
    ErrorCode result = fits ? ErrorCode(ErrorCode::SUCCESS) : makeCoverageTexture(device, image, entry);
    if (result.succeeded())
        result = copyCoverage(*entry, image, fits ? image.changed : whole);
    if (!entry)
        staticTextures.erase(texture);
    return result;
}

IDirect3DTexture9 *DeviceTextures::find(const Handle<TextureAsset> &texture) const
{
    const auto loaded = staticTextures.find(texture);
    return loaded == staticTextures.end() ? nullptr : loaded->second;
}

void DeviceTextures::releaseDead()
{
    for (auto entry = staticTextures.begin(); entry != staticTextures.end();)
    {
        const bool alive = entry->first.isValid();
        if (!alive)
            releaseAndForget(entry->second);
        entry = alive ? std::next(entry) : staticTextures.erase(entry);
    }
}

void DeviceTextures::release()
{
    for (auto &[asset, texture] : staticTextures)
        releaseAndForget(texture);
    staticTextures.clear();
}
