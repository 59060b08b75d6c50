// GraphicsSystem2: textures and meshes on their way to the device.
#include "rendering/device/GraphicsSystem2.h"

#include "rendering/device/D3DPerfScopedEvent.h"

#include "assets/cache/AssetUploader.h"
#include "assets/models/MeshAsset.h"
#include "assets/cache/ShaderAsset.h"
#include "assets/cache/TextureAsset.h"

#include "foundation/Assertions.h"
#include "foundation/Logger.h"
#include "port/d3d9/d3d9.h"
#include "port/d3dx9/d3dx9tex.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace
{

/// What differs between filling a vertex buffer and an index buffer: how to make one, and how to complain.
template <class Buffer>
struct BufferKind;

template <>
struct BufferKind<IDirect3DVertexBuffer9>
{
    static constexpr const char *couldNotCreate = "Could not create vertex buffer.";
    static constexpr const char *couldNotLock = "Could not lock vertex buffer to load data.";
    static constexpr const char *couldNotUnlock = "Could not unlock vertex buffer.";

    static HRESULT create(IDirect3DDevice9 *device, unsigned size, IDirect3DVertexBuffer9 **buffer)
    {
        return device->CreateVertexBuffer(size, D3DUSAGE_WRITEONLY, 0, D3DPOOL_MANAGED, buffer, nullptr);
    }
};

template <>
struct BufferKind<IDirect3DIndexBuffer9>
{
    static constexpr const char *couldNotCreate = "Could not create index buffer.";
    static constexpr const char *couldNotLock = "Could not lock index buffer to load data.";
    static constexpr const char *couldNotUnlock = "Could not unlock index buffer.";

    static HRESULT create(IDirect3DDevice9 *device, unsigned size, IDirect3DIndexBuffer9 **buffer)
    {
        return device->CreateIndexBuffer(size, D3DUSAGE_WRITEONLY, D3DFMT_INDEX32, D3DPOOL_MANAGED, buffer, nullptr);
    }
};

ErrorCode verified(HRESULT hr, const char *text)
{
    const ErrorCode result = dxCall(hr);
    KV_VERIFY(result.succeeded(), "%s\n\n%s", text, result.getErrorString().toCString());
    return result;
}

/// Refuses a mesh that would make the device read beyond its vertices, and says which file it is.
ErrorCode checkDrawable(const MeshAsset &asset)
{
    const ErrorCode result = asset.getMeshData().checkDrawable();
    KV_VERIFY(result.succeeded(), "The mesh %s cannot be drawn (%s): %s Export the model again.",
              asset.getFileName().toCString(), result.toString().toCString(),
              result.getCode() == ErrorCode::OUT_OF_BOUNDS ? "an index lies beyond its vertices."
                                                           : "its primitive or vertex type is none that is drawn.");
    return result;
}

/// Sphere about the middle of the box around some vertices; its radius is below 0 where there are none.
Vec4 sphereAround(const Mesh::VertexBufferType &vertices)
{
    if (vertices.empty())
        return Vec4(0, 0, 0, -1);
    MeshVector3 low = vertices.front().position, high = low;
    for (const DefaultMeshVertex &vertex : vertices)
    {
        const MeshVector3 &p = vertex.position;
        low = {std::min(low.x, p.x), std::min(low.y, p.y), std::min(low.z, p.z)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y), std::max(high.z, p.z)};
    }
    Vec4 sphere((low.x + high.x) / 2, (low.y + high.y) / 2, (low.z + high.z) / 2, 0);
    for (const DefaultMeshVertex &vertex : vertices)
    {
        const MeshVector3 &p = vertex.position;
        sphere.w = std::max(sphere.w, std::hypot(p.x - sphere.x, p.y - sphere.y, p.z - sphere.z));
    }
    return sphere;
}

bool hasSize(IDirect3DTexture9 &texture, int width, int height)
{
    D3DSURFACE_DESC description = {};
    return SUCCEEDED(texture.GetLevelDesc(0, &description)) && description.Width == static_cast<UINT>(width) &&
           description.Height == static_cast<UINT>(height);
}

/// Replaces a texture, or none, by an empty one of an image's size.
ErrorCode makeCoverageTexture(IDirect3DDevice9 *device, const CoverageImage &image, IDirect3DTexture9 *&texture)
{
    if (texture)
        texture->Release();
    texture = nullptr;
    return verified(D3DXCreateTexture(device, static_cast<UINT>(image.width), static_cast<UINT>(image.height), 1, 0,
                                      D3DFMT_A8L8, D3DPOOL_MANAGED, &texture),
                    "Could not create texture.");
}

ErrorCode copyCoverage(IDirect3DTexture9 &texture, const CoverageImage &image, const PixelRectangle &part)
{
    constexpr std::uint16_t white = 0xFF;
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
                       [](std::uint8_t coverage) { return static_cast<std::uint16_t>(white | coverage << 8); });
    }
    return verified(texture.UnlockRect(0), "Could not unlock texture.");
}

template <class Cache>
void eraseDead(Cache &cache, void (*release)(typename Cache::mapped_type &))
{
    for (auto entry = cache.begin(); entry != cache.end();)
    {
        if (entry->first.isValid())
        {
            ++entry;
            continue;
        }
        release(entry->second);
        entry = cache.erase(entry);
    }
}

} // namespace

template <class Buffer>
ErrorCode GraphicsSystem2::fillBuffer(Buffer *&buffer, unsigned &capacity, const void *data, unsigned size)
{
    typedef BufferKind<Buffer> Kind;
    if (size > capacity)
    {
        if (buffer)
            buffer->Release();
        buffer = nullptr;
        capacity = 0;
        const ErrorCode created = verified(Kind::create(device, size, &buffer), Kind::couldNotCreate);
        if (!created.succeeded())
            return created;
        capacity = size;
    }
    if (size == 0)
        return ErrorCode::SUCCESS;
    void *place = nullptr;
    const ErrorCode locked = verified(buffer->Lock(0, size, &place, 0), Kind::couldNotLock);
    if (!locked.succeeded())
        return locked;
    std::memcpy(place, data, size);
    return verified(buffer->Unlock(), Kind::couldNotUnlock);
}

ErrorCode GraphicsSystem2::uploadMesh(Handle<MeshAsset> mesh)
{
    static const String eventName = SCS("uploadMesh");
    const D3DPerfScopedEvent event(eventName);
    const auto asset = mesh.lookup();
    if (!asset)
        return ErrorCode::BAD_HANDLE;
    ErrorCode result = device ? checkDrawable(*asset) : ErrorCode(ErrorCode::LOST_ASSET);
    if (result.succeeded())
        result = copyToDevice(mesh, asset->getMeshData());
    asset->onUploadComplete(result);
    return result;
}

ErrorCode GraphicsSystem2::copyToDevice(const Handle<MeshAsset> &asset, const Mesh &mesh)
{
    if (staticMeshes.find(asset) == staticMeshes.end())
        releaseDeadAssets();
    MeshData &data = staticMeshes[asset];
    data.meshHeader = mesh.getChunkHeader();
    data.sphere = sphereAround(mesh.getVertexBufferData());
    ErrorCode result = fillBuffer(data.vertices, data.maxVertexSize, mesh.getVertexBufferData().data(),
                                  data.meshHeader.totalVertexSize);
    if (result.succeeded())
        result = fillBuffer(data.indices, data.maxIndexSize, mesh.getIndexBufferData().data(),
                            data.meshHeader.totalIndexSize);
    if (!result.succeeded())
        data.meshHeader.primCount = 0; // half a mesh is not drawn
    return result;
}

void GraphicsSystem2::releaseDeadAssets()
{
    eraseDead<MeshCache>(staticMeshes,
                         [](MeshData &data)
                         {
                             if (data.vertices)
                                 data.vertices->Release();
                             if (data.indices)
                                 data.indices->Release();
                         });
    eraseDead<TextureCache>(staticTextures, [](IDirect3DTexture9 *&texture) { texture->Release(); });
}

ErrorCode GraphicsSystem2::uploadTexture(Handle<TextureAsset> texture)
{
    const auto asset = texture.lookup();
    if (!asset)
        return ErrorCode::BAD_HANDLE;
    ErrorCode result = ErrorCode::LOST_ASSET;
    IDirect3DTexture9 *loaded = nullptr;
    if (device)
        result = dxCall(D3DXCreateTextureFromFileA(device, asset->getFileName().toCString(), &loaded));
    if (device && !result.succeeded())
        KV_LOGF(Logger_::I_ERROR, "%s", port::lastTextureError().c_str());
    if (loaded)
    {
        IDirect3DTexture9 *&entry = staticTextures[texture];
        if (entry)
            entry->Release();
        entry = loaded;
    }
    asset->onUploadComplete(result);
    return result;
}

ErrorCode GraphicsSystem2::uploadCoverage(Handle<TextureAsset> texture, const CoverageImage &image)
{
    const auto asset = texture.lookup();
    if (!asset)
        return ErrorCode::BAD_HANDLE;
    ErrorCode result = ErrorCode::LOST_ASSET;
    if (device)
    {
        IDirect3DTexture9 *&entry = staticTextures[texture];
        const bool fits = entry && hasSize(*entry, image.width, image.height);
        const PixelRectangle whole{0, 0, image.width, image.height};
        result = fits ? ErrorCode(ErrorCode::SUCCESS) : makeCoverageTexture(device, image, entry);
        if (result.succeeded())
            result = copyCoverage(*entry, image, fits ? image.changed : whole);
        if (!entry)
            staticTextures.erase(texture);
    }
    asset->onUploadComplete(result);
    return result;
}

ErrorCode GraphicsSystem2::uploadShader(Handle<ShaderAsset> shader)
{
    return ErrorCode::NOT_IMPLEMENTED;
}

ErrorReturn<GraphicsSystem2::MeshData> GraphicsSystem2::getMeshData(const Handle<MeshAsset> &mesh)
{
    const auto data = staticMeshes.find(mesh);
    if (data == staticMeshes.end())
        return ErrorCode(ErrorCode::UNKNOWN_KEY);
    return data->second;
}

Vec4 GraphicsSystem2::getMeshSphere(const Handle<MeshAsset> &mesh) const
{
    const auto data = staticMeshes.find(mesh);
    return data == staticMeshes.end() ? Vec4(0, 0, 0, -1) : data->second.sphere;
}

IDirect3DTexture9 *GraphicsSystem2::getTexturePtr(const Handle<TextureAsset> &texture)
{
    const auto loaded = staticTextures.find(texture);
    return loaded == staticTextures.end() ? nullptr : loaded->second;
}
