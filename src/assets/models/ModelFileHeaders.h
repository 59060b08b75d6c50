// ModelFileHeaders: the two headers of a .kaVelModel file, byte for byte as they stand in the file.
#pragma once

#include <cstdint>

/// The format's one kind of whole number, little-endian in the file.
typedef std::uint32_t u32;

/// What a mesh's indices (or its vertices, when it has no indices) are grouped into.
enum MeshPrimitiveType : u32
{
    MPT_TRIANGLES = 0, ///< three a triangle
    MPT_LINES = 1,     ///< two a line
    MPT_POLYGONS = 2,  ///< polygons of any size: raw material of mesh building, never drawn and never stored
    MPT_POINTS = 3     ///< one a point
};

/// Layout of one vertex in a vertex stream.
enum MeshVertexType : u32
{
    MVT_DEFAULT = 0,          ///< DefaultMeshVertex
    MVT_DEFAULT_INSTANCE = 1, ///< DefaultInstanceVertex, the second stream of an instanced draw
    MVT_NONE = 2              ///< no such stream
};

/// First 8 bytes of a model file. All numbers are little-endian, as on every host we run on.
struct ModelFileHeader
{
    static constexpr u32 correctMagic = 0x6B564D30; ///< "0MVk" in the file

    u32 magic;
    u32 numChunks; ///< mesh chunks that follow, back to back
};

/// First 32 bytes of a mesh chunk; the indices follow, then the vertices.
struct MeshChunkHeader
{
    static constexpr u32 correctMagic = 0x6D657368; ///< "hsem" in the file

    u32 magic;
    u32 primType;   ///< MeshPrimitiveType
    u32 vertexType; ///< MeshVertexType
    u32 vertCount;
    u32 primCount;
    u32 indexCount;      ///< 0 for a mesh without indices
    u32 totalIndexSize;  ///< bytes, 4 an index
    u32 totalVertexSize; ///< bytes, 56 a vertex
};

static_assert(sizeof(ModelFileHeader) == 8, "the file header is 8 bytes on disk");
static_assert(sizeof(MeshChunkHeader) == 32, "the chunk header is 32 bytes on disk");
