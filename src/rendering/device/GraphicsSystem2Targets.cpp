// GraphicsSystem2: render targets and depth targets by name.
#include "rendering/device/GraphicsSystem2.h"

#include "rendering/device/D3DPerfScopedEvent.h"
#include "rendering/device/DeviceCalls.h"

#include <algorithm>

namespace
{

constexpr int SPARE_SHADOW_MAP = 256; ///< texels a side, where time is short

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
    registerRenderTarget(SCS("Unsettled"), 0, D3DFMT_X8R8G8B8).ignoreError();
    if (worldWidth != backBufferWidth || worldHeight != backBufferHeight)
        registerRenderTarget(scaledWorldName(), 0, D3DFMT_X8R8G8B8).ignoreError();
    targets.rememberScreen(*device, backBufferWidth, backBufferHeight);
}

String GraphicsSystem2::getWorldTarget() const
{
    return targets.find(scaledWorldName()) ? scaledWorldName() : screenName();
}

ErrorCode GraphicsSystem2::showWorld()
{
    if (!deviceIsReady())
        return dxCall(D3DERR_DEVICELOST);
    const RenderTarget *const world = targets.find(scaledWorldName()), *const screen = targets.find(screenName());
    if (!world || !screen)
        return ErrorCode::SUCCESS;
    return dxCall(device->StretchRect(world->surf, nullptr, screen->surf, nullptr, D3DTEXF_LINEAR));
}

/// A size of its own, since it is looked at from elsewhere than the window; square, as the light's cone is.
void GraphicsSystem2::createShadowMap()
{
    static const String name = SCS("ShadowMap");
    const int side = sparing < 2 ? shadowMapSize : std::min(shadowMapSize, SPARE_SHADOW_MAP);
    registerRenderTarget(name, -side, D3DFMT_R32F).ignoreError(); // told by an assertion
    registerDepthTarget(name, -side, D3DFMT_D24S8).ignoreError();
}

void GraphicsSystem2::destroyRenderTargets()
{
    targets.release();
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
    return targets.add(*device, name, target, buildMipChain);
}

ErrorCode GraphicsSystem2::registerDepthTarget(String name, int logSizeDivisor, D3DFORMAT format)
{
    const auto [width, height] = getTargetSize(logSizeDivisor);
    DepthTarget target;
    target.logDivisor = logSizeDivisor;
    target.format = format;
    return targets.addDepth(*device, name, target, width, height);
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
    releaseAndForget(surface.value);
    if (targetID == 0 && result.succeeded())
        rememberTargetSize(name, mipLevel);
    return result;
}

void GraphicsSystem2::rememberTargetSize(const String &name, int mipLevel)
{
    const RenderTarget *const target = targets.find(name.empty() ? screenName() : name);
    targetWidth = target ? std::max(target->width >> mipLevel, 1) : backBufferWidth;
    targetHeight = target ? std::max(target->height >> mipLevel, 1) : backBufferHeight;
}

ErrorCode GraphicsSystem2::useDepthTarget(const String &name)
{
    if (!deviceIsReady())
        return dxCall(D3DERR_DEVICELOST);
    ErrorReturn<IDirect3DSurface9 *> surface = getSingleDepthTargetSurface(name);
    if (!surface.succeeded())
        return surface.code;
    const ErrorCode result = dxCall(device->SetDepthStencilSurface(surface.value));
    releaseAndForget(surface.value);
    return result;
}

ErrorReturn<IDirect3DTexture9 *> GraphicsSystem2::getRenderTargetTexture(const String &name)
{
    const RenderTarget *const target = targets.find(name);
    if (!target || !target->tex)
        return ErrorCode(ErrorCode::UNKNOWN_KEY);
    return target->tex;
}

ErrorReturn<IDirect3DSurface9 *> GraphicsSystem2::getSingleRenderTargetSurface(const String &name, int mipLevel)
{
    return targets.getSurface(name, mipLevel);
}

ErrorReturn<IDirect3DSurface9 *> GraphicsSystem2::getSingleDepthTargetSurface(const String &name)
{
    return targets.getDepthSurface(name);
}
