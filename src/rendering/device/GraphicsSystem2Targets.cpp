// GraphicsSystem2: render targets and depth targets by name.
#include "rendering/device/GraphicsSystem2.h"

#include "rendering/device/D3DPerfScopedEvent.h"

#include "foundation/Assertions.h"
#include "port/d3d9/d3d9.h"
#include "port/d3dx9/d3dx9tex.h"

#include <algorithm>
#include <cstdlib>

namespace
{

const String &screenName()
{
    static const String name = SCS("screen");
    return name;
}

const String &scaledWorldName()
{
    static const String name = SCS("World");
    return name;
}

template <class Resource>
void releaseIfAny(Resource *resource)
{
    if (resource)
        resource->Release();
}

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

void GraphicsSystem2::createRenderTargets()
{
    static const String scopeName = SCS("createRenderTargets");
    const D3DPerfScopedEvent scope(scopeName);
    if (!device)
        return;
    for (const char *name : {"GBuffer1", "GBuffer2", "GBuffer3", "GBuffer4", "LBuffer"})
        registerRenderTarget(SCS(name), 0, D3DFMT_A16B16G16R16F).ignoreError(); // told by an assertion
    for (const char *name : {"Occlusion", "OcclusionMean"})
        registerRenderTarget(SCS(name), 1, D3DFMT_A16B16G16R16F).ignoreError();
    registerDepthTarget(SCS("GBuffer"), 0, D3DFMT_D24S8).ignoreError();
    createShadowMap();
    if (worldWidth != backBufferWidth || worldHeight != backBufferHeight)
        registerRenderTarget(scaledWorldName(), 0, D3DFMT_X8R8G8B8).ignoreError();
    rememberScreenTargets();
}

String GraphicsSystem2::getWorldTarget() const
{
    return renderTargets.contains(scaledWorldName()) ? scaledWorldName() : screenName();
}

ErrorCode GraphicsSystem2::showWorld()
{
    if (!deviceIsReady())
        return dxCall(D3DERR_DEVICELOST);
    const auto world = renderTargets.find(scaledWorldName());
    if (world == renderTargets.end())
        return ErrorCode::SUCCESS;
    return dxCall(
        device->StretchRect(world->second.surf, nullptr, renderTargets[screenName()].surf, nullptr, D3DTEXF_LINEAR));
}

/// A size of its own, since it is looked at from elsewhere than the window; square, as the light's cone is.
void GraphicsSystem2::createShadowMap()
{
    static const String name = SCS("ShadowMap");
    registerRenderTarget(name, -shadowMapSize, D3DFMT_R32F).ignoreError(); // told by an assertion
    registerDepthTarget(name, -shadowMapSize, D3DFMT_D24S8).ignoreError();
}

void GraphicsSystem2::rememberScreenTargets()
{
    RenderTarget &screen = renderTargets[screenName()];
    releaseIfAny(screen.surf);
    screen = RenderTarget();
    if (SUCCEEDED(device->GetRenderTarget(0, &screen.surf)) && screen.surf)
        screen.format = formatOf(screen.surf);
    screen.width = backBufferWidth;
    screen.height = backBufferHeight;

    DepthTarget &screenDepth = depthTargets[screenName()];
    releaseIfAny(screenDepth.surf);
    screenDepth = DepthTarget();
    if (SUCCEEDED(device->GetDepthStencilSurface(&screenDepth.surf)) && screenDepth.surf)
        screenDepth.format = formatOf(screenDepth.surf);
}

void GraphicsSystem2::destroyRenderTargets()
{
    for (auto &[name, target] : renderTargets)
    {
        releaseIfAny(target.surf);
        releaseIfAny(target.tex);
    }
    renderTargets.clear();
    for (auto &[name, target] : depthTargets)
        releaseIfAny(target.surf);
    depthTargets.clear();
}

std::pair<unsigned, unsigned> GraphicsSystem2::getTargetSize(int logSizeDivisor) const
{
    if (logSizeDivisor < 0)
    {
        const unsigned side = 0u - static_cast<unsigned>(logSizeDivisor);
        return {side, side};
    }
    const int shift = logSizeDivisor < 31 ? logSizeDivisor : 31;
    const auto shifted = [shift](int length) { return static_cast<unsigned>(length) >> shift; };
    return {shifted(worldWidth), shifted(worldHeight)};
}

ErrorCode GraphicsSystem2::registerRenderTarget(String name, int logSizeDivisor, D3DFORMAT format, bool buildMipChain)
{
    const auto [width, height] = getTargetSize(logSizeDivisor);
    RenderTarget target;
    target.logDivisor = logSizeDivisor;
    target.format = format;
    target.width = static_cast<int>(width);
    target.height = static_cast<int>(height);
    const UINT levels = buildMipChain ? 0 : 1;
    ErrorCode result = verified(dxCall(D3DXCreateTexture(device, width, height, levels, D3DUSAGE_RENDERTARGET, format,
                                                         D3DPOOL_DEFAULT, &target.tex)),
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
    releaseIfAny(entry.surf);
    releaseIfAny(entry.tex);
    entry = target;
    return result;
}

ErrorCode GraphicsSystem2::registerDepthTarget(String name, int logSizeDivisor, D3DFORMAT format)
{
    const auto [width, height] = getTargetSize(logSizeDivisor);
    DepthTarget target;
    target.logDivisor = logSizeDivisor;
    target.format = format;
    const ErrorCode result = verified(dxCall(device->CreateDepthStencilSurface(
                                          width, height, format, D3DMULTISAMPLE_NONE, 0, FALSE, &target.surf, nullptr)),
                                      name);
    if (!result.succeeded())
        return result;
    DepthTarget &entry = depthTargets[name];
    releaseIfAny(entry.surf);
    entry = target;
    return result;
}

ErrorCode GraphicsSystem2::useRenderTargets(String name1, String name2, String name3, String name4)
{
    int slot = 0;
    for (const String *name : {&name1, &name2, &name3, &name4})
    {
        const ErrorCode result = useRenderTargetAndMipLevel(slot++, *name);
        if (!result.succeeded())
            return result;
    }
    return ErrorCode::SUCCESS;
}

ErrorCode GraphicsSystem2::useRenderTargetAndMipLevel(int targetID, const String &name, int mipLevel)
{
    if (!deviceIsReady())
        return dxCall(D3DERR_DEVICELOST);
    ErrorReturn<IDirect3DSurface9 *> surface = getSingleRenderTargetSurface(name, mipLevel);
    if (surface.succeeded() && targetID == 0 && !surface.value)
        surface.code = dxCall(device->GetBackBuffer(0, 0, D3DBACKBUFFER_TYPE_MONO, &surface.value));
    if (!surface.succeeded())
        return surface.code;
    const ErrorCode result = dxCall(device->SetRenderTarget(static_cast<DWORD>(targetID), surface.value));
    releaseIfAny(surface.value);
    if (targetID == 0 && result.succeeded())
        rememberTargetSize(name, mipLevel);
    return result;
}

void GraphicsSystem2::rememberTargetSize(const String &name, int mipLevel)
{
    const auto target = renderTargets.find(name.empty() ? screenName() : name);
    targetWidth = target != renderTargets.end() ? std::max(target->second.width >> mipLevel, 1) : backBufferWidth;
    targetHeight = target != renderTargets.end() ? std::max(target->second.height >> mipLevel, 1) : backBufferHeight;
}

ErrorCode GraphicsSystem2::useDepthTarget(const String &name)
{
    if (!deviceIsReady())
        return dxCall(D3DERR_DEVICELOST);
    const ErrorReturn<IDirect3DSurface9 *> surface = getSingleDepthTargetSurface(name);
    if (!surface.succeeded())
        return surface.code;
    const ErrorCode result = dxCall(device->SetDepthStencilSurface(surface.value));
    releaseIfAny(surface.value);
    return result;
}

ErrorReturn<IDirect3DTexture9 *> GraphicsSystem2::getRenderTargetTexture(const String &name)
{
    const auto target = renderTargets.find(name);
    if (target == renderTargets.end() || !target->second.tex)
        return ErrorCode(ErrorCode::UNKNOWN_KEY);
    return target->second.tex;
}

ErrorReturn<IDirect3DSurface9 *> GraphicsSystem2::getSingleRenderTargetSurface(const String &name, int mipLevel)
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

ErrorReturn<IDirect3DSurface9 *> GraphicsSystem2::getSingleDepthTargetSurface(const String &name)
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
