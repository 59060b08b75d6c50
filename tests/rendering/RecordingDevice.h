// RecordingDevice: a device that writes down what it is asked and hands it on to the real one.
#pragma once

#include "port/d3d9/d3d9.h"

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

/// Stands in front of a real device: notes the calls that tests look at, and fails those that a test wants to fail.
class RecordingDevice final : public IDirect3DDevice9
{
public:
    explicit RecordingDevice(IDirect3DDevice9 *real_) : real(real_) {}
    ~RecordingDevice() override = default;

    /// Has the next call of that name fail, or the one after so many more.
    void failOn(const std::string &call, HRESULT result, int callsBefore = 0)
    {
        failures[call] = {result, callsBefore};
    }
    /// The journal so far, which starts anew.
    std::vector<std::string> take() { return std::exchange(journal, {}); }
    /// How many journal lines begin with a text.
    int count(const std::string &start) const;

    std::function<std::string(IDirect3DSurface9 *)> nameOf = [](IDirect3DSurface9 *s) { return s ? "surface" : "-"; };
    std::vector<std::string> journal;
    std::vector<D3DVERTEXELEMENT9> lastElements; ///< of the last declaration, without its end
    D3DPRESENT_PARAMETERS lastParameters = {};   ///< of the last Reset

    ULONG AddRef() override { return real->AddRef(); }
    ULONG Release() override { return real->Release(); }
    HRESULT TestCooperativeLevel() override;
    HRESULT Reset(D3DPRESENT_PARAMETERS *parameters) override;
    HRESULT Present(const RECT *source, const RECT *destination, HWND window, const void *dirtyRegion) override;
    HRESULT BeginScene() override;
    HRESULT EndScene() override;
    HRESULT Clear(DWORD count, const D3DRECT *rects, DWORD flags, D3DCOLOR color, float z, DWORD stencil) override;
    HRESULT SetRenderTarget(DWORD index, IDirect3DSurface9 *surface) override;
    HRESULT GetRenderTarget(DWORD index, IDirect3DSurface9 **surface) override;
    HRESULT SetDepthStencilSurface(IDirect3DSurface9 *surface) override;
    HRESULT GetDepthStencilSurface(IDirect3DSurface9 **surface) override;
    HRESULT GetBackBuffer(UINT swapChain, UINT index, D3DBACKBUFFER_TYPE type, IDirect3DSurface9 **surface) override;
    HRESULT StretchRect(IDirect3DSurface9 *source, const RECT *sourceRect, IDirect3DSurface9 *destination,
                        const RECT *destinationRect, D3DTEXTUREFILTERTYPE filter) override;
    HRESULT CreateDepthStencilSurface(UINT width, UINT height, D3DFORMAT format, D3DMULTISAMPLE_TYPE samples,
                                      DWORD quality, BOOL discard, IDirect3DSurface9 **surface,
                                      HANDLE *shared) override;
    HRESULT CreateTexture(UINT width, UINT height, UINT levels, DWORD usage, D3DFORMAT format, D3DPOOL pool,
                          IDirect3DTexture9 **texture, HANDLE *shared) override;
    HRESULT CreateVertexBuffer(UINT length, DWORD usage, DWORD fvf, D3DPOOL pool, IDirect3DVertexBuffer9 **buffer,
                               HANDLE *shared) override;
    HRESULT CreateIndexBuffer(UINT length, DWORD usage, D3DFORMAT format, D3DPOOL pool, IDirect3DIndexBuffer9 **buffer,
                              HANDLE *shared) override;
    HRESULT CreateVertexDeclaration(const D3DVERTEXELEMENT9 *elements,
                                    IDirect3DVertexDeclaration9 **declaration) override;
    HRESULT SetViewport(const D3DVIEWPORT9 *viewport) override;
    HRESULT GetViewport(D3DVIEWPORT9 *viewport) override;
    HRESULT SetRenderState(D3DRENDERSTATETYPE state, DWORD value) override;
    HRESULT GetRenderState(D3DRENDERSTATETYPE state, DWORD *value) override;
    HRESULT SetVertexDeclaration(IDirect3DVertexDeclaration9 *declaration) override;
    HRESULT SetStreamSource(UINT stream, IDirect3DVertexBuffer9 *buffer, UINT offset, UINT stride) override;
    HRESULT SetStreamSourceFreq(UINT stream, UINT setting) override;
    HRESULT SetIndices(IDirect3DIndexBuffer9 *indices) override;
    HRESULT DrawPrimitive(D3DPRIMITIVETYPE type, UINT startVertex, UINT primitiveCount) override;
    HRESULT DrawIndexedPrimitive(D3DPRIMITIVETYPE type, INT baseVertex, UINT minIndex, UINT vertexCount,
                                 UINT startIndex, UINT primitiveCount) override;

private:
    class DynamicBuffer;
    struct Failure
    {
        HRESULT result;
        int callsBefore;
    };

    void note(const char *format, ...) __attribute__((format(printf, 2, 3)));
    bool fails(const char *call, HRESULT &result);

    IDirect3DDevice9 *real;
    std::map<std::string, Failure> failures;
    std::map<IDirect3DVertexBuffer9 *, IDirect3DVertexBuffer9 *> dynamicBuffers; ///< stand-in to real
    UINT instances = 1;
};
