// DeviceMeshes: the device's copies of meshes.
#pragma once

#include "assets/models/ModelFileHeaders.h"

#include "foundation/ErrorCode.h"
#include "foundation/Vector.h"
#include "object/tree/Handle.h"

#include <unordered_map>

class Mesh;
class MeshAsset;
struct IDirect3DDevice9;
struct IDirect3DIndexBuffer9;
struct IDirect3DVertexBuffer9;

/// The device's copy of a mesh.
struct MeshData
{
    IDirect3DVertexBuffer9 *vertices = nullptr;
    IDirect3DIndexBuffer9 *indices = nullptr; ///< null for a mesh without indices
    unsigned maxVertexSize = 0;               ///< bytes of the vertex buffer as created
    unsigned maxIndexSize = 0;                ///< bytes of the index buffer as created
    MeshChunkHeader meshHeader = {};          ///< describes the present contents
    Vec4 sphere = Vec4(0, 0, 0, -1);          ///< around its vertices: centre and, in w, radius
};

/// Meshes by asset, in managed memory: they survive a reset of the device. Owns the buffers.
class DeviceMeshes
{
public:
    DeviceMeshes() = default;
    ~DeviceMeshes() { release(); }
    DeviceMeshes(const DeviceMeshes &) = delete;
    DeviceMeshes &operator=(const DeviceMeshes &) = delete;

    /// Copies a mesh; buffers that are big enough are used again.
    ///
    /// One that cannot be drawn (an index beyond its vertices, a type that none is drawn with) is refused with its name.
    ErrorCode upload(IDirect3DDevice9 &device, const Handle<MeshAsset> &mesh);
    /// The copy of a mesh; null if there is none.
    const MeshData *find(const Handle<MeshAsset> &mesh) const;
    /// Gives up the copies of assets that have died.
    void releaseDead();
    void release();

private:
    ErrorCode copy(IDirect3DDevice9 &device, MeshData &data, const Mesh &mesh);

    typedef std::unordered_map<Handle<MeshAsset>, MeshData> MeshCache;

    MeshCache staticMeshes;
};
