#include "rendering/device/RenderTargets.h"

#include "rendering/device/DeviceCalls.h"

#include "port/d3dx9/d3dx9tex.h"

namespace
{

/// Raises a minor assertion for a failure and hands it on.
ErrorCode verified(const ErrorCode &result, const String &targetName)
{
    KV_VERIFY(result.succeeded(), "Render target %s: %s", targetName.toCString(), result.getErrorString().toCString());
    return result;
}

D3DFORMAT formatOf(IDirect3DSurface9 *surface)
{
    D3DSURFACE_DESC description = {};
    surface->GetDesc(&description);
    return description.Format;
}

} // namespace

ErrorCode RenderTargets::add(IDirect3DDevice9 &device, const String &name, RenderTarget target, bool buildMipChain)
{
    const UINT levels = buildMipChain ? 0 : 1;
    ErrorCode result =
        verified(dxCall(D3DXCreateTexture(&device, static_cast<UINT>(target.width), static_cast<UINT>(target.height),
                                          levels, D3DUSAGE_RENDERTARGET, target.format, D3DPOOL_DEFAULT, &target.tex)),
                 name);
    if (!result.succeeded())
        return result;
    result = verified(dxCall(target.tex->SetPrivateData(WKPDID_D3DDebugObjectName, name.toCString(),
                                                        static_cast<DWORD>(name.size()), 0)),
                      name);
    if (result.succeeded())
        result = verified(dxCall(target.tex->GetSurfaceLevel(0, &target.surf)), name);
    if (!result.succeeded())
    {
        target.tex->Release();
        return result;
    }
    RenderTarget &entry = renderTargets[name];
    releaseAndForget(entry.surf);
    releaseAndForget(entry.tex);
    entry = target;
    return result;
}

ErrorCode RenderTargets::addDepth(IDirect3DDevice9 &device, const String &name, DepthTarget target, unsigned width,
                                  unsigned height)
{
    const ErrorCode result =
        verified(dxCall(device.CreateDepthStencilSurface(width, height, target.format, D3DMULTISAMPLE_NONE, 0, FALSE,
                                                         &target.surf, nullptr)),
                 name);
    if (!result.succeeded())
        return result;
    DepthTarget &entry = depthTargets[name];
    releaseAndForget(entry.surf);
    entry = target;
    return result;
}

void RenderTargets::rememberScreen(IDirect3DDevice9 &device, int width, int height)
{
    RenderTarget &screen = renderTargets[SCS("screen")];
    releaseAndForget(screen.surf);
    screen = RenderTarget();
    if (SUCCEEDED(device.GetRenderTarget(0, &screen.surf)) && screen.surf)
        screen.format = formatOf(screen.surf);
    screen.width = width;
    screen.height = height;

    DepthTarget &screenDepth = depthTargets[SCS("screen")];
    releaseAndForget(screenDepth.surf);
    screenDepth = DepthTarget();
    if (SUCCEEDED(device.GetDepthStencilSurface(&screenDepth.surf)) && screenDepth.surf)
        screenDepth.format = formatOf(screenDepth.surf);
}

void RenderTargets::release()
{
    for (auto &[name, target] : renderTargets)
    {
        releaseAndForget(target.surf);
        releaseAndForget(target.tex);
    }
    renderTargets.clear();
    for (auto &[name, target] : depthTargets)
        releaseAndForget(target.surf);
    depthTargets.clear();
}

const RenderTarget *RenderTargets::find(const String &name) const
{
    const auto target = renderTargets.find(name);
    return target == renderTargets.end() ? nullptr : &target->second;
}

ErrorReturn<IDirect3DSurface9 *> RenderTargets::getSurface(const String &name, int mipLevel) const
{
    IDirect3DSurface9 *surface = nullptr;
    if (name.empty())
        return surface;
    const auto target = renderTargets.find(name);
    if (target == renderTargets.end())
        return ErrorCode(ErrorCode::UNKNOWN_KEY);
    if (target->second.tex && mipLevel != 0)
    {
        const ErrorCode result = dxCall(target->second.tex->GetSurfaceLevel(static_cast<UINT>(mipLevel), &surface));
        return ErrorReturn<IDirect3DSurface9 *>(surface, result);
    }
    surface = target->second.surf;
    if (surface)
        surface->AddRef();
    return surface;
}

ErrorReturn<IDirect3DSurface9 *> RenderTargets::getDepthSurface(const String &name) const
{
    IDirect3DSurface9 *surface = nullptr;
    if (name.empty())
        return surface;
    const auto target = depthTargets.find(name);
    if (target == depthTargets.end())
        return ErrorCode(ErrorCode::UNKNOWN_KEY);
    surface = target->second.surf;
    if (surface)
        surface->AddRef();
    return surface;
}
