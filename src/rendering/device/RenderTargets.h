// RenderTargets: what is drawn into, by name.
#pragma once

#include "foundation/ErrorCode.h"
#include "foundation/KVString.h"
#include "port/d3d9/d3d9types.h"

#include <unordered_map>

struct IDirect3DDevice9;
struct IDirect3DSurface9;
struct IDirect3DTexture9;

/// A colour target by name.
struct RenderTarget
{
    int logDivisor = 0; ///< size rule: see GraphicsSystem2::registerRenderTarget
    D3DFORMAT format = D3DFMT_UNKNOWN;
    IDirect3DTexture9 *tex = nullptr;  ///< null for "screen"
    IDirect3DSurface9 *surf = nullptr; ///< level 0
    int width = 0;                     ///< pixels
    int height = 0;                    ///< pixels
};

/// A depth and stencil target by name.
struct DepthTarget
{
    int logDivisor = 0;
    D3DFORMAT format = D3DFMT_UNKNOWN;
    IDirect3DSurface9 *surf = nullptr;
};

/// Colour and depth targets, in default memory: released before the device is reset. Owns what it holds.
class RenderTargets
{
public:
    typedef std::unordered_map<String, RenderTarget> RenderTargetMap;
    typedef std::unordered_map<String, DepthTarget> DepthTargetMap;

    RenderTargets() = default;
    ~RenderTargets() { release(); }
    RenderTargets(const RenderTargets &) = delete;
    RenderTargets &operator=(const RenderTargets &) = delete;

    /// Makes a colour target of the size, divisor and format that are filled in; one of that name is replaced.
    ErrorCode add(IDirect3DDevice9 &device, const String &name, RenderTarget target, bool buildMipChain);
    /// Makes a depth and stencil target; one of that name is replaced.
    ErrorCode addDepth(IDirect3DDevice9 &device, const String &name, DepthTarget target, unsigned width,
                       unsigned height);
    /// Takes what the device draws into by itself in under "screen".
    void rememberScreen(IDirect3DDevice9 &device, int width, int height);
    void release();

    /// Null for an unknown name.
    const RenderTarget *find(const String &name) const;
    /// One level of a target with a reference that the caller releases; null for an empty name.
    ErrorReturn<IDirect3DSurface9 *> getSurface(const String &name, int mipLevel) const;
    /// A depth target with a reference that the caller releases; null for an empty name.
    ErrorReturn<IDirect3DSurface9 *> getDepthSurface(const String &name) const;

    const RenderTargetMap &getRenderTargets() const { return renderTargets; }
    const DepthTargetMap &getDepthTargets() const { return depthTargets; }

private:
    RenderTargetMap renderTargets;
    DepthTargetMap depthTargets;
};
