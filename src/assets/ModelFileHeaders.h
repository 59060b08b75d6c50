// ModelFileHeaders: the two headers of a .kaVelModel file, byte for byte as they stand in the file.
#pragma once

#include <cstdint>

/// What a mesh's indices (or its vertices, when it has no indices) are grouped into.
enum MeshPrimitiveType : std::uint32_t
{
    MPT_TRIANGLES = 0, ///< three a triangle
    MPT_LINES = 1,     ///< two a line
    MPT_POLYGONS = 2,  ///< polygons of any size: raw material of mesh building, never drawn and never stored
    MPT_POINTS = 3     ///< one a point
};

/// Layout of one vertex in a vertex stream.
enum MeshVertexType : std::uint32_t
{
    MVT_DEFAULT = 0,          ///< DefaultMeshVertex
    MVT_DEFAULT_INSTANCE = 1, ///< DefaultInstanceVertex, the second stream of an instanced draw
    MVT_NONE = 2              ///< no such stream
};

/// First 8 bytes of a model file. All numbers are little-endian, as on every host we run on.
struct ModelFileHeader
{
    static constexpr std::uint32_t correctMagic = 0x6B564D30; ///< "0MVk" in the file

    std::uint32_t magic;
    std::uint32_t numChunks; ///< mesh chunks that follow, back to back
};

/// First 32 bytes of a mesh chunk; the indices follow, then the vertices.
struct MeshChunkHeader
{
    static constexpr std::uint32_t correctMagic = 0x6D657368; ///< "hsem" in the file

    std::uint32_t magic;
    std::uint32_t primType;   ///< MeshPrimitiveType
    std::uint32_t vertexType; ///< MeshVertexType
    std::uint32_t vertCount;
    std::uint32_t primCount;
    std::uint32_t indexCount;      ///< 0 for a mesh without indices
    std::uint32_t totalIndexSize;  ///< bytes, 4 an index
    std::uint32_t totalVertexSize; ///< bytes, 56 a vertex
};

static_assert(sizeof(ModelFileHeader) == 8, "the file header is 8 bytes on disk");
static_assert(sizeof(MeshChunkHeader) == 32, "the chunk header is 32 bytes on disk");
