#include "assets/models/Mesh.h"

#include <algorithm>

namespace
{

/// Highest index of a list that is not empty.
std::uint32_t highestIndex(const Mesh::IndexBufferType &indices)
{
    // A plain loop: it becomes vector instructions, which max_element's pointer does not.
    std::uint32_t highest = 0;
    for (const std::uint32_t index : indices)
        highest = std::max(highest, index);
    return highest;
}

} // namespace

void Mesh::setData(const VertexBufferType &newVertices, const IndexBufferType &newIndices,
                   MeshPrimitiveType newPrimType)
{
    vertexBuffer = newVertices;
    indexBuffer = newIndices;
    primType = newPrimType;
    vertexType = MVT_DEFAULT;
}

void Mesh::prepareForRead(const MeshChunkHeader &h)
{
    primType = static_cast<MeshPrimitiveType>(h.primType);
    vertexType = static_cast<MeshVertexType>(h.vertexType);
    vertexBuffer.resize(h.vertCount);
    indexBuffer.resize(h.indexCount);
}

MeshChunkHeader Mesh::getChunkHeader() const
{
    MeshChunkHeader h;
    h.magic = MeshChunkHeader::correctMagic;
    h.primType = primType;
    h.vertexType = vertexType;
    h.vertCount = static_cast<std::uint32_t>(vertexBuffer.size());
    h.primCount = static_cast<std::uint32_t>(calculatePrimCount());
    h.indexCount = static_cast<std::uint32_t>(indexBuffer.size());
    h.totalIndexSize = h.indexCount * static_cast<std::uint32_t>(sizeof(std::uint32_t));
    h.totalVertexSize = h.vertCount * static_cast<std::uint32_t>(sizeof(DefaultMeshVertex));
    return h;
}

int Mesh::calculatePrimCount() const
{
    const int elements = static_cast<int>(indexBuffer.empty() ? vertexBuffer.size() : indexBuffer.size());
    switch (primType)
    {
    case MPT_TRIANGLES:
        return elements / 3;
    case MPT_LINES:
        return elements / 2;
    case MPT_POINTS:
        return elements;
    default:
        return -1;
    }
}

ErrorCode Mesh::checkDrawable() const
{
    if (calculatePrimCount() < 0 || vertexType != MVT_DEFAULT)
        return ErrorCode::NOT_IMPLEMENTED;
    if (!indexBuffer.empty() && highestIndex(indexBuffer) >= vertexBuffer.size())
        return ErrorCode::OUT_OF_BOUNDS;
    return ErrorCode::SUCCESS;
}
