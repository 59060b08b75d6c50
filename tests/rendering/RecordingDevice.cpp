#include "RecordingDevice.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

/// A dynamic vertex buffer that notes how it is locked.
class RecordingDevice::DynamicBuffer final : public IDirect3DVertexBuffer9
{
public:
    DynamicBuffer(RecordingDevice &device_, IDirect3DVertexBuffer9 *real_) : device(device_), real(real_) {}

    ULONG AddRef() override { return real->AddRef(); }
    /// The graphics system holds the only reference to its ring.
    ULONG Release() override
    {
        device.dynamicBuffers.erase(this);
        real->Release();
        delete this;
        return 0;
    }
    HRESULT SetPrivateData(const GUID &identifier, const void *data, DWORD size, DWORD flags) override
    {
        return real->SetPrivateData(identifier, data, size, flags);
    }
    HRESULT Lock(UINT offset, UINT size, void **data, DWORD flags) override
    {
        const char *how = flags == D3DLOCK_DISCARD ? "discard" : flags == D3DLOCK_NOOVERWRITE ? "append" : "plain";
        device.note("Lock %u+%u %s", offset, size, how);
        return real->Lock(offset, size, data, flags);
    }
    HRESULT Unlock() override { return real->Unlock(); }

private:
    RecordingDevice &device;
    IDirect3DVertexBuffer9 *real;
};

void RecordingDevice::note(const char *format, ...)
{
    char line[256];
    va_list args;
    va_start(args, format);
    std::vsnprintf(line, sizeof(line), format, args);
    va_end(args);
    journal.push_back(line);
}

bool RecordingDevice::fails(const char *call, HRESULT &result)
{
    const auto failure = failures.find(call);
    if (failure == failures.end() || failure->second.callsBefore-- > 0)
        return false;
    result = failure->second.result;
    failures.erase(failure);
    return true;
}

int RecordingDevice::count(const std::string &start) const
{
    return static_cast<int>(std::count_if(journal.begin(), journal.end(),
                                          [&](const std::string &line) { return line.starts_with(start); }));
}

HRESULT RecordingDevice::TestCooperativeLevel()
{
    HRESULT result;
    return fails("TestCooperativeLevel", result) ? result : real->TestCooperativeLevel();
}

HRESULT RecordingDevice::Reset(D3DPRESENT_PARAMETERS *parameters)
{
    lastParameters = *parameters;
    note("Reset %ux%u", parameters->BackBufferWidth, parameters->BackBufferHeight);
    HRESULT result;
    return fails("Reset", result) ? result : real->Reset(parameters);
}

HRESULT RecordingDevice::Present(const RECT *source, const RECT *destination, HWND window, const void *dirtyRegion)
{
    note("Present");
    HRESULT result;
    return fails("Present", result) ? result : real->Present(source, destination, window, dirtyRegion);
}

HRESULT RecordingDevice::BeginScene()
{
    note("BeginScene");
    HRESULT result;
    return fails("BeginScene", result) ? result : real->BeginScene();
}

HRESULT RecordingDevice::EndScene()
{
    note("EndScene");
    return real->EndScene();
}

HRESULT RecordingDevice::Clear(DWORD rectCount, const D3DRECT *rects, DWORD flags, D3DCOLOR color, float z,
                               DWORD stencil)
{
    note("Clear%s%s%s z=%g", flags & D3DCLEAR_TARGET ? " target" : "", flags & D3DCLEAR_ZBUFFER ? " depth" : "",
         flags & D3DCLEAR_STENCIL ? " stencil" : "", z);
    HRESULT result;
    return fails("Clear", result) ? result : real->Clear(rectCount, rects, flags, color, z, stencil);
}

HRESULT RecordingDevice::SetRenderTarget(DWORD index, IDirect3DSurface9 *surface)
{
    note("Target %u %s", index, nameOf(surface).c_str());
    HRESULT result;
    return fails("SetRenderTarget", result) ? result : real->SetRenderTarget(index, surface);
}

HRESULT RecordingDevice::GetRenderTarget(DWORD index, IDirect3DSurface9 **surface)
{
    return real->GetRenderTarget(index, surface);
}

HRESULT RecordingDevice::SetDepthStencilSurface(IDirect3DSurface9 *surface)
{
    note("Depth %s", nameOf(surface).c_str());
    return real->SetDepthStencilSurface(surface);
}

HRESULT RecordingDevice::GetDepthStencilSurface(IDirect3DSurface9 **surface)
{
    return real->GetDepthStencilSurface(surface);
}

HRESULT RecordingDevice::GetBackBuffer(UINT swapChain, UINT index, D3DBACKBUFFER_TYPE type, IDirect3DSurface9 **surface)
{
    return real->GetBackBuffer(swapChain, index, type, surface);
}

HRESULT RecordingDevice::StretchRect(IDirect3DSurface9 *source, const RECT *sourceRect, IDirect3DSurface9 *destination,
                                     const RECT *destinationRect, D3DTEXTUREFILTERTYPE filter)
{
    note("Stretch %s to %s", nameOf(source).c_str(), nameOf(destination).c_str());
    HRESULT result;
    return fails("StretchRect", result) ? result
                                        : real->StretchRect(source, sourceRect, destination, destinationRect, filter);
}

HRESULT RecordingDevice::CreateDepthStencilSurface(UINT width, UINT height, D3DFORMAT format,
                                                   D3DMULTISAMPLE_TYPE samples, DWORD quality, BOOL discard,
                                                   IDirect3DSurface9 **surface, HANDLE *shared)
{
    note("CreateDepth %ux%u format %d", width, height, static_cast<int>(format));
    return real->CreateDepthStencilSurface(width, height, format, samples, quality, discard, surface, shared);
}

HRESULT RecordingDevice::CreateTexture(UINT width, UINT height, UINT levels, DWORD usage, D3DFORMAT format,
                                       D3DPOOL pool, IDirect3DTexture9 **texture, HANDLE *shared)
{
    note("CreateTexture %ux%u levels %u format %d", width, height, levels, static_cast<int>(format));
    return real->CreateTexture(width, height, levels, usage, format, pool, texture, shared);
}

HRESULT RecordingDevice::CreateVertexBuffer(UINT length, DWORD usage, DWORD fvf, D3DPOOL pool,
                                            IDirect3DVertexBuffer9 **buffer, HANDLE *shared)
{
    note("CreateVertexBuffer %u%s", length, usage & D3DUSAGE_DYNAMIC ? " dynamic" : "");
    HRESULT result;
    if (fails("CreateVertexBuffer", result))
        return result;
    result = real->CreateVertexBuffer(length, usage, fvf, pool, buffer, shared);
    if (SUCCEEDED(result) && usage & D3DUSAGE_DYNAMIC)
    {
        IDirect3DVertexBuffer9 *inner = *buffer;
        *buffer = new DynamicBuffer(*this, inner);
        dynamicBuffers[*buffer] = inner;
    }
    return result;
}

HRESULT RecordingDevice::CreateIndexBuffer(UINT length, DWORD usage, D3DFORMAT format, D3DPOOL pool,
                                           IDirect3DIndexBuffer9 **buffer, HANDLE *shared)
{
    note("CreateIndexBuffer %u format %d", length, static_cast<int>(format));
    return real->CreateIndexBuffer(length, usage, format, pool, buffer, shared);
}

HRESULT RecordingDevice::CreateVertexDeclaration(const D3DVERTEXELEMENT9 *elements,
                                                 IDirect3DVertexDeclaration9 **declaration)
{
    lastElements.clear();
    for (const D3DVERTEXELEMENT9 *element = elements; element->Stream != 0xff; ++element)
        lastElements.push_back(*element);
    note("CreateVertexDeclaration");
    return real->CreateVertexDeclaration(elements, declaration);
}

HRESULT RecordingDevice::SetViewport(const D3DVIEWPORT9 *viewport)
{
    note("Viewport %u %u %u %u", viewport->X, viewport->Y, viewport->Width, viewport->Height);
    return real->SetViewport(viewport);
}

HRESULT RecordingDevice::GetViewport(D3DVIEWPORT9 *viewport)
{
    return real->GetViewport(viewport);
}

HRESULT RecordingDevice::SetRenderState(D3DRENDERSTATETYPE state, DWORD value)
{
    note("State %d %u", static_cast<int>(state), value);
    return real->SetRenderState(state, value);
}

HRESULT RecordingDevice::GetRenderState(D3DRENDERSTATETYPE state, DWORD *value)
{
    return real->GetRenderState(state, value);
}

HRESULT RecordingDevice::SetVertexDeclaration(IDirect3DVertexDeclaration9 *declaration)
{
    return real->SetVertexDeclaration(declaration);
}

HRESULT RecordingDevice::SetStreamSource(UINT stream, IDirect3DVertexBuffer9 *buffer, UINT offset, UINT stride)
{
    const auto dynamic = dynamicBuffers.find(buffer);
    if (stream == 1)
        note("Stream 1 %s offset %u stride %u", buffer ? "bound" : "empty", offset, stride);
    return real->SetStreamSource(stream, dynamic == dynamicBuffers.end() ? buffer : dynamic->second, offset, stride);
}

HRESULT RecordingDevice::SetStreamSourceFreq(UINT stream, UINT setting)
{
    if (stream == 0)
        instances = setting & D3DSTREAMSOURCE_INDEXEDDATA ? setting & ~D3DSTREAMSOURCE_INDEXEDDATA : 1;
    return real->SetStreamSourceFreq(stream, setting);
}

HRESULT RecordingDevice::SetIndices(IDirect3DIndexBuffer9 *indices)
{
    return real->SetIndices(indices);
}

HRESULT RecordingDevice::DrawPrimitive(D3DPRIMITIVETYPE type, UINT startVertex, UINT primitiveCount)
{
    note("Draw %u primitives x %u", primitiveCount, instances);
    return real->DrawPrimitive(type, startVertex, primitiveCount);
}

HRESULT RecordingDevice::DrawIndexedPrimitive(D3DPRIMITIVETYPE type, INT baseVertex, UINT minIndex, UINT vertexCount,
                                              UINT startIndex, UINT primitiveCount)
{
    note("DrawIndexed %u primitives x %u", primitiveCount, instances);
    HRESULT result;
    return fails("DrawIndexedPrimitive", result)
               ? result
               : real->DrawIndexedPrimitive(type, baseVertex, minIndex, vertexCount, startIndex, primitiveCount);
}
