// DeviceTextures: the device's textures by asset.
#pragma once

#include "foundation/ErrorCode.h"
#include "foundation/KVString.h"
#include "object/tree/Handle.h"

#include <unordered_map>

class TextureAsset;
struct CoverageImage;
struct IDirect3DDevice9;
struct IDirect3DTexture9;

/// Textures read from files and made from coverage, in managed memory: they survive a reset of the device. Owns them.
class DeviceTextures
{
public:
    DeviceTextures() = default;
    ~DeviceTextures() { release(); }
    DeviceTextures(const DeviceTextures &) = delete;
    DeviceTextures &operator=(const DeviceTextures &) = delete;

    /// Reads the asset's file; a failure is logged with file and cause, and leaves what was there.
    ErrorCode upload(IDirect3DDevice9 &device, const Handle<TextureAsset> &texture);
    /// Reads the asset's file in place of what was there, which stays where that fails.
    /// @return why it failed, as a sentence; empty on success
    String replace(IDirect3DDevice9 &device, const Handle<TextureAsset> &texture);
    /// Copies the changed part of an image that code made; all of it the first time and after a change of size.
    ErrorCode uploadCoverage(IDirect3DDevice9 &device, const Handle<TextureAsset> &texture, const CoverageImage &image);
    /// Borrowed; null if there is none.
    IDirect3DTexture9 *find(const Handle<TextureAsset> &texture) const;
    /// Gives up the textures of assets that have died.
    void releaseDead();
    void release();

private:
    typedef std::unordered_map<Handle<TextureAsset>, IDirect3DTexture9 *> TextureCache;

    ErrorCode read(IDirect3DDevice9 &device, const Handle<TextureAsset> &texture);

    TextureCache staticTextures;
};
