#include "port/d3d9/Device.h"

#include "port/d3d9/Buffer.h"
#include "port/d3d9/DebugText.h"
#include "port/win32/SdlWindow.h"

#include <algorithm>

namespace
{

port::Device *liveDevice = nullptr;

/// Software can, but at a price of half the frame.
bool filtersAnisotropically(const port::Context &context)
{
    return !context.isSoftware() && epoxy_has_gl_extension("GL_EXT_texture_filter_anisotropic");
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

Device::Device(std::unique_ptr<Context> glContext, HWND window)
    : context(std::move(glContext)), window(window), samplers(filtersAnisotropically(*context))
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

bool Device::samplesCompressedWell() const
{
    return !context->isSoftware() && epoxy_has_gl_extension("GL_EXT_texture_compression_s3tc");
}

void Device::countUpload(std::size_t bytes)
{
    ++stats.uploads;
    stats.uploadBytes += bytes;
}

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
    viewport = backBuffer->whole();
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
    const D3DVIEWPORT9 whole = surface->whole();
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

} // namespace port
