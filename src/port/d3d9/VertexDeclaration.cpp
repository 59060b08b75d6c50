#include "port/d3d9/VertexDeclaration.h"

#include "port/d3d9/Buffer.h"
#include "port/d3d9/D3D9Extras.h"
#include "port/d3d9/DebugText.h"
#include "port/d3d9/Device.h"

#include <algorithm>

namespace
{

constexpr UINT maxElements = 64;

bool isEnd(const D3DVERTEXELEMENT9 &element)
{
    return element.Stream == 0xff;
}

bool isSupported(const D3DVERTEXELEMENT9 &element)
{
    return element.Stream < port::maxStreams && element.Type <= D3DDECLTYPE_D3DCOLOR &&
           port::vertexInputLocation(element.Usage, element.UsageIndex) >= 0;
}

} // namespace

namespace port
{

int vertexInputLocation(BYTE usage, BYTE usageIndex)
{
    switch (usage)
    {
    case D3DDECLUSAGE_POSITION:
        return usageIndex == 0 ? 0 : -1;
    case D3DDECLUSAGE_NORMAL:
        return usageIndex == 0 ? 1 : -1;
    case D3DDECLUSAGE_TANGENT:
        return usageIndex == 0 ? 2 : -1;
    case D3DDECLUSAGE_BINORMAL:
        return usageIndex == 0 ? 3 : -1;
    case D3DDECLUSAGE_COLOR:
        return usageIndex < 2 ? 4 + usageIndex : -1;
    case D3DDECLUSAGE_TEXCOORD:
        return usageIndex < 10 ? 6 + usageIndex : -1;
    default:
        return -1;
    }
}

VertexDeclaration *VertexDeclaration::create(Device &device, const D3DVERTEXELEMENT9 *elements)
{
    std::vector<D3DVERTEXELEMENT9> list;
    for (; !isEnd(*elements); ++elements)
    {
        if (!isSupported(*elements) || list.size() == maxElements)
        {
            debugText("vertex declaration: element %zu (stream %u, type %u, usage %u %u) is not supported", list.size(),
                      elements->Stream, elements->Type, elements->Usage, elements->UsageIndex);
            return nullptr;
        }
        list.push_back(*elements);
    }
    list.push_back(D3DDECL_END());
    return new VertexDeclaration(device, std::move(list));
}

VertexDeclaration::VertexDeclaration(Device &device, std::vector<D3DVERTEXELEMENT9> list)
    : Resource(device, "vertex declaration", D3DPOOL_MANAGED), elements(std::move(list))
{
    glCreateVertexArrays(1, &vertexArray);
    for (const D3DVERTEXELEMENT9 &element : elements)
    {
        if (isEnd(element))
            break;
        const auto location = static_cast<GLuint>(vertexInputLocation(element.Usage, element.UsageIndex));
        const bool packed = element.Type == D3DDECLTYPE_D3DCOLOR;
        const GLint components = packed ? static_cast<GLint>(GL_BGRA) : element.Type + 1;
        glEnableVertexArrayAttrib(vertexArray, location);
        glVertexArrayAttribFormat(vertexArray, location, components, packed ? GL_UNSIGNED_BYTE : GL_FLOAT, packed,
                                  element.Offset);
        glVertexArrayAttribBinding(vertexArray, location, element.Stream);
        usedStreams |= 1u << element.Stream;
    }
}

VertexDeclaration::~VertexDeclaration()
{
    glDeleteVertexArrays(1, &vertexArray);
}

HRESULT VertexDeclaration::GetDeclaration(D3DVERTEXELEMENT9 *out, UINT *count)
{
    if (!count)
        return D3DERR_INVALIDCALL;
    *count = static_cast<UINT>(elements.size());
    if (out)
        std::copy(elements.begin(), elements.end(), out);
    return D3D_OK;
}

void VertexDeclaration::attach(const std::array<StreamSource, maxStreams> &streams, const IndexBuffer *indices,
                               FrameStats &stats)
{
    for (UINT stream = 0; stream < maxStreams; ++stream)
    {
        if (!(usedStreams & (1u << stream)))
            continue;
        const StreamSource &source = streams[stream];
        Attached &now = attached[stream];
        const std::uint64_t serial = source.buffer ? source.buffer->getMemory().serial() : 0;
        if (now.buffer != serial || now.offset != source.offset || now.stride != source.stride)
        {
            glVertexArrayVertexBuffer(vertexArray, stream, source.buffer ? source.buffer->getMemory().id() : 0,
                                      source.offset, static_cast<GLsizei>(source.stride));
            now = {serial, source.offset, source.stride, now.divisor};
            ++stats.stateChanges;
        }
        if (now.divisor != source.divisor)
        {
            glVertexArrayBindingDivisor(vertexArray, stream, source.divisor);
            now.divisor = source.divisor;
            ++stats.stateChanges;
        }
    }
    const std::uint64_t serial = indices ? indices->getMemory().serial() : 0;
    if (indices && attachedIndices != serial)
    {
        glVertexArrayElementBuffer(vertexArray, indices->getMemory().id());
        attachedIndices = serial;
        ++stats.stateChanges;
    }
}

} // namespace port
