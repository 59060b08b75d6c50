// d3d9: the Direct3D 9 interfaces that the engine calls, implemented on OpenGL 4.5 by this folder.
//
// Every interface is abstract, so that a test can put a recording or failing one in its place. Meaning and results
// are those their publisher documents; a subset is declared, nothing is added. What the implementation offers beyond
// that (screenshots, an overlay, counters, a simulated loss) stands in D3D9Extras.h.
#pragma once

#include "port/d3d9/IUnknown.h"
#include "port/d3d9/d3d9errors.h"
#include "port/d3d9/d3d9types.h"
#include "port/win32/WideText.h"
#include "port/win32/WideText.h"

struct IDirect3DDevice9;
struct IDirect3DSurface9;

/// Identifier under which SetPrivateData takes a resource's name, as characters without a closing zero.
constexpr GUID WKPDID_D3DDebugObjectName = {
    0x429b8c22, 0x9188, 0x4b0c, {0x87, 0x42, 0xac, 0xb0, 0xbf, 0x85, 0xc2, 0x00}};

/// Anything that lives in a device's memory.
struct IDirect3DResource9 : IUnknown
{
    /// Attaches a copy of the bytes under an identifier.
    ///
    /// WKPDID_D3DDebugObjectName takes the resource's name, which debuggers and error texts show.
    virtual HRESULT SetPrivateData(const GUID &identifier, const void *data, DWORD size, DWORD flags) = 0;
};

/// A rectangle of pixels: one level of a texture, a depth-stencil buffer or the back buffer.
struct IDirect3DSurface9 : IDirect3DResource9
{
    virtual HRESULT GetDesc(D3DSURFACE_DESC *description) = 0;
};

/// A two-dimensional texture with its chain of smaller levels.
struct IDirect3DTexture9 : IDirect3DResource9
{
    virtual DWORD GetLevelCount() = 0;
    virtual HRESULT GetLevelDesc(UINT level, D3DSURFACE_DESC *description) = 0;
    /// Hands out a new reference to one level's surface.
    virtual HRESULT GetSurfaceLevel(UINT level, IDirect3DSurface9 **surface) = 0;
    /// Opens a level for the processor; null `rect` means the whole level.
    ///
    /// Default-pool textures cannot be locked, unless they are dynamic.
    virtual HRESULT LockRect(UINT level, D3DLOCKED_RECT *locked, const RECT *rect, DWORD flags) = 0;
    virtual HRESULT UnlockRect(UINT level) = 0;
};

struct IDirect3DVertexBuffer9 : IDirect3DResource9
{
    /// Opens a range for writing; offset and size 0 mean the whole buffer.
    ///
    /// D3DLOCK_NOOVERWRITE promises to touch nothing that a pending draw reads; D3DLOCK_DISCARD gives fresh memory.
    /// Both are for dynamic buffers only and never wait for the GPU.
    virtual HRESULT Lock(UINT offset, UINT size, void **data, DWORD flags) = 0;
    virtual HRESULT Unlock() = 0;
};

struct IDirect3DIndexBuffer9 : IDirect3DResource9
{
    /// As IDirect3DVertexBuffer9::Lock.
    virtual HRESULT Lock(UINT offset, UINT size, void **data, DWORD flags) = 0;
    virtual HRESULT Unlock() = 0;
};

struct IDirect3DVertexDeclaration9 : IUnknown
{
    /// Copies the elements, terminator included; a null array asks for the count alone.
    virtual HRESULT GetDeclaration(D3DVERTEXELEMENT9 *elements, UINT *count) = 0;
};

struct IDirect3DDevice9 : IUnknown
{
    // Life of the device
    /// D3D_OK, D3DERR_DEVICELOST while nothing can be done, or D3DERR_DEVICENOTRESET once Reset may be called.
    virtual HRESULT TestCooperativeLevel() = 0;
    /// Makes the back buffer anew after a loss or for another size or mode.
    ///
    /// Fails with D3DERR_INVALIDCALL while a default-pool resource is alive; the debug output names each of them.
    /// Sets all render states, bindings and the viewport back to their defaults.
    virtual HRESULT Reset(D3DPRESENT_PARAMETERS *parameters) = 0;
    virtual HRESULT Present(const RECT *source, const RECT *destination, HWND window, const void *dirtyRegion) = 0;

    // Frame
    virtual HRESULT BeginScene() = 0;
    virtual HRESULT EndScene() = 0;
    virtual HRESULT Clear(DWORD count, const D3DRECT *rects, DWORD flags, D3DCOLOR color, float z, DWORD stencil) = 0;

    // Targets
    /// Binds a colour target; slot 0 cannot be null, and binding it sets the viewport to the whole surface.
    virtual HRESULT SetRenderTarget(DWORD index, IDirect3DSurface9 *surface) = 0;
    /// Hands out a new reference to a bound target, or D3DERR_NOTFOUND.
    virtual HRESULT GetRenderTarget(DWORD index, IDirect3DSurface9 **surface) = 0;
    virtual HRESULT SetDepthStencilSurface(IDirect3DSurface9 *surface) = 0;
    virtual HRESULT GetDepthStencilSurface(IDirect3DSurface9 **surface) = 0;
    virtual HRESULT GetBackBuffer(UINT swapChain, UINT index, D3DBACKBUFFER_TYPE type, IDirect3DSurface9 **surface) = 0;
    /// Copies a colour target into another one, stretched to fit; null rectangles mean the whole surface.
    virtual HRESULT StretchRect(IDirect3DSurface9 *source, const RECT *sourceRect, IDirect3DSurface9 *destination,
                                const RECT *destinationRect, D3DTEXTUREFILTERTYPE filter) = 0;
    virtual HRESULT CreateDepthStencilSurface(UINT width, UINT height, D3DFORMAT format, D3DMULTISAMPLE_TYPE samples,
                                              DWORD quality, BOOL discard, IDirect3DSurface9 **surface,
                                              HANDLE *shared) = 0;

    // Resources
    virtual HRESULT CreateTexture(UINT width, UINT height, UINT levels, DWORD usage, D3DFORMAT format, D3DPOOL pool,
                                  IDirect3DTexture9 **texture, HANDLE *shared) = 0;
    virtual HRESULT CreateVertexBuffer(UINT length, DWORD usage, DWORD fvf, D3DPOOL pool,
                                       IDirect3DVertexBuffer9 **buffer, HANDLE *shared) = 0;
    virtual HRESULT CreateIndexBuffer(UINT length, DWORD usage, D3DFORMAT format, D3DPOOL pool,
                                      IDirect3DIndexBuffer9 **buffer, HANDLE *shared) = 0;
    virtual HRESULT CreateVertexDeclaration(const D3DVERTEXELEMENT9 *elements,
                                            IDirect3DVertexDeclaration9 **declaration) = 0;

    // State
    virtual HRESULT SetViewport(const D3DVIEWPORT9 *viewport) = 0;
    virtual HRESULT GetViewport(D3DVIEWPORT9 *viewport) = 0;
    virtual HRESULT SetRenderState(D3DRENDERSTATETYPE state, DWORD value) = 0;
    virtual HRESULT GetRenderState(D3DRENDERSTATETYPE state, DWORD *value) = 0;
    virtual HRESULT SetVertexDeclaration(IDirect3DVertexDeclaration9 *declaration) = 0;
    virtual HRESULT SetStreamSource(UINT stream, IDirect3DVertexBuffer9 *buffer, UINT offset, UINT stride) = 0;
    /// 1, or D3DSTREAMSOURCE_INDEXEDDATA | instances on stream 0, or D3DSTREAMSOURCE_INSTANCEDATA | 1 on others.
    virtual HRESULT SetStreamSourceFreq(UINT stream, UINT setting) = 0;
    virtual HRESULT SetIndices(IDirect3DIndexBuffer9 *indices) = 0;

    // Drawing
    virtual HRESULT DrawPrimitive(D3DPRIMITIVETYPE type, UINT startVertex, UINT primitiveCount) = 0;
    virtual HRESULT DrawIndexedPrimitive(D3DPRIMITIVETYPE type, INT baseVertex, UINT minIndex, UINT vertexCount,
                                         UINT startIndex, UINT primitiveCount) = 0;
};

/// The entry: lists adapters and their modes, and makes devices.
struct IDirect3D9 : IUnknown
{
    virtual UINT GetAdapterCount() = 0;
    virtual HRESULT GetAdapterIdentifier(UINT adapter, DWORD flags, D3DADAPTER_IDENTIFIER9 *identifier) = 0;
    virtual UINT GetAdapterModeCount(UINT adapter, D3DFORMAT format) = 0;
    virtual HRESULT EnumAdapterModes(UINT adapter, D3DFORMAT format, UINT mode, D3DDISPLAYMODE *displayMode) = 0;
    /// Makes a device that draws to `hDeviceWindow` of the parameters, or to `focusWindow` if that is null.
    ///
    /// With neither, the device draws to a hidden window of its own. Failures are D3DERR_NOTAVAILABLE or
    /// D3DERR_INVALIDCALL, with the cause in the debug output.
    virtual HRESULT CreateDevice(UINT adapter, D3DDEVTYPE type, HWND focusWindow, DWORD behaviour,
                                 D3DPRESENT_PARAMETERS *parameters, IDirect3DDevice9 **device) = 0;
};

/// The entry object, or null for another version than D3D_SDK_VERSION.
IDirect3D9 *Direct3DCreate9(UINT sdkVersion);

/// Opens a named group of calls for graphics debuggers; tells how many were open before, or -1 without a device.
int D3DPERF_BeginEvent(D3DCOLOR color, LPCWSTR name);

/// Closes the innermost group; tells how many are still open, or -1 if none was.
int D3DPERF_EndEvent();
