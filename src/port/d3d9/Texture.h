// Texture: an image with its levels, and the surfaces that show one level each.
#pragma once

#include "port/d3d9/Formats.h"
#include "port/d3d9/Resource.h"

#include <cstddef>
#include <deque>
#include <vector>

namespace port
{

class Texture;

/// One level of a texture, drawn into or asked for its size.
///
/// Its references are the texture's: a surface lives as long as its texture.
class Surface final : public IDirect3DSurface9
{
public:
    Surface(Texture &texture, UINT level) : texture(texture), level(level) {}
    ULONG AddRef() override;
    ULONG Release() override;
    HRESULT SetPrivateData(const GUID &identifier, const void *data, DWORD size, DWORD flags) override;
    HRESULT GetDesc(D3DSURFACE_DESC *description) override;

    void hold();
    void letGo();
    /// The viewport that covers it.
    D3DVIEWPORT9 whole() const;

    Texture &texture;
    const UINT level;
    /// What the whole stencil buffer is known to hold, or -1; lets a clear that changes nothing be skipped.
    int knownStencil = -1;
};

/// What a texture is made of.
struct TextureDescription
{
    UINT width = 0;
    UINT height = 0;
    UINT levels = 1; ///< 0 asks for the full chain
    DWORD usage = 0;
    D3DPOOL pool = D3DPOOL_DEFAULT;
};

/// A texture; a depth-stencil buffer and the back buffer are textures too, of one level.
class Texture final : public ResourceOf<IDirect3DTexture9>
{
public:
    /// Null when the format is unknown or the graphics memory is used up.
    static Texture *create(Device &device, const TextureDescription &description, D3DFORMAT format);
    ~Texture() override;

    DWORD GetLevelCount() override { return static_cast<DWORD>(surfaces.size()); }
    HRESULT GetLevelDesc(UINT level, D3DSURFACE_DESC *out) override;
    HRESULT GetSurfaceLevel(UINT level, IDirect3DSurface9 **surface) override;
    HRESULT LockRect(UINT level, D3DLOCKED_RECT *locked, const RECT *rect, DWORD flags) override;
    HRESULT UnlockRect(UINT level) override;

    /// Replaces a whole level by rows that lie close together.
    void uploadLevel(UINT level, const void *rows);
    /// Makes all levels behind the first from it.
    void generateLevels();

    Surface &surface(UINT level) { return surfaces[level]; }
    UINT levelWidth(UINT level) const;
    UINT levelHeight(UINT level) const;
    GLuint id() const { return texture; }
    const FormatInfo &format() const { return formatInfo; }
    std::string describe() const override;

private:
    Texture(Device &device, const TextureDescription &description, const FormatInfo &format);
    void onNamed() override;
    void uploadRegion(UINT level, const RECT &region, const void *rows, std::size_t pitch);
    bool isLockable(UINT level, const RECT &region) const;

    const FormatInfo &formatInfo;
    TextureDescription description;
    GLuint texture = 0;
    std::deque<Surface> surfaces;
    /// The open lock, of one level at a time.
    std::vector<std::byte> lockedBytes;
    RECT lockedRegion{};
    int lockedLevel = -1;
    bool lockedForReading = false;
};

} // namespace port
