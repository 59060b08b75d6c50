// GraphicsSystem2: vertex layouts, the instance ring and the draw call.
#include "rendering/device/GraphicsSystem2.h"

#include "rendering/frame/RenderParams.h"

#include "foundation/Assertions.h"
#include "object/reflection/EnumText.h"
#include "port/d3d9/d3d9.h"

namespace
{

/// Raises a minor assertion for a failure; a lost device is none, since the next frame brings it back.
ErrorCode verified(HRESULT hr)
{
    const ErrorCode result = dxCall(hr);
    KV_VERIFY(result.succeeded() || hr == D3DERR_DEVICELOST, result.getErrorString());
    return result;
}

/// Usage by semantic; false for a semantic that is none.
bool findUsage(VertexElementSemantic semantic, D3DDECLUSAGE &usage)
{
    switch (semantic)
    {
    case VES_POSITION:
        usage = D3DDECLUSAGE_POSITION;
        return true;
    case VES_NORMAL:
        usage = D3DDECLUSAGE_NORMAL;
        return true;
    case VES_TANGENT:
        usage = D3DDECLUSAGE_TANGENT;
        return true;
    case VES_BITANGENT:
        usage = D3DDECLUSAGE_BINORMAL;
        return true;
    case VES_OTHER:
        usage = D3DDECLUSAGE_TEXCOORD;
        return true;
    }
    return false;
}

} // namespace

void GraphicsSystem2::initDefaultVertexTypes()
{
    VertexDescription vertex(SCS("DefaultMeshVertex"), MVT_DEFAULT, sizeof(DefaultMeshVertex));
    vertex.addElement(offsetof(DefaultMeshVertex, position), SCS("position"), VES_POSITION, 3, 1);
    vertex.addElement(offsetof(DefaultMeshVertex, normal), SCS("normal"), VES_NORMAL, 3, 1);
    vertex.addElement(offsetof(DefaultMeshVertex, tangent), SCS("tangent"), VES_TANGENT, 3, 1);
    vertex.addElement(offsetof(DefaultMeshVertex, bitangent), SCS("bitangent"), VES_BITANGENT, 3, 1);
    vertex.addElement(offsetof(DefaultMeshVertex, texCoord0), SCS("texCoord0"), VES_OTHER, 2, 1);
    addVertexType(vertex);

    VertexDescription instance(SCS("DefaultInstanceVertex"), MVT_DEFAULT_INSTANCE, sizeof(DefaultInstanceVertex));
    instance.addElement(offsetof(DefaultInstanceVertex, modelMatrix), SCS("modelMatrix"), VES_OTHER, 4, 3);
    instance.addElement(offsetof(DefaultInstanceVertex, normalMatrix), SCS("normalMatrix"), VES_OTHER, 3, 3);
    addVertexType(instance);
}

void GraphicsSystem2::addVertexType(const VertexDescription &description)
{
    vertexDescriptions[description.vertexType] = description;
}

const VertexDescription &GraphicsSystem2::getVertexDescription(MeshVertexType type) const
{
    static const VertexDescription unknown;
    const auto description = vertexDescriptions.find(type);
    KV_ASSERT(description != vertexDescriptions.end(), "No vertex type %i is described.", static_cast<int>(type));
    return description == vertexDescriptions.end() ? unknown : description->second;
}

IDirect3DVertexDeclaration9 *GraphicsSystem2::getVertexDeclaration(MeshVertexType vertexType,
                                                                   MeshVertexType instanceType) const
{
    const StreamTypes types(vertexType, instanceType);
    const auto known = d3dVertexDeclarations.find(types);
    if (known != d3dVertexDeclarations.end())
        return known->second;
    std::vector<D3DVERTEXELEMENT9> elements;
    unsigned nextTexCoordID = 0;
    addD3D9VertexElements(elements, 0, vertexType, nextTexCoordID);
    if (instanceType != MVT_NONE)
        addD3D9VertexElements(elements, 1, instanceType, nextTexCoordID);
    elements.push_back(D3DDECL_END());
    IDirect3DVertexDeclaration9 *declaration = nullptr;
    if (!verified(device->CreateVertexDeclaration(elements.data(), &declaration)).succeeded())
        return nullptr;
    d3dVertexDeclarations[types] = declaration;
    return declaration;
}

void GraphicsSystem2::addD3D9VertexElements(std::vector<D3DVERTEXELEMENT9> &elements, unsigned stream,
                                            MeshVertexType type, unsigned &nextTexCoordID) const
{
    for (const VertexElement &element : getVertexDescription(type).elements)
        for (int vector = 0; vector < element.vectors; ++vector)
        {
            D3DDECLUSAGE usage = D3DDECLUSAGE_TEXCOORD;
            const bool known = findUsage(element.semantic, usage);
            KV_CRITICAL_ASSERT(known,
                               "Unknown VertexElementSemantic %s. GraphicsSystem2::addD3D9VertexElements probably "
                               "needs to be updated.",
                               enumToString(element.semantic).toCString());
            const auto offset = element.offset + sizeof(float) * static_cast<std::size_t>(vector * element.values);
            D3DVERTEXELEMENT9 d3dElement = {};
            d3dElement.Stream = static_cast<WORD>(stream);
            d3dElement.Offset = static_cast<WORD>(offset);
            d3dElement.Type = static_cast<BYTE>(D3DDECLTYPE_FLOAT1 + element.values - 1);
            d3dElement.Method = D3DDECLMETHOD_DEFAULT;
            d3dElement.Usage = static_cast<BYTE>(usage);
            d3dElement.UsageIndex = static_cast<BYTE>(usage == D3DDECLUSAGE_TEXCOORD ? nextTexCoordID++ : vector);
            elements.push_back(d3dElement);
        }
}

ErrorReturn<void *> GraphicsSystem2::lockInstanceBuffer(MeshVertexType instanceType, int instanceCount)
{
    KV_CRITICAL_ASSERT(instanceType != MVT_NONE, "lockInstanceBuffer called with MVT_NONE.");
    if (instanceType == MVT_NONE || instanceCount < 0)
        return ErrorCode(ErrorCode::OUT_OF_BOUNDS);
    const auto needed =
        static_cast<unsigned>(getVertexDescription(instanceType).vertexSize) * static_cast<unsigned>(instanceCount);
    const ErrorCode grown = growInstanceBuffer(needed);
    if (!grown.succeeded())
        return grown;

    unsigned offset = lastInstanceEndByte;
    DWORD flags = D3DLOCK_NOOVERWRITE;
    if (offset + needed > instanceBufferSize)
    {
        offset = 0;
        flags = D3DLOCK_DISCARD;
        lastInstanceEndByte = 0;
    }
    void *place = nullptr;
    const ErrorCode locked = verified(instanceBuffer->Lock(offset, needed, &place, flags));
    if (!locked.succeeded())
        return locked;
    currentInstanceStart = offset;
    lastInstanceEndByte += needed;
    return place;
}

ErrorCode GraphicsSystem2::growInstanceBuffer(unsigned needed)
{
    if (instanceBuffer && instanceBufferSize >= needed)
        return ErrorCode::SUCCESS;
    releaseInstanceBuffer();
    const ErrorCode result = verified(device->CreateVertexBuffer(needed, D3DUSAGE_DYNAMIC | D3DUSAGE_WRITEONLY, 0,
                                                                 D3DPOOL_DEFAULT, &instanceBuffer, nullptr));
    if (result.succeeded())
        instanceBufferSize = needed;
    return result;
}

ErrorCode GraphicsSystem2::unlockInstanceBuffer()
{
    if (!instanceBuffer)
        return ErrorCode::LOST_ASSET;
    const ErrorCode result = dxCall(instanceBuffer->Unlock());
    KV_ASSERT(result.succeeded(), "%s\n\n%s", "failed to unlock instance buffer", result.getErrorString().toCString());
    return result;
}

void GraphicsSystem2::releaseInstanceBuffer()
{
    if (instanceBuffer)
        instanceBuffer->Release();
    instanceBuffer = nullptr;
    instanceBufferSize = 0;
    lastInstanceEndByte = 0;
}

ErrorCode GraphicsSystem2::renderBatch(const BatchRenderParams &renderParams, const String &shaderSet, unsigned pass,
                                       MeshVertexType instanceType, int instanceCount)
{
    const ErrorReturn<MeshData> mesh = getMeshData(renderParams.mesh);
    KV_VERIFY(mesh.succeeded(), "Mesh not yet available");
    if (!mesh.succeeded() || !mesh.value.vertices || mesh.value.meshHeader.primCount == 0)
        return ErrorCode::SUCCESS;
    const ShaderID *shader = renderParams.shaders.find(shaderSet);
    if (!shader)
        return ErrorCode::UNKNOWN_KEY;

    ErrorCode result = shaders.BeginPass(shader->effect, pass);
    KV_VERIFY(result.succeeded() || result.getHRESULT() == D3DERR_DEVICELOST, result.getErrorString());
    if (!result.succeeded())
        return result;
    result = setStreams(mesh.value, instanceType, instanceCount);
    if (result.succeeded())
        result = drawMesh(mesh.value);
    shaders.EndPass(shader->effect);
    return result;
}

ErrorCode GraphicsSystem2::setStreams(const MeshData &mesh, MeshVertexType instanceType, int instanceCount)
{
    const auto vertexType = static_cast<MeshVertexType>(mesh.meshHeader.vertexType);
    const bool instanced = instanceType != MVT_NONE;
    const UINT vertexSize = static_cast<UINT>(getVertexDescription(vertexType).vertexSize);
    const UINT vertexFrequency = instanced ? D3DSTREAMSOURCE_INDEXEDDATA | static_cast<UINT>(instanceCount) : 1u;
    const UINT instanceFrequency = instanced ? D3DSTREAMSOURCE_INSTANCEDATA | 1u : 1u;

    ErrorCode result = verified(device->SetVertexDeclaration(getVertexDeclaration(vertexType, instanceType)));
    if (result.succeeded())
        result = verified(device->SetStreamSourceFreq(0, vertexFrequency));
    if (result.succeeded())
        result = verified(device->SetStreamSource(0, mesh.vertices, 0, vertexSize));
    if (result.succeeded())
        result = verified(device->SetStreamSourceFreq(1, instanceFrequency));
    if (!result.succeeded())
        return result;
    if (!instanced)
        return verified(device->SetStreamSource(1, nullptr, 0, 0));
    return verified(device->SetStreamSource(1, instanceBuffer, currentInstanceStart,
                                            static_cast<UINT>(getVertexDescription(instanceType).vertexSize)));
}

ErrorCode GraphicsSystem2::drawMesh(const MeshData &mesh)
{
    const D3DPRIMITIVETYPE type = getD3DPrimType(mesh);
    const MeshChunkHeader &header = mesh.meshHeader;
    if (header.indexCount == 0)
        return verified(device->DrawPrimitive(type, 0, header.primCount));
    const ErrorCode result = verified(device->SetIndices(mesh.indices));
    if (!result.succeeded())
        return result;
    return verified(device->DrawIndexedPrimitive(type, 0, 0, header.vertCount, 0, header.primCount));
}

D3DPRIMITIVETYPE GraphicsSystem2::getD3DPrimType(const MeshData &mesh) const
{
    const auto type = static_cast<MeshPrimitiveType>(mesh.meshHeader.primType);
    switch (type)
    {
    case MPT_TRIANGLES:
        return D3DPT_TRIANGLELIST;
    case MPT_LINES:
        return D3DPT_LINELIST;
    case MPT_POINTS:
        return D3DPT_POINTLIST;
    default:
        KV_FATAL("Unknown MeshPrimitiveType %s. GraphicsSystem2::getD3DPrimType probably needs to be updated.",
                 enumToString(type).toCString());
        return D3DPT_TRIANGLELIST;
    }
}
