#include "rendering/device/AssetMemory.h"

#include "rendering/device/GraphicsSystem2.h"

#include "assets/cache/TextureAsset.h"
#include "assets/models/MeshAsset.h"
#include "engine/systems/SystemSystem.h"
#include "port/d3d9/d3d9.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace
{

/// Bits of a pixel; compressed formats have fewer than one byte of them, or one.
std::uint64_t bitsOf(D3DFORMAT format)
{
    switch (format)
    {
    case D3DFMT_DXT1:
        return 4;
    case D3DFMT_DXT3:
    case D3DFMT_DXT5:
    case D3DFMT_L8:
    case D3DFMT_A8:
        return 8;
    case D3DFMT_A8L8:
        return 16;
    case D3DFMT_A16B16G16R16F:
        return 64;
    default:
        return 32;
    }
}

std::uint64_t bytesOf(IDirect3DTexture9 &texture)
{
    std::uint64_t bits = 0;
    for (UINT level = 0; level < texture.GetLevelCount(); ++level)
    {
        D3DSURFACE_DESC described = {};
        if (SUCCEEDED(texture.GetLevelDesc(level, &described)))
            bits += std::uint64_t(described.Width) * described.Height * bitsOf(described.Format);
    }
    return bits / 8;
}

} // namespace

int memoryOf(Handle<Asset> asset)
{
    GraphicsSystem2 &graphics = getSystemDeref<GraphicsSystem2>();
    std::uint64_t bytes = 0;
    if (const auto texture = handle_cast<TextureAsset>(asset); texture.isValid())
    {
        IDirect3DTexture9 *const found = graphics.getTexturePtr(texture);
        bytes = found ? bytesOf(*found) : 0;
    }
    else if (const auto mesh = handle_cast<MeshAsset>(asset); mesh.isValid())
    {
        const ErrorReturn<MeshData> found = graphics.getMeshData(mesh);
        bytes = found.succeeded() ? std::uint64_t(found.value.maxVertexSize) + found.value.maxIndexSize : 0;
    }
    return static_cast<int>(std::min<std::uint64_t>(bytes, std::numeric_limits<int>::max()));
}
