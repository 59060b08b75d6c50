// Mesh: one chunk of a model file in memory, in the layout that goes to the graphics device as it stands.
#pragma once

#include "assets/models/BulkAllocator.h"
#include "assets/models/MeshVectors.h"
#include "assets/models/ModelFileHeaders.h"

#include "foundation/ErrorCode.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// One vertex of a drawn mesh: 56 bytes in the file, in memory and in the vertex buffer.
struct DefaultMeshVertex
{
    MeshVector3 position;
    MeshVector3 normal;
    MeshVector3 tangent;
    MeshVector3 bitangent;
    MeshVector2 texCoord0;
};

static_assert(sizeof(DefaultMeshVertex) == 56, "the vertex layout is part of the file format");
static_assert(offsetof(DefaultMeshVertex, texCoord0) == 48, "the vertex layout is part of the file format");

/// A mesh as plain values: vertices, indices and what they are grouped into. Copies are deep.
class Mesh
{
public:
    typedef std::vector<DefaultMeshVertex, BulkAllocator<DefaultMeshVertex>> VertexBufferType;
    typedef std::vector<u32, BulkAllocator<u32>> IndexBufferType;

    /// Copies the given contents in; no indices make a mesh whose vertices are drawn in order.
    void setData(const VertexBufferType &newVertices, const IndexBufferType &newIndices = IndexBufferType(),
                 MeshPrimitiveType newPrimType = MPT_TRIANGLES);

    /// Takes types and counts from a chunk's header and sizes both buffers for a read straight into them.
    ///
    /// The buffers' elements are unwritten afterwards: the caller fills them. Checks nothing; ModelFile does.
    void prepareForRead(const MeshChunkHeader &h);

    const VertexBufferType &getVertexBufferData() const { return vertexBuffer; }
    const IndexBufferType &getIndexBufferData() const { return indexBuffer; }
    MeshPrimitiveType getPrimitiveType() const { return primType; }
    MeshVertexType getVertexType() const { return vertexType; }

    /// The header that describes the present contents.
    MeshChunkHeader getChunkHeader() const;

    /// Primitives in the mesh: by index count, or by vertex count without indices; -1 for a type that is not drawn.
    int calculatePrimCount() const;

    /// Whether the device can be given this mesh: a drawable type, a known vertex layout, no index out of range.
    /// @return success, NOT_IMPLEMENTED for a type that is not drawn, OUT_OF_BOUNDS for an index beyond the vertices
    /// @cost one pass over the indices
    ErrorCode checkDrawable() const;

private:
    friend class ModelFile;

    VertexBufferType vertexBuffer;
    IndexBufferType indexBuffer;
    MeshPrimitiveType primType = MPT_TRIANGLES;
    MeshVertexType vertexType = MVT_DEFAULT; ///< always MVT_DEFAULT in a sound mesh
};
