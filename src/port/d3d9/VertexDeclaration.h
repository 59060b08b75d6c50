// VertexDeclaration: how the bytes of the vertex streams reach the inputs of vertex shaders.
#pragma once

#include "port/d3d9/Resource.h"

#include <array>
#include <cstdint>
#include <epoxy/gl.h>
#include <vector>

namespace port
{

class IndexBuffer;
class VertexBuffer;
struct FrameStats;

constexpr UINT maxStreams = 4;

/// The shader input that a usage feeds, or -1: POSITION 0, NORMAL 1, TANGENT 2, BINORMAL 3, COLOR0 and 1 at 4 and 5,
/// TEXCOORD0 to 9 at 6 to 15.
int vertexInputLocation(BYTE usage, BYTE usageIndex);

/// What a stream draws from.
struct StreamSource
{
    const VertexBuffer *buffer = nullptr;
    UINT offset = 0;
    UINT stride = 0;
    UINT divisor = 0; ///< 0 a step for each vertex, 1 for each instance
};

class VertexDeclaration final : public IDirect3DVertexDeclaration9, public Resource
{
public:
    /// Null when an element is of a type, usage or stream that is not supported; the debug output tells which.
    static VertexDeclaration *create(Device &device, const D3DVERTEXELEMENT9 *elements);
    ~VertexDeclaration() override;

    ULONG AddRef() override { return addUser(); }
    ULONG Release() override { return removeUser(); }
    HRESULT GetDeclaration(D3DVERTEXELEMENT9 *out, UINT *count) override;

    /// Brings streams and indices to the library, skipping what is in place already.
    void attach(const std::array<StreamSource, maxStreams> &streams, const IndexBuffer *indices, FrameStats &stats);
    GLuint id() const { return vertexArray; }

private:
    struct Attached
    {
        std::uint64_t buffer = 0;
        UINT offset = 0;
        UINT stride = 0;
        UINT divisor = 0;
    };
    VertexDeclaration(Device &device, std::vector<D3DVERTEXELEMENT9> elements);

    std::vector<D3DVERTEXELEMENT9> elements; ///< terminator included
    unsigned usedStreams = 0;                ///< bit per stream
    GLuint vertexArray = 0;
    std::array<Attached, maxStreams> attached;
    std::uint64_t attachedIndices = 0;
};

} // namespace port
