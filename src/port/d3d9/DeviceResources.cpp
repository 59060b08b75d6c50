// The device's targets and resources: making, binding and handing them out.
#include "port/d3d9/Buffer.h"
#include "port/d3d9/DebugText.h"
#include "port/d3d9/Device.h"

namespace
{

/// A surface made by this port; every surface that reaches the device is.
port::Surface *ours(IDirect3DSurface9 *surface)
{
    return static_cast<port::Surface *>(surface);
}

RECT wholeRect(const port::Surface &surface)
{
    const D3DVIEWPORT9 whole = surface.whole();
    return {0, 0, static_cast<LONG>(whole.Width), static_cast<LONG>(whole.Height)};
}

/// Hands a new reference to a caller.
template <class Interface, class T>
HRESULT handOut(T *object, Interface **out)
{
    object->AddRef();
    *out = object;
    return D3D_OK;
}

} // namespace

namespace port
{

HRESULT Device::SetRenderTarget(DWORD index, IDirect3DSurface9 *surface)
{
    if (index >= maxRenderTargets || (index == 0 && !surface))
        return D3DERR_INVALIDCALL;
    Surface *target = ours(surface);
    if (target && target->texture.format().depth)
        return D3DERR_INVALIDCALL;
    targets[index].set(target);
    if (index == 0)
        viewport = target->whole();
    return D3D_OK;
}

HRESULT Device::GetRenderTarget(DWORD index, IDirect3DSurface9 **surface)
{
    if (index >= maxRenderTargets || !surface)
        return D3DERR_INVALIDCALL;
    return targets[index] ? handOut(targets[index].get(), surface) : D3DERR_NOTFOUND;
}

HRESULT Device::SetDepthStencilSurface(IDirect3DSurface9 *surface)
{
    Surface *target = ours(surface);
    if (target && !target->texture.format().depth)
        return D3DERR_INVALIDCALL;
    depth.set(target);
    return D3D_OK;
}

HRESULT Device::GetDepthStencilSurface(IDirect3DSurface9 **surface)
{
    if (!surface)
        return D3DERR_INVALIDCALL;
    return depth ? handOut(depth.get(), surface) : D3DERR_NOTFOUND;
}

HRESULT Device::GetBackBuffer(UINT swapChain, UINT index, D3DBACKBUFFER_TYPE type, IDirect3DSurface9 **surface)
{
    if (swapChain != 0 || index != 0 || type != D3DBACKBUFFER_TYPE_MONO || !surface || !backBuffer)
        return D3DERR_INVALIDCALL;
    return handOut(backBuffer.get(), surface);
}

HRESULT Device::StretchRect(IDirect3DSurface9 *source, const RECT *sourceRect, IDirect3DSurface9 *destination,
                            const RECT *destinationRect, D3DTEXTUREFILTERTYPE filter)
{
    const Surface *from = ours(source), *to = ours(destination);
    if (!from || !to || from == to || from->texture.format().depth || to->texture.format().depth)
        return D3DERR_INVALIDCALL;
    if (state != State::WORKING)
        return D3DERR_DEVICELOST;
    TargetSet read, written;
    read.colors[0] = from;
    written.colors[0] = to;
    const GLuint readFrom = framebuffers.get(read), writeTo = framebuffers.get(written);
    if (!readFrom || !writeTo)
        return D3DERR_INVALIDCALL;
    const RECT a = sourceRect ? *sourceRect : wholeRect(*from), b = destinationRect ? *destinationRect : wholeRect(*to);
    renderStates.openWriteMasks(stats);
    glBlitNamedFramebuffer(readFrom, writeTo, a.left, a.top, a.right, a.bottom, b.left, b.top, b.right, b.bottom,
                           GL_COLOR_BUFFER_BIT, filter == D3DTEXF_LINEAR ? GL_LINEAR : GL_NEAREST);
    return D3D_OK;
}

HRESULT Device::CreateDepthStencilSurface(UINT width, UINT height, D3DFORMAT format, D3DMULTISAMPLE_TYPE, DWORD, BOOL,
                                          IDirect3DSurface9 **surface, HANDLE *)
{
    if (!surface)
        return D3DERR_INVALIDCALL;
    if (state != State::WORKING)
        return D3DERR_DEVICELOST;
    Surface *created = createTarget(width, height, format, true);
    return created ? handOut(created, surface) : D3DERR_INVALIDCALL;
}

Texture *Device::createTexture(const TextureDescription &description, D3DFORMAT format)
{
    GLint limit = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &limit);
    const auto largest = static_cast<UINT>(limit);
    if (description.width > largest || description.height > largest)
    {
        debugText("a texture of %u x %u is beyond the driver's limit of %u", description.width, description.height,
                  largest);
        return nullptr;
    }
    return Texture::create(*this, description, format);
}

HRESULT Device::CreateTexture(UINT width, UINT height, UINT levels, DWORD usage, D3DFORMAT format, D3DPOOL pool,
                              IDirect3DTexture9 **texture, HANDLE *)
{
    const bool target = usage & (D3DUSAGE_RENDERTARGET | D3DUSAGE_DEPTHSTENCIL);
    if (!texture || (target && pool != D3DPOOL_DEFAULT))
        return D3DERR_INVALIDCALL;
    if (state != State::WORKING && pool == D3DPOOL_DEFAULT)
        return D3DERR_DEVICELOST;
    Texture *created = createTexture({width, height, levels, usage, pool}, format);
    return created ? handOut(created, texture) : D3DERR_INVALIDCALL;
}

HRESULT Device::CreateVertexBuffer(UINT length, DWORD usage, DWORD, D3DPOOL pool, IDirect3DVertexBuffer9 **buffer,
                                   HANDLE *)
{
    if (!buffer || length == 0 || ((usage & D3DUSAGE_DYNAMIC) && pool == D3DPOOL_MANAGED))
        return D3DERR_INVALIDCALL;
    if (state != State::WORKING && pool == D3DPOOL_DEFAULT)
        return D3DERR_DEVICELOST;
    auto *created = new VertexBuffer(*this, length, usage, pool);
    if (created->isValid())
        return handOut(created, buffer);
    delete created;
    return D3DERR_OUTOFVIDEOMEMORY;
}

HRESULT Device::CreateIndexBuffer(UINT length, DWORD usage, D3DFORMAT format, D3DPOOL pool,
                                  IDirect3DIndexBuffer9 **buffer, HANDLE *)
{
    if (!buffer || length == 0 || (format != D3DFMT_INDEX16 && format != D3DFMT_INDEX32) ||
        ((usage & D3DUSAGE_DYNAMIC) && pool == D3DPOOL_MANAGED))
        return D3DERR_INVALIDCALL;
    if (state != State::WORKING && pool == D3DPOOL_DEFAULT)
        return D3DERR_DEVICELOST;
    auto *created = new IndexBuffer(*this, length, usage, format, pool);
    if (created->isValid())
        return handOut(created, buffer);
    delete created;
    return D3DERR_OUTOFVIDEOMEMORY;
}

HRESULT Device::CreateVertexDeclaration(const D3DVERTEXELEMENT9 *elements, IDirect3DVertexDeclaration9 **out)
{
    if (!elements || !out)
        return D3DERR_INVALIDCALL;
    VertexDeclaration *created = VertexDeclaration::create(*this, elements);
    return created ? handOut(created, out) : D3DERR_INVALIDCALL;
}

} // namespace port
