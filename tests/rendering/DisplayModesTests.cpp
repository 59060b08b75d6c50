#include "support/TestLevel.h"

#include "engine/systems/SystemSystem.h"
#include "port/d3d9/d3d9.h"
#include "platform/window/GraphicsAdapterSystem.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

namespace
{
/// A Direct3D object with adapters and modes that the test names.
struct FakeDirect3D : IDirect3D9
{
    ULONG AddRef() override { return ++references; }
    ULONG Release() override { return --references; }
    UINT GetAdapterCount() override { return static_cast<UINT>(adapters.size()); }
    HRESULT GetAdapterIdentifier(UINT adapter, DWORD, D3DADAPTER_IDENTIFIER9 *identifier) override
    {
        if (adapters[adapter].empty())
            return D3DERR_NOTAVAILABLE;
        std::strcpy(identifier->Description, adapters[adapter].c_str());
        std::strcpy(identifier->Driver, "driver.so");
        return D3D_OK;
    }
    UINT GetAdapterModeCount(UINT adapter, D3DFORMAT format) override
    {
        askedAdapter = adapter;
        return format == D3DFMT_X8R8G8B8 ? static_cast<UINT>(modes.size()) : 0;
    }
    HRESULT EnumAdapterModes(UINT, D3DFORMAT, UINT mode, D3DDISPLAYMODE *displayMode) override
    {
        *displayMode = modes[mode];
        return modes[mode].Width ? D3D_OK : D3DERR_INVALIDCALL;
    }
    HRESULT CreateDevice(UINT, D3DDEVTYPE, HWND, DWORD, D3DPRESENT_PARAMETERS *, IDirect3DDevice9 **) override
    {
        return D3DERR_NOTAVAILABLE;
    }

    ULONG references = 1;
    UINT askedAdapter = 99;
    std::vector<std::string> adapters = {"First card"};
    std::vector<D3DDISPLAYMODE> modes = {{640, 480, 60, D3DFMT_X8R8G8B8}};
};

FakeDirect3D *offered = nullptr;

class Adapter : public testing::Test
{
protected:
    Adapter()
    {
        setenv("KAVEL_HEADLESS", "1", 1);
        offered = &direct3D;
        GraphicsAdapterSystem::setDirect3DFactory([](UINT) -> IDirect3D9 * { return offered; });
        SystemSystem::bootstrap();
    }
    ~Adapter() override
    {
        SystemSystem::shutdown();
        GraphicsAdapterSystem::setDirect3DFactory(nullptr);
    }

    GraphicsAdapterSystem &adapter() { return getSystemDeref<GraphicsAdapterSystem>(); }

    FakeDirect3D direct3D;
};

std::string sorted(std::vector<DisplayMode> modes)
{
    DEVMODEA desktop;
    desktop.dmPelsWidth = 1920;
    desktop.dmPelsHeight = 1080;
    std::sort(modes.begin(), modes.end(), ModeComparator(desktop));
    std::string text;
    for (const DisplayMode &mode : modes)
        text += std::to_string(mode.width) + "x" + std::to_string(mode.height) + "@" +
                std::to_string(mode.refreshRate) + " ";
    return text;
}
} // namespace

TEST(ModeComparator, PrefersWhatFitsThenTheAspectThenTheSizeThenTheRate)
{
    EXPECT_EQ(sorted({{1440, 2560, 60},
                      {1024, 1280, 75},
                      {1080, 1920, 60},
                      {720, 1280, 144},
                      {1080, 1920, 120},
                      {2160, 3840, 60},
                      {600, 800, 60}}),
              "1920x1080@120 1920x1080@60 1280x720@144 800x600@60 1280x1024@75 3840x2160@60 2560x1440@60 ");
}

TEST_F(Adapter, FirstOneIsTakenAndReleasedAtTheEnd)
{
    EXPECT_EQ(adapter().getAdapterID(), 0u);
    EXPECT_EQ(adapter().getDeviceType(), D3DDEVTYPE_HAL);
    EXPECT_EQ(adapter().getD3DPointer(), &direct3D);
    EXPECT_GE(countLogLines("0: desc=First card, drv=driver.so"), 1u);
    SystemSystem::shutdown();
    EXPECT_EQ(direct3D.references, 0u);
    SystemSystem::bootstrap();
}

TEST_F(Adapter, ProfilersOwnIsTakenInstead)
{
    direct3D.adapters = {"First card", "", "Some PerfHUD adapter"};
    EXPECT_EQ(adapter().getAdapterID(), 2u);
    EXPECT_EQ(adapter().getDeviceType(), D3DDEVTYPE_REF);
    EXPECT_EQ(direct3D.askedAdapter, 2u);
    EXPECT_GE(countLogLines("Could not get the graphics adapter's identifier"), 1u);
}

TEST_F(Adapter, ModesAreListedBestFirstWithoutThoseThatFail)
{
    direct3D.modes = {{640, 360, 60, D3DFMT_X8R8G8B8},
                      {0, 0, 0, D3DFMT_UNKNOWN},
                      {1280, 720, 60, D3DFMT_X8R8G8B8},
                      {1920, 1080, 60, D3DFMT_X8R8G8B8}};
    ASSERT_EQ(adapter().getNumDisplayModes(), 3);
    EXPECT_EQ(adapter().getDisplayModeWidth(0), 1280) << "the off-screen desktop's own size";
    EXPECT_EQ(adapter().getDisplayModeHeight(1), 360);
    EXPECT_EQ(adapter().getDisplayModeWidth(2), 1920) << "larger than the desktop";
    EXPECT_EQ(adapter().getDisplayModeRefreshRate(3), 0);
    EXPECT_EQ(adapter().getDisplayModeWidth(-1), 0);
}

TEST_F(Adapter, SystemWithoutDirect3DEndsTheProcess)
{
    offered = nullptr;
    EXPECT_EXIT(adapter(), testing::ExitedWithCode(1), "Unable to create Direct3D9 object");
}
