#include "port/d3d9/DebugText.h"
#include "port/d3d9/Device.h"
#include "port/win32/Display.h"

#include <SDL.h>
#include <cstdio>

namespace
{

/// The entry object. The host shows one adapter, whatever hardware is behind it.
class Direct3D final : public IDirect3D9
{
public:
    ULONG AddRef() override { return ++references; }
    ULONG Release() override;
    UINT GetAdapterCount() override { return 1; }
    HRESULT GetAdapterIdentifier(UINT adapter, DWORD flags, D3DADAPTER_IDENTIFIER9 *identifier) override;
    UINT GetAdapterModeCount(UINT adapter, D3DFORMAT format) override;
    HRESULT EnumAdapterModes(UINT adapter, D3DFORMAT format, UINT mode, D3DDISPLAYMODE *displayMode) override;
    HRESULT CreateDevice(UINT adapter, D3DDEVTYPE type, HWND focusWindow, DWORD behaviour,
                         D3DPRESENT_PARAMETERS *parameters, IDirect3DDevice9 **device) override;

private:
    ULONG references = 1;
};

ULONG Direct3D::Release()
{
    const ULONG left = --references;
    if (left == 0)
        delete this;
    return left;
}

HRESULT Direct3D::GetAdapterIdentifier(UINT adapter, DWORD, D3DADAPTER_IDENTIFIER9 *identifier)
{
    if (adapter != D3DADAPTER_DEFAULT || !identifier)
        return D3DERR_INVALIDCALL;
    *identifier = {};
    const char *driver = SDL_GetCurrentVideoDriver();
    const char *display = driver ? SDL_GetDisplayName(0) : nullptr;
    // The hardware's own name is known only once a context lives.
    const auto *renderer = port::Device::current() ? glGetString(GL_RENDERER) : nullptr;
    std::snprintf(identifier->Driver, sizeof(identifier->Driver), "OpenGL 4.5, %s", driver ? driver : "no display");
    std::snprintf(identifier->Description, sizeof(identifier->Description), "%s",
                  renderer ? reinterpret_cast<const char *>(renderer) : "OpenGL adapter");
    std::snprintf(identifier->DeviceName, sizeof(identifier->DeviceName), "%s", display ? display : "none");
    return D3D_OK;
}

UINT Direct3D::GetAdapterModeCount(UINT adapter, D3DFORMAT format)
{
    const bool offered = adapter == D3DADAPTER_DEFAULT && format == D3DFMT_X8R8G8B8;
    return offered ? static_cast<UINT>(port::displayModes().size()) : 0;
}

HRESULT Direct3D::EnumAdapterModes(UINT adapter, D3DFORMAT format, UINT mode, D3DDISPLAYMODE *displayMode)
{
    if (!displayMode || adapter != D3DADAPTER_DEFAULT)
        return D3DERR_INVALIDCALL;
    if (format != D3DFMT_X8R8G8B8)
        return D3DERR_NOTAVAILABLE;
    const auto &modes = port::displayModes();
    if (mode >= modes.size())
        return D3DERR_INVALIDCALL;
    *displayMode = {static_cast<UINT>(modes[mode].width), static_cast<UINT>(modes[mode].height),
                    static_cast<UINT>(modes[mode].refreshRate), format};
    return D3D_OK;
}

HRESULT Direct3D::CreateDevice(UINT adapter, D3DDEVTYPE type, HWND focusWindow, DWORD behaviour,
                               D3DPRESENT_PARAMETERS *parameters, IDirect3DDevice9 **device)
{
    if (!parameters || !device || adapter != D3DADAPTER_DEFAULT)
        return D3DERR_INVALIDCALL;
    if (type != D3DDEVTYPE_HAL && type != D3DDEVTYPE_REF)
        return D3DERR_INVALIDCALL;
    if (!(behaviour & D3DCREATE_HARDWARE_VERTEXPROCESSING) || parameters->MultiSampleType != D3DMULTISAMPLE_NONE)
        return D3DERR_INVALIDCALL;
    HRESULT result = D3D_OK;
    *device = port::Device::create(*parameters, focusWindow, result);
    return result;
}

} // namespace

IDirect3D9 *Direct3DCreate9(UINT sdkVersion)
{
    if (sdkVersion == D3D_SDK_VERSION)
        return new Direct3D;
    port::debugText("version %u was asked for, and %u is offered", sdkVersion, D3D_SDK_VERSION);
    return nullptr;
}
