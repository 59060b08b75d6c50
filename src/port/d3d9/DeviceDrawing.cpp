// The device's states and drawing: what was set is brought to the library when a draw needs it.
#include "port/d3d9/Buffer.h"
#include "port/d3d9/DebugText.h"
#include "port/d3d9/Device.h"

#include <bit>
#include <cstring>

namespace port
{

HRESULT Device::SetViewport(const D3DVIEWPORT9 *wanted)
{
    if (!wanted || wanted->MinZ < 0.0f || wanted->MaxZ > 1.0f || wanted->MinZ > wanted->MaxZ)
        return D3DERR_INVALIDCALL;
    viewport = *wanted;
    return D3D_OK;
}

HRESULT Device::GetViewport(D3DVIEWPORT9 *out)
{
    if (!out)
        return D3DERR_INVALIDCALL;
    *out = viewport;
    return D3D_OK;
}

HRESULT Device::SetRenderState(D3DRENDERSTATETYPE renderState, DWORD value)
{
    return renderStates.set(renderState, value) ? D3D_OK : D3DERR_INVALIDCALL;
}

HRESULT Device::GetRenderState(D3DRENDERSTATETYPE renderState, DWORD *value)
{
    return value && renderStates.get(renderState, *value) ? D3D_OK : D3DERR_INVALIDCALL;
}

HRESULT Device::SetVertexDeclaration(IDirect3DVertexDeclaration9 *wanted)
{
    declaration.set(static_cast<VertexDeclaration *>(wanted));
    return D3D_OK;
}

HRESULT Device::SetStreamSource(UINT stream, IDirect3DVertexBuffer9 *buffer, UINT offset, UINT stride)
{
    if (stream >= maxStreams)
        return D3DERR_INVALIDCALL;
    Stream &slot = streams[stream];
    slot.buffer.set(static_cast<VertexBuffer *>(buffer));
    slot.offset = offset;
    slot.stride = stride;
    return D3D_OK;
}

HRESULT Device::SetStreamSourceFreq(UINT stream, UINT setting)
{
    const bool indexed = setting & D3DSTREAMSOURCE_INDEXEDDATA, instanced = setting & D3DSTREAMSOURCE_INSTANCEDATA;
    if (stream >= maxStreams || setting == 0 || (indexed && instanced) || (stream == 0 && instanced))
        return D3DERR_INVALIDCALL;
    streams[stream].frequency = setting;
    return D3D_OK;
}

HRESULT Device::SetIndices(IDirect3DIndexBuffer9 *wanted)
{
    indices.set(static_cast<IndexBuffer *>(wanted));
    return D3D_OK;
}

void Device::setProgram(GLuint wanted)
{
    program = wanted;
}

void Device::setTexture(UINT unit, Texture *texture, GLuint sampler)
{
    TextureUnit &slot = units[unit];
    if (slot.sampler != sampler)
    {
        glBindSampler(unit, sampler);
        slot.sampler = sampler;
        ++stats.stateChanges;
    }
    if (slot.bound && slot.texture.get() == texture)
        return;
    slot.texture.set(texture);
    slot.bound = true;
    glBindTextureUnit(unit, texture ? texture->id() : blackTexture);
    ++stats.stateChanges;
}

void Device::writeEffectConstants(const void *owner, const void *data, std::size_t size)
{
    constantsOwner = owner;
    effectRing.write(data, size, stats);
}

bool Device::bindTargets()
{
    TargetSet wanted;
    for (unsigned slot = 0; slot < maxRenderTargets; ++slot)
        wanted.colors[slot] = targets[slot].get();
    wanted.depth = depth.get();
    if (boundFramebuffer && wanted == boundTargets)
        return true;
    const GLuint framebuffer = framebuffers.get(wanted);
    if (!framebuffer)
        return false;
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, framebuffer);
    boundFramebuffer = framebuffer;
    boundTargets = wanted;
    ++stats.targetChanges;
    ++stats.stateChanges;
    return true;
}

void Device::applyViewport()
{
    // By its bits, so that a depth that is no number is not set anew for every draw.
    // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison)
    if (std::memcmp(&appliedViewport, &viewport, sizeof(viewport)) != 0)
    {
        glViewport(static_cast<GLint>(viewport.X), static_cast<GLint>(viewport.Y), static_cast<GLsizei>(viewport.Width),
                   static_cast<GLsizei>(viewport.Height));
        glDepthRangef(viewport.MinZ, viewport.MaxZ);
        appliedViewport = viewport;
        ++stats.stateChanges;
    }
    DeviceConstants wanted;
    // The library's pixel centres lie half a pixel right and down of whole numbers.
    wanted.pixelShift[0] = viewport.Width ? 1.0f / static_cast<float>(viewport.Width) : 0.0f;
    wanted.pixelShift[1] = viewport.Height ? -1.0f / static_cast<float>(viewport.Height) : 0.0f;
    DWORD pointSize = 0;
    renderStates.get(D3DRS_POINTSIZE, pointSize);
    wanted.pointSize = std::bit_cast<float>(pointSize);
    if (deviceConstantsWritten && wanted == deviceConstants)
        return;
    deviceConstants = wanted;
    deviceConstantsWritten = true;
    deviceRing.write(&deviceConstants, sizeof(deviceConstants), stats);
}

std::array<StreamSource, maxStreams> Device::describeStreams() const
{
    std::array<StreamSource, maxStreams> sources;
    for (UINT index = 0; index < maxStreams; ++index)
    {
        const Stream &stream = streams[index];
        const bool instanced = stream.frequency & D3DSTREAMSOURCE_INSTANCEDATA;
        const UINT divisor = instanced ? stream.frequency & ~D3DSTREAMSOURCE_INSTANCEDATA : 0;
        sources[index] = {stream.buffer.get(), stream.offset, stream.stride, divisor};
    }
    return sources;
}

UINT Device::instanceCount() const
{
    const UINT frequency = streams[0].frequency;
    return frequency & D3DSTREAMSOURCE_INDEXEDDATA ? frequency & ~D3DSTREAMSOURCE_INDEXEDDATA : 1;
}

HRESULT Device::prepareDraw(bool indexed)
{
    if (state != State::WORKING)
        return D3DERR_DEVICELOST;
    if (!program)
    {
        debugText("draw without shaders: no pass of an effect is begun");
        return D3DERR_INVALIDCALL;
    }
    if (!declaration || (indexed && !indices) || !bindTargets())
        return D3DERR_INVALIDCALL;
    applyViewport();
    renderStates.apply(stats);
    if (depth && renderStates.writesStencil())
        depth->knownStencil = -1;
    declaration->attach(describeStreams(), indexed ? indices.get() : nullptr, stats);
    if (boundVertexArray != declaration->id())
    {
        boundVertexArray = declaration->id();
        glBindVertexArray(boundVertexArray);
        ++stats.stateChanges;
    }
    if (boundProgram != program)
    {
        boundProgram = program;
        glUseProgram(program);
        ++stats.stateChanges;
    }
    return D3D_OK;
}

namespace
{

struct Primitive
{
    GLenum mode;
    UINT verticesEach;
    UINT verticesExtra;
};

/// How a primitive type counts its vertices; a mode of 0xffffffff is unknown.
Primitive primitive(D3DPRIMITIVETYPE type)
{
    switch (type)
    {
    case D3DPT_POINTLIST:
        return {GL_POINTS, 1, 0};
    case D3DPT_LINELIST:
        return {GL_LINES, 2, 0};
    case D3DPT_LINESTRIP:
        return {GL_LINE_STRIP, 1, 1};
    case D3DPT_TRIANGLELIST:
        return {GL_TRIANGLES, 3, 0};
    case D3DPT_TRIANGLESTRIP:
        return {GL_TRIANGLE_STRIP, 1, 2};
    }
    return {0xffffffffu, 0, 0};
}

} // namespace

void Device::beginCountingPixels()
{
    if (pixelQuery != 0)
        return;
    glGenQueries(1, &pixelQuery);
    glBeginQuery(GL_SAMPLES_PASSED, pixelQuery);
}

std::uint64_t Device::endCountingPixels()
{
    if (pixelQuery == 0)
        return 0;
    GLuint64 pixels = 0;
    glEndQuery(GL_SAMPLES_PASSED);
    glGetQueryObjectui64v(pixelQuery, GL_QUERY_RESULT, &pixels);
    glDeleteQueries(1, &pixelQuery);
    pixelQuery = 0;
    return pixels;
}

void Device::countDraw(D3DPRIMITIVETYPE type, UINT primitiveCount)
{
    ++stats.draws;
    stats.instances += instanceCount();
    if (type == D3DPT_TRIANGLELIST || type == D3DPT_TRIANGLESTRIP)
        stats.triangles += std::uint64_t(primitiveCount) * instanceCount();
}

HRESULT Device::DrawPrimitive(D3DPRIMITIVETYPE type, UINT startVertex, UINT primitiveCount)
{
    const Primitive kind = primitive(type);
    if (kind.verticesEach == 0 || primitiveCount == 0)
        return D3DERR_INVALIDCALL;
    if (const HRESULT result = prepareDraw(false); FAILED(result))
        return result;
    glDrawArraysInstanced(kind.mode, static_cast<GLint>(startVertex),
                          static_cast<GLsizei>(primitiveCount * kind.verticesEach + kind.verticesExtra),
                          static_cast<GLsizei>(instanceCount()));
    countDraw(type, primitiveCount);
    return D3D_OK;
}

HRESULT Device::DrawIndexedPrimitive(D3DPRIMITIVETYPE type, INT baseVertex, UINT, UINT, UINT startIndex,
                                     UINT primitiveCount)
{
    const Primitive kind = primitive(type);
    if (kind.verticesEach == 0 || primitiveCount == 0)
        return D3DERR_INVALIDCALL;
    if (const HRESULT result = prepareDraw(true); FAILED(result))
        return result;
    const bool wide = indices->isWide();
    const std::uintptr_t offset = static_cast<std::uintptr_t>(startIndex) * (wide ? 4u : 2u);
    glDrawElementsInstancedBaseVertex(
        kind.mode, static_cast<GLsizei>(primitiveCount * kind.verticesEach + kind.verticesExtra),
        wide ? GL_UNSIGNED_INT : GL_UNSIGNED_SHORT, reinterpret_cast<const void *>(offset),
        static_cast<GLsizei>(instanceCount()), baseVertex);
    countDraw(type, primitiveCount);
    return D3D_OK;
}

} // namespace port
