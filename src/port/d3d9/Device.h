// Device: IDirect3DDevice9 on OpenGL 4.5.
//
// Conventions of the published device are kept here, so that nothing above knows of another library: depth 0..1, the
// first row of every image on top, clockwise front faces, and pixel centres at whole numbers.
#pragma once

#include "port/d3d9/Context.h"
#include "port/d3d9/D3D9Extras.h"
#include "port/d3d9/Framebuffers.h"
#include "port/d3d9/RenderStates.h"
#include "port/d3d9/Resource.h"
#include "port/d3d9/Samplers.h"
#include "port/d3d9/Texture.h"
#include "port/d3d9/UniformRing.h"
#include "port/d3d9/VertexDeclaration.h"

#include <array>
#include <memory>
#include <vector>

namespace port
{

constexpr UINT maxTextureUnits = 16;

/// Binding points of the uniform blocks that shaders read.
constexpr GLuint deviceBlockBinding = 0;
constexpr GLuint effectBlockBinding = 1;

/// What every shader knows of the device, as its uniform block lies in memory.
struct DeviceConstants
{
    float pixelShift[2] = {0.0f, 0.0f}; ///< half a pixel in clip space, which moves centres to whole numbers
    float pointSize = 1.0f;             ///< pixels
    float padding = 0.0f;

    bool operator==(const DeviceConstants &) const = default;
};

/// The device. One lives at a time, on the thread that made it.
class Device final : public IDirect3DDevice9
{
public:
    /// Null with the reason in `result`.
    static Device *create(const D3DPRESENT_PARAMETERS &parameters, HWND focusWindow, HRESULT &result);
    /// The device that lives, or null.
    static Device *current();
    /// The device behind an interface, or null for one of somebody else's making.
    static Device *from(IDirect3DDevice9 *device);

    ULONG AddRef() override { return ++references; }
    ULONG Release() override;

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

    // What the other parts of the port need
    void setProgram(GLuint program);
    /// Null reads as opaque black.
    void setTexture(UINT unit, Texture *texture, GLuint sampler);
    /// Makes a block the one that shaders read; `owner` tells the effects apart.
    void writeEffectConstants(const void *owner, const void *data, std::size_t size);
    /// Whether the block that shaders read is the one that `owner` wrote last.
    bool hasEffectConstantsOf(const void *owner) const { return constantsOwner == owner; }
    GLuint getSampler(const SamplerStates &states) { return samplers.get(states); }
    void countUpload(std::size_t bytes);
    /// Counts the pixels that pass all tests, until the count is ended.
    void beginCountingPixels();
    /// Ends the count and waits for it; 0 where none was begun.
    std::uint64_t endCountingPixels();
    /// Whether compressed textures are known to the driver and read as fast as others: software decodes every look.
    bool samplesCompressedWell() const;
    bool drawsInSoftware() const { return context->isSoftware(); }
    /// Drops what refers to a texture that is going.
    void forget(const Texture &texture) { framebuffers.forget(texture); }
    void enlist(Resource &resource);
    void delist(Resource &resource);

    void setLost(bool lost);
    void setOverlay(std::function<void(int, int)> draw) { overlay = std::move(draw); }
    const FrameStats &getLastStats() const { return lastStats; }
    const FrameStats &getStats() const { return stats; }
    /// Null while a reset has failed.
    Texture *getBackBufferTexture() { return backBuffer ? &backBuffer->texture : nullptr; }

private:
    enum class State
    {
        WORKING,
        LOST,
        RESETTABLE
    };
    enum class SceneState
    {
        OUTSIDE,
        INSIDE
    };
    struct Stream
    {
        Held<VertexBuffer> buffer;
        UINT offset = 0;
        UINT stride = 0;
        UINT frequency = 1;
    };
    struct TextureUnit
    {
        Held<Texture> texture;
        GLuint sampler = 0;
        bool bound = false; ///< the library has what stands here
    };

    Device(std::unique_ptr<Context> context, HWND window);
    ~Device() override;
    HRESULT createBuffers(const D3DPRESENT_PARAMETERS &parameters);
    void applyWindowMode(const D3DPRESENT_PARAMETERS &parameters);
    void setDefaults();
    void unbindAll();
    bool reportLiveDefaultResources() const;
    Texture *createTexture(const TextureDescription &description, D3DFORMAT format);
    /// A surface to draw colour or depth to; null, and told, for a format of the other kind.
    Surface *createTarget(UINT width, UINT height, D3DFORMAT format, bool forDepth);
    void forgetLibraryState();

    HRESULT clearRegion(const D3DRECT *rect, DWORD flags, const float (&color)[4], float z, DWORD stencil);
    bool clearsWholeTarget(const D3DRECT *rect) const;
    DWORD withoutRedundantStencil(DWORD flags, DWORD stencil, bool whole);
    void resolveToWindow(int width, int height);
    /// Everything that was set and not yet brought to the library.
    HRESULT prepareDraw(bool indexed);
    bool bindTargets();
    void applyViewport();
    std::array<StreamSource, maxStreams> describeStreams() const;
    UINT instanceCount() const;
    void countDraw(D3DPRIMITIVETYPE type, UINT primitiveCount);

    std::unique_ptr<Context> context;
    HWND window;
    ULONG references = 1;
    State state = State::WORKING;
    SceneState scene = SceneState::OUTSIDE;
    std::vector<Resource *> resources;
    std::function<void(int, int)> overlay;
    GLuint pixelQuery = 0; ///< under way; 0 for none
    FrameStats stats;
    FrameStats lastStats;

    Framebuffers framebuffers;
    UniformRing deviceRing{deviceBlockBinding, 1u << 14};
    UniformRing effectRing{effectBlockBinding, 1u << 20}; ///< some two thousand blocks of half a kilobyte
    Samplers samplers;
    GLuint blackTexture = 0; ///< stands in for a texture that is not set

    Held<Surface> backBuffer;
    Held<Surface> autoDepth;
    std::array<Held<Surface>, maxRenderTargets> targets;
    Held<Surface> depth;
    TargetSet boundTargets;
    GLuint boundFramebuffer = 0;

    D3DVIEWPORT9 viewport{};
    D3DVIEWPORT9 appliedViewport{};
    DeviceConstants deviceConstants;
    bool deviceConstantsWritten = false;
    const void *constantsOwner = nullptr;
    RenderStates renderStates;

    Held<VertexDeclaration> declaration;
    std::array<Stream, maxStreams> streams;
    Held<IndexBuffer> indices;
    GLuint program = 0;
    GLuint boundProgram = 0;
    GLuint boundVertexArray = 0;
    std::array<TextureUnit, maxTextureUnits> units;
};

} // namespace port
