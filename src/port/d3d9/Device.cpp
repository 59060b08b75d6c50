#include "port/d3d9/Device.h"

#include "port/d3d9/Buffer.h"
#include "port/d3d9/DebugText.h"
#include "port/win32/SdlWindow.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace
{

port::Device *liveDevice = nullptr;

D3DVIEWPORT9 wholeOf(const port::Surface &surface)
{
    return {0, 0, surface.texture.levelWidth(surface.level), surface.texture.levelHeight(surface.level), 0.0f, 1.0f};
}

/// A surface made by this port; every surface that reaches the device is.
port::Surface *ours(IDirect3DSurface9 *surface)
{
    return static_cast<port::Surface *>(surface);
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

Device *Device::current()
{
    return liveDevice;
}

Device *Device::from(IDirect3DDevice9 *device)
{
    return device && device == liveDevice ? liveDevice : nullptr;
}

Device *Device::create(const D3DPRESENT_PARAMETERS &parameters, HWND focusWindow, HRESULT &result)
{
    result = D3DERR_NOTAVAILABLE;
    if (liveDevice)
    {
        debugText("a device is alive already, and only one can be");
        return nullptr;
    }
    const HWND window = parameters.hDeviceWindow ? parameters.hDeviceWindow : focusWindow;
    auto context = Context::create(window);
    if (!context)
        return nullptr;
    auto *device = new Device(std::move(context), window);
    result = device->createBuffers(parameters);
    if (SUCCEEDED(result))
        return device;
    device->Release();
    return nullptr;
}

Device::Device(std::unique_ptr<Context> glContext, HWND window) : context(std::move(glContext)), window(window)
{
    liveDevice = this;
    glClipControl(GL_UPPER_LEFT, GL_ZERO_TO_ONE);
    glEnable(GL_PROGRAM_POINT_SIZE);
    glDisable(GL_DITHER);
    glCreateTextures(GL_TEXTURE_2D, 1, &blackTexture);
    glTextureStorage2D(blackTexture, 1, GL_RGBA8, 1, 1);
    const BYTE black[] = {0, 0, 0, 255};
    glTextureSubImage2D(blackTexture, 0, 0, 0, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, black);
}

Device::~Device()
{
    unbindAll();
    framebuffers.clear();
    glDeleteTextures(1, &blackTexture);
    liveDevice = nullptr;
}

ULONG Device::Release()
{
    const ULONG left = --references;
    if (left == 0)
        delete this;
    return left;
}

void Device::enlist(Resource &resource)
{
    resource.listIndex = resources.size();
    resources.push_back(&resource);
}

void Device::delist(Resource &resource)
{
    resources.back()->listIndex = resource.listIndex;
    resources[resource.listIndex] = resources.back();
    resources.pop_back();
}

void Device::countUpload(std::size_t bytes)
{
    ++stats.uploads;
    stats.uploadBytes += bytes;
}

// Life of the device

HRESULT Device::createBuffers(const D3DPRESENT_PARAMETERS &wanted)
{
    int width = static_cast<int>(wanted.BackBufferWidth), height = static_cast<int>(wanted.BackBufferHeight);
    applyWindowMode(wanted);
    if (width <= 0 || height <= 0)
        context->getDrawableSize(width, height);
    const auto w = static_cast<UINT>(width), h = static_cast<UINT>(height);

    const D3DFORMAT format = wanted.BackBufferFormat == D3DFMT_UNKNOWN ? D3DFMT_X8R8G8B8 : wanted.BackBufferFormat;
    backBuffer.set(createTarget(w, h, format, false));
    if (!backBuffer)
        return D3DERR_INVALIDCALL;
    backBuffer->texture.setPrivateData(WKPDID_D3DDebugObjectName, "back buffer", 11);
    if (wanted.EnableAutoDepthStencil)
    {
        autoDepth.set(createTarget(w, h, wanted.AutoDepthStencilFormat, true));
        if (!autoDepth)
            return D3DERR_INVALIDCALL;
        autoDepth->texture.setPrivateData(WKPDID_D3DDebugObjectName, "automatic", 9);
    }
    context->setVerticalSync(wanted.PresentationInterval != D3DPRESENT_INTERVAL_IMMEDIATE);
    setDefaults();
    return D3D_OK;
}

Surface *Device::createTarget(UINT width, UINT height, D3DFORMAT format, bool forDepth)
{
    const DWORD usage = forDepth ? D3DUSAGE_DEPTHSTENCIL : D3DUSAGE_RENDERTARGET;
    Texture *texture = createTexture({width, height, 1, usage, D3DPOOL_DEFAULT}, format);
    if (texture && texture->format().depth == forDepth)
        return &texture->surface(0);
    delete texture;
    debugText("no %s surface of %u x %u, format %d", forDepth ? "depth-stencil" : "colour", width, height,
              static_cast<int>(format));
    return nullptr;
}

void Device::applyWindowMode(const D3DPRESENT_PARAMETERS &wanted)
{
    if (!window)
        return;
    if (wanted.Windowed)
        leaveFullScreen(window);
    else if (!enterFullScreen(window, static_cast<int>(wanted.BackBufferWidth),
                              static_cast<int>(wanted.BackBufferHeight),
                              static_cast<int>(wanted.FullScreen_RefreshRateInHz)))
        debugText("the display refuses %u x %u; staying in the window", wanted.BackBufferWidth,
                  wanted.BackBufferHeight);
}

void Device::setDefaults()
{
    targets[0].set(backBuffer.get());
    depth.set(autoDepth.get());
    viewport = wholeOf(*backBuffer.get());
    renderStates = RenderStates();
    forgetLibraryState();
    for (Stream &stream : streams)
        stream.frequency = 1;
}

/// For when somebody else changed it.
void Device::forgetLibraryState()
{
    renderStates.invalidate();
    appliedViewport = {};
    boundTargets = {};
    boundFramebuffer = boundProgram = boundVertexArray = 0;
    deviceConstantsWritten = false;
    constantsOwner = nullptr;
    for (UINT unit = 0; unit < maxTextureUnits; ++unit)
    {
        units[unit].bound = false;
        units[unit].sampler = 0;
        glBindSampler(unit, 0);
    }
}

void Device::unbindAll()
{
    for (auto &target : targets)
        target.set(nullptr);
    depth.set(nullptr);
    backBuffer.set(nullptr);
    autoDepth.set(nullptr);
    declaration.set(nullptr);
    indices.set(nullptr);
    for (Stream &stream : streams)
        stream.buffer.set(nullptr);
    for (TextureUnit &unit : units)
    {
        unit.texture.set(nullptr);
        unit.bound = false;
    }
    program = 0;
}

HRESULT Device::TestCooperativeLevel()
{
    if (state == State::WORKING)
        return D3D_OK;
    return state == State::LOST ? D3DERR_DEVICELOST : D3DERR_DEVICENOTRESET;
}

void Device::setLost(bool lost)
{
    if (lost)
        state = State::LOST;
    else if (state == State::LOST)
        state = State::RESETTABLE;
}

bool Device::reportLiveDefaultResources() const
{
    std::size_t alive = 0;
    for (const Resource *resource : resources)
    {
        if (resource->getPool() != D3DPOOL_DEFAULT || !resource->isUsed())
            continue;
        ++alive;
        debugText("Reset: still alive in the default pool: %s, %u references", resource->describe().c_str(),
                  resource->userCount());
    }
    if (alive > 0)
        debugText("Reset: %zu default-pool resources must be released first", alive);
    return alive > 0;
}

HRESULT Device::Reset(D3DPRESENT_PARAMETERS *parameters)
{
    if (!parameters)
        return D3DERR_INVALIDCALL;
    if (state == State::LOST)
        return D3DERR_DEVICELOST;
    // A failed reset leaves a device that wants another.
    state = State::RESETTABLE;
    if (reportLiveDefaultResources())
        return D3DERR_INVALIDCALL;
    unbindAll();
    const HRESULT result = createBuffers(*parameters);
    if (FAILED(result))
        return result;
    scene = SceneState::OUTSIDE;
    state = State::WORKING;
    return D3D_OK;
}

HRESULT Device::Present(const RECT *, const RECT *, HWND, const void *)
{
    if (state != State::WORKING)
        return state == State::LOST ? D3DERR_DEVICELOST : D3DERR_DEVICENOTRESET;
    int width = 0, height = 0;
    context->getDrawableSize(width, height);
    resolveToWindow(width, height);
    if (overlay)
    {
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
        glClipControl(GL_LOWER_LEFT, GL_NEGATIVE_ONE_TO_ONE);
        overlay(width, height);
        glClipControl(GL_UPPER_LEFT, GL_ZERO_TO_ONE);
        glEnable(GL_PROGRAM_POINT_SIZE);
        glDisable(GL_SCISSOR_TEST);
        forgetLibraryState();
    }
    context->swap();
    lastStats = stats;
    stats = {};
    return D3D_OK;
}

void Device::resolveToWindow(int width, int height)
{
    TargetSet source;
    source.colors[0] = backBuffer.get();
    const Texture &texture = backBuffer->texture;
    const auto sourceWidth = static_cast<GLint>(texture.levelWidth(0));
    const auto sourceHeight = static_cast<GLint>(texture.levelHeight(0));
    const bool sameSize = sourceWidth == width && sourceHeight == height;
    renderStates.openWriteMasks(stats);
    // Our first row is the top one, the window's the bottom one.
    glBlitNamedFramebuffer(framebuffers.get(source), 0, 0, 0, sourceWidth, sourceHeight, 0, height, width, 0,
                           GL_COLOR_BUFFER_BIT, sameSize ? GL_NEAREST : GL_LINEAR);
}

// Frame

HRESULT Device::BeginScene()
{
    if (state != State::WORKING)
        return D3DERR_DEVICELOST;
    if (scene == SceneState::INSIDE)
        return D3DERR_INVALIDCALL;
    scene = SceneState::INSIDE;
    return D3D_OK;
}

HRESULT Device::EndScene()
{
    if (scene == SceneState::OUTSIDE)
        return D3DERR_INVALIDCALL;
    scene = SceneState::OUTSIDE;
    return D3D_OK;
}

HRESULT Device::Clear(DWORD count, const D3DRECT *rects, DWORD flags, D3DCOLOR color, float z, DWORD stencil)
{
    if (state != State::WORKING)
        return D3DERR_DEVICELOST;
    constexpr DWORD known = D3DCLEAR_TARGET | D3DCLEAR_ZBUFFER | D3DCLEAR_STENCIL;
    const bool needsDepth = flags & (D3DCLEAR_ZBUFFER | D3DCLEAR_STENCIL);
    if (flags == 0 || (flags & ~known) || (count > 0) != (rects != nullptr) || (needsDepth && !depth))
        return D3DERR_INVALIDCALL;
    const auto channel = [color](unsigned shift) { return static_cast<float>((color >> shift) & 0xff) / 255.0f; };
    const float channels[] = {channel(16), channel(8), channel(0), channel(24)};
    if (count == 0)
        return clearRegion(nullptr, flags, channels, z, stencil);
    for (DWORD index = 0; index < count; ++index)
        if (const HRESULT result = clearRegion(&rects[index], flags, channels, z, stencil); FAILED(result))
            return result;
    return D3D_OK;
}

bool Device::clearsWholeTarget(const D3DRECT *rect) const
{
    const Surface *surface = depth ? depth.get() : targets[0].get();
    const D3DVIEWPORT9 whole = wholeOf(*surface);
    return !rect && viewport.X == 0 && viewport.Y == 0 && viewport.Width >= whole.Width &&
           viewport.Height >= whole.Height;
}

/// A stencil buffer that holds the value already needs no clear, and one whose value is known is cheaper to clear
/// together with its depth than to spare.
DWORD Device::withoutRedundantStencil(DWORD flags, DWORD stencil, bool whole)
{
    if (!depth)
        return flags;
    int &known = depth->knownStencil;
    if (flags & D3DCLEAR_STENCIL)
    {
        if (known == static_cast<int>(stencil & 0xff) && !(flags & D3DCLEAR_ZBUFFER))
            return flags & ~D3DCLEAR_STENCIL;
        if (whole)
            known = static_cast<int>(stencil & 0xff);
        else if (known != static_cast<int>(stencil & 0xff))
            known = -1;
    }
    return flags;
}

HRESULT Device::clearRegion(const D3DRECT *rect, DWORD flags, const float (&color)[4], float z, DWORD stencil)
{
    if (!bindTargets())
        return D3DERR_INVALIDCALL;
    const bool whole = clearsWholeTarget(rect);
    flags = withoutRedundantStencil(flags, stencil, whole);
    if (flags == 0)
        return D3D_OK;
    auto stencilValue = static_cast<GLint>(stencil & 0xff);
    bool clearStencil = flags & D3DCLEAR_STENCIL;
    if ((flags & D3DCLEAR_ZBUFFER) && !clearStencil && depth->knownStencil >= 0)
    {
        clearStencil = true;
        stencilValue = depth->knownStencil;
    }

    renderStates.openWriteMasks(stats);
    if (!whole)
    {
        const auto left = static_cast<LONG>(viewport.X), top = static_cast<LONG>(viewport.Y);
        const LONG right = left + static_cast<LONG>(viewport.Width), bottom = top + static_cast<LONG>(viewport.Height);
        const LONG x1 = rect ? std::max(rect->x1, left) : left, x2 = rect ? std::min(rect->x2, right) : right;
        const LONG y1 = rect ? std::max(rect->y1, top) : top, y2 = rect ? std::min(rect->y2, bottom) : bottom;
        glEnable(GL_SCISSOR_TEST);
        glScissor(x1, y1, std::max(0, x2 - x1), std::max(0, y2 - y1));
    }
    if (flags & D3DCLEAR_TARGET)
        for (unsigned slot = 0; slot < maxRenderTargets; ++slot)
            if (targets[slot])
                glClearBufferfv(GL_COLOR, static_cast<GLint>(slot), color);
    if ((flags & D3DCLEAR_ZBUFFER) && clearStencil)
        glClearBufferfi(GL_DEPTH_STENCIL, 0, z, stencilValue);
    else if (flags & D3DCLEAR_ZBUFFER)
        glClearBufferfv(GL_DEPTH, 0, &z);
    else if (clearStencil)
        glClearBufferiv(GL_STENCIL, 0, &stencilValue);
    if (!whole)
        glDisable(GL_SCISSOR_TEST);
    ++stats.clears;
    return D3D_OK;
}

// Targets

HRESULT Device::SetRenderTarget(DWORD index, IDirect3DSurface9 *surface)
{
    if (index >= maxRenderTargets || (index == 0 && !surface))
        return D3DERR_INVALIDCALL;
    Surface *target = ours(surface);
    if (target && target->texture.format().depth)
        return D3DERR_INVALIDCALL;
    targets[index].set(target);
    if (index == 0)
        viewport = wholeOf(*target);
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

// Resources

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

// State

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

// Drawing

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

void Device::countDraw()
{
    ++stats.draws;
    stats.instances += instanceCount();
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
    countDraw();
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
    countDraw();
    return D3D_OK;
}

} // namespace port
