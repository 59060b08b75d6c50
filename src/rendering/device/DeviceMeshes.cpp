#include "rendering/device/DeviceMeshes.h"

#include "rendering/device/DeviceCalls.h"

#include "assets/models/MeshAsset.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>

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

template <class Buffer>
ErrorCode fillBuffer(IDirect3DDevice9 &device, Buffer *&buffer, unsigned &capacity, const void *data, unsigned size)
{
    typedef BufferKind<Buffer> Kind;
    if (size > capacity)
    {
        if (buffer)
            buffer->Release();
        buffer = nullptr;
        capacity = 0;
        const ErrorCode created = verified(Kind::create(&device, size, &buffer), Kind::couldNotCreate);
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

void releaseBuffers(MeshData &mesh)
{
    releaseAndForget(mesh.vertices);
    releaseAndForget(mesh.indices);
}

} // namespace

ErrorCode DeviceMeshes::upload(IDirect3DDevice9 &device, const Handle<MeshAsset> &mesh)
{
    const auto asset = mesh.lookup();
    if (!asset)
        return ErrorCode::BAD_HANDLE;
    const ErrorCode drawable = checkDrawable(*asset);
    return drawable.succeeded() ? copy(device, staticMeshes[mesh], asset->getMeshData()) : drawable;
}

ErrorCode DeviceMeshes::copy(IDirect3DDevice9 &device, MeshData &data, const Mesh &mesh)
{
    data.meshHeader = mesh.getChunkHeader();
    data.sphere = sphereAround(mesh.getVertexBufferData());
    ErrorCode result = fillBuffer(device, data.vertices, data.maxVertexSize, mesh.getVertexBufferData().data(),
                                  data.meshHeader.totalVertexSize);
    if (result.succeeded())
        result = fillBuffer(device, data.indices, data.maxIndexSize, mesh.getIndexBufferData().data(),
                            data.meshHeader.totalIndexSize);
    if (!result.succeeded())
        data.meshHeader.primCount = 0; // half a mesh is not drawn
    return result;
}

const MeshData *DeviceMeshes::find(const Handle<MeshAsset> &mesh) const
{
    const auto data = staticMeshes.find(mesh);
    return data == staticMeshes.end() ? nullptr : &data->second;
}

void DeviceMeshes::releaseDead()
{
    for (auto entry = staticMeshes.begin(); entry != staticMeshes.end();)
    {
        const bool alive = entry->first.isValid();
        if (!alive)
            releaseBuffers(entry->second);
        entry = alive ? std::next(entry) : staticMeshes.erase(entry);
    }
}

void DeviceMeshes::release()
{
    for (auto &[asset, mesh] : staticMeshes)
        releaseBuffers(mesh);
    staticMeshes.clear();
}
