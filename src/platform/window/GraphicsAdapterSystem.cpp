#include "platform/window/GraphicsAdapterSystem.h"

#include "foundation/Assertions.h"
#include "foundation/Logger.h"
#include "port/d3d9/d3d9.h"

#include <algorithm>
#include <cstring>

namespace
{
GraphicsAdapterSystem::Direct3DFactory direct3DFactory = nullptr;

/// A profiler that wants to look into the process shows itself as an adapter of this name.
constexpr const char *PROFILER_ADAPTER = "PerfHUD";

constexpr D3DFORMAT DISPLAY_FORMAT = D3DFMT_X8R8G8B8;
} // namespace

void GraphicsAdapterSystem::setDirect3DFactory(Direct3DFactory factory)
{
    direct3DFactory = factory;
}

void GraphicsAdapterSystem::systemStartup()
{
    pD3D = direct3DFactory ? direct3DFactory(D3D_SDK_VERSION) : Direct3DCreate9(D3D_SDK_VERSION);
    KV_CRITICAL_ASSERT(pD3D, "Unable to create Direct3D9 object");
    chooseAdapter();
    modes = enumDisplayModes();
}

void GraphicsAdapterSystem::chooseAdapter()
{
    adapterID = D3DADAPTER_DEFAULT;
    devType = D3DDEVTYPE_HAL;
    KV_LOG(Logger_::I_INFO, "Available graphics adapters:");
    for (UINT adapter = 0; adapter < pD3D->GetAdapterCount(); ++adapter)
    {
        D3DADAPTER_IDENTIFIER9 identifier = {};
        const ErrorCode result = dxCall(pD3D->GetAdapterIdentifier(adapter, 0, &identifier));
        if (!result.succeeded())
        {
            KV_ERROR("%s\n\n%s", "Could not get the graphics adapter's identifier", result.toString().toCString());
            continue;
        }
        KV_LOGF(Logger_::I_INFO, "%i: desc=%s, drv=%s", static_cast<int>(adapter), identifier.Description,
                identifier.Driver);
        if (!std::strstr(identifier.Description, PROFILER_ADAPTER))
            continue;
        adapterID = adapter;
        devType = D3DDEVTYPE_REF;
    }
}

void GraphicsAdapterSystem::systemShutdown()
{
    if (pD3D)
        pD3D->Release();
    pD3D = nullptr;
}

GraphicsAdapterSystem::ModeList GraphicsAdapterSystem::enumDisplayModes() const
{
    ModeList found;
    const UINT count = pD3D ? pD3D->GetAdapterModeCount(adapterID, DISPLAY_FORMAT) : 0;
    for (UINT i = 0; i < count; ++i)
    {
        D3DDISPLAYMODE mode = {};
        const ErrorCode result = dxCall(pD3D->EnumAdapterModes(adapterID, DISPLAY_FORMAT, i, &mode));
        if (!result.succeeded())
        {
            KV_ERROR("%s\n\n%s", "Could not get a display mode", result.toString().toCString());
            continue;
        }
        if (mode.Width > 0 && mode.Height > 0)
            found.push_back(
                {static_cast<int>(mode.Height), static_cast<int>(mode.Width), static_cast<int>(mode.RefreshRate)});
    }
    std::stable_sort(found.begin(), found.end(), ModeComparator());
    return found;
}

DisplayMode GraphicsAdapterSystem::getMode(int modeNum) const
{
    return modeNum >= 0 && modeNum < getNumDisplayModes() ? modes[static_cast<std::size_t>(modeNum)] : DisplayMode();
}

int GraphicsAdapterSystem::getNumDisplayModes() const
{
    return static_cast<int>(modes.size());
}

int GraphicsAdapterSystem::getDisplayModeHeight(int modeNum) const
{
    return getMode(modeNum).height;
}

int GraphicsAdapterSystem::getDisplayModeWidth(int modeNum) const
{
    return getMode(modeNum).width;
}

int GraphicsAdapterSystem::getDisplayModeRefreshRate(int modeNum) const
{
    return getMode(modeNum).refreshRate;
}
