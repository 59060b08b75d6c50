// GraphicsSystem2: the draw call.
#include "rendering/device/GraphicsSystem2.h"

#include "rendering/device/DeviceCalls.h"
#include "rendering/frame/RenderParams.h"

#include "object/reflection/EnumText.h"

const VertexDescription &GraphicsSystem2::getVertexDescription(MeshVertexType type) const
{
    return layouts.describe(type);
}

IDirect3DVertexDeclaration9 *GraphicsSystem2::getVertexDeclaration(MeshVertexType vertexType,
                                                                   MeshVertexType instanceType) const
{
    return layouts.declare(*device, vertexType, instanceType);
}

ErrorReturn<void *> GraphicsSystem2::lockInstanceBuffer(MeshVertexType instanceType, int instanceCount)
{
    KV_CRITICAL_ASSERT(instanceType != MVT_NONE, "lockInstanceBuffer called with MVT_NONE.");
    if (instanceType == MVT_NONE || instanceCount < 0)
        return ErrorCode(ErrorCode::OUT_OF_BOUNDS);
    const auto recordSize = static_cast<unsigned>(getVertexDescription(instanceType).vertexSize);
    return instances.lock(*device, recordSize * static_cast<unsigned>(instanceCount));
}

ErrorCode GraphicsSystem2::unlockInstanceBuffer()
{
    return instances.unlock();
}

void GraphicsSystem2::releaseInstanceBuffer()
{
    instances.release();
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
    return verified(device->SetStreamSource(1, instances.getBuffer(), instances.getCurrentStart(),
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
