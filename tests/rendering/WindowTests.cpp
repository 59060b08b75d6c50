#include "support/TestLevel.h"

#include "engine/screen/ScreenMetrics.h"
#include "engine/systems/SystemSystem.h"
#include "platform/input/InputSystem.h"
#include "port/win32/Diagnostics.h"
#include "port/win32/SdlPlatform.h"
#include "platform/window/GraphicsAdapterSystem.h"
#include "platform/window/WindowSystem2.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>

namespace
{
/// The host's platform off-screen, with operations that fail when the test says so.
struct FailingPlatform : port::SdlPlatform
{
    FailingPlatform() { setenv("KAVEL_HEADLESS", "1", 1); }

    HWND CreateWindowExA(DWORD exStyle, LPCSTR className, LPCSTR name, DWORD style, int x, int y, int width, int height,
                         HWND parent, HMENU menu, HINSTANCE instance, LPVOID param) override
    {
        title = name;
        if (!noWindow)
            return SdlPlatform::CreateWindowExA(exStyle, className, name, style, x, y, width, height, parent, menu,
                                                instance, param);
        SetLastError(ERROR_ACCESS_DENIED);
        return nullptr;
    }
    BOOL SetCursorPos(int x, int y) override
    {
        ++cursorMoves;
        if (!noCursor)
            return SdlPlatform::SetCursorPos(x, y);
        SetLastError(ERROR_ACCESS_DENIED);
        return FALSE;
    }
    int ShowCursor(BOOL show) override { return cursorCount = SdlPlatform::ShowCursor(show); }
    int GetSystemMetrics(int index) override
    {
        if (desktop.right == 0)
            return SdlPlatform::GetSystemMetrics(index);
        if (index == SM_CXSCREEN)
            return desktop.right;
        if (index == SM_CYSCREEN)
            return desktop.bottom;
        return index == SM_CYCAPTION ? 30 : 5;
    }
    BOOL SystemParametersInfoA(UINT, UINT, PVOID data, UINT) override
    {
        *static_cast<RECT *>(data) = {desktop.left, desktop.top, desktop.right, desktop.bottom - 40};
        return desktop.right > 0;
    }

    BOOL EnumDisplayMonitors(HDC, LPCRECT, MONITORENUMPROC told, LPARAM data) override
    {
        for (std::uintptr_t number = 1; number <= monitors.size(); ++number)
            if (!told(reinterpret_cast<HMONITOR>(number), nullptr, &monitors[number - 1], data))
                break;
        return TRUE;
    }
    BOOL GetMonitorInfoA(HMONITOR monitor, MONITORINFO *info) override
    {
        info->rcMonitor = info->rcWork = monitors[reinterpret_cast<std::uintptr_t>(monitor) - 1];
        return TRUE;
    }

    std::string title;
    std::vector<RECT> monitors; ///< made-up ones; none while it is empty
    int cursorCount = 0;
    int cursorMoves = 0;
    bool noWindow = false;
    bool noCursor = false;
    RECT desktop{}; ///< a made-up one, with a panel of 40 pixels below; none while it is empty
};

class Window : public testing::Test
{
protected:
    Window() : scope(platform) { SystemSystem::bootstrap(); }
    ~Window() override
    {
        SystemSystem::shutdown();
        drain();
    }

    WindowSystem2 &window() { return getSystemDeref<WindowSystem2>(); }
    GraphicsAdapterSystem &adapter() { return getSystemDeref<GraphicsAdapterSystem>(); }
    POINT place()
    {
        POINT corner{0, 0};
        ClientToScreen(window().getWindowHandle(), &corner);
        return corner;
    }
    POINT cursor()
    {
        POINT place{0, 0};
        GetCursorPos(&place);
        return place;
    }
    POINT centre()
    {
        POINT place{window().getWidth() / 2, window().getHeight() / 2};
        ClientToScreen(window().getWindowHandle(), &place);
        return place;
    }
    void send(UINT message, WPARAM wParam) { SendMessageA(window().getWindowHandle(), message, wParam, 0); }

    std::optional<MSG> drain()
    {
        MSG msg;
        while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE))
        {
            DispatchMessageA(&msg);
            if (msg.message == WM_QUIT)
                return msg;
        }
        return std::nullopt;
    }

    FailingPlatform platform;
    port::ScopedWin32Platform scope;
};

bool operator==(const POINT &a, const POINT &b)
{
    return a.x == b.x && a.y == b.y;
}
} // namespace

TEST(WindowCoordinate, NegativeNormalizedCountsFromTheFarEdgeUnlessItMayNotWrap)
{
    const auto toNoWrap = [](float x, WindowCoordinateSystem system)
    { return WindowCoordinate(x, 0, system).convert(WCS_NORMALIZED_NOWRAP, WCS_NORMALIZED, 400, 800, 800.0f).x; };
    EXPECT_FLOAT_EQ(toNoWrap(-0.1f, WCS_NORMALIZED), 0.4f);
    EXPECT_FLOAT_EQ(toNoWrap(0.1f, WCS_NORMALIZED), 0.1f);
    EXPECT_FLOAT_EQ(toNoWrap(-0.1f, WCS_NORMALIZED_NOWRAP), -0.1f);
    EXPECT_FLOAT_EQ(toNoWrap(200.0f, WCS_PIXEL), 0.25f);
    EXPECT_FLOAT_EQ(toNoWrap(0.5f, WCS_PERCENT), 0.25f);
}

TEST(WindowCoordinate, AxesConvertByThemselvesAndNothingLeadsOutOfNormalizedUnits)
{
    const WindowCoordinate in(-0.25f, 1.0f, WCS_NORMALIZED, WCS_PERCENT);
    const WindowCoordinate out = in.convert(WCS_PIXEL, WCS_PERCENT, 800, 400, 800.0f);
    EXPECT_FLOAT_EQ(out.x, 0.75f) << "labelled as pixels, and normalised all the same";
    EXPECT_EQ(out.wcsX, WCS_PIXEL);
    EXPECT_FLOAT_EQ(out.y, 1.0f) << "already in the target system";
    EXPECT_EQ(out.wcsY, WCS_PERCENT);
}

TEST_F(Window, StartsInTheMiddleOfTheScreenInTheBestModeWithTheCursorHeld)
{
    EXPECT_EQ(window().getDisplayMode(), 0);
    EXPECT_EQ(window().getWidth(), 1280);
    EXPECT_EQ(window().getHeight(), 720);
    EXPECT_EQ(window().getSelectedRefreshRate(), 60);
    EXPECT_EQ(platform.title, "Mornal");
    EXPECT_EQ(window().getCursorMode(), WindowSystem2::CURSOR_RELATIVE);
    EXPECT_EQ(platform.cursorCount, -1);
    EXPECT_TRUE(cursor() == centre());
    EXPECT_EQ(getScreenMetrics().width, 1280);
    EXPECT_FLOAT_EQ(getScreenMetrics().normalizationFactor, 1280.0f);
}

TEST_F(Window, StartsWithTheUsualSizeOnALargeDesktopAndFitsItWithItsFrame)
{
    platform.desktop = {0, 0, 1920, 1080};
    EXPECT_EQ(window().getWidth(), 1280);
    EXPECT_EQ(window().getHeight(), 720);
    window().setWindowedSize(4000, 3000);
    EXPECT_EQ(window().getWidth(), 1910);
    EXPECT_EQ(window().getHeight(), 1000) << "less the panel, the caption and two edges";
    POINT corner{0, 0};
    ClientToScreen(window().getWindowHandle(), &corner);
    EXPECT_TRUE(corner == (POINT{5, 35}));

    platform.desktop = {0, 0, 1024, 768};
    window().setWindowedSize(1280, 720);
    EXPECT_EQ(window().getWidth(), 1014);
    EXPECT_EQ(window().getHeight(), 688);
}

TEST_F(Window, UserMayResizeUnlessThePropertyForbidsIt)
{
    const auto style = [this] { return static_cast<DWORD>(GetWindowLongA(window().getWindowHandle(), GWL_STYLE)); };
    constexpr DWORD resizing = WS_THICKFRAME | WS_MAXIMIZEBOX | WS_MINIMIZEBOX;
    EXPECT_EQ(style() & resizing, resizing);
    window().setResizable(false);
    EXPECT_EQ(style(), 0x10C00000u) << "the designed style";
    window().setFullScreen(true);
    window().setFullScreen(false);
    EXPECT_EQ(style() & resizing, 0u);
    window().setResizable(true);
    EXPECT_EQ(style() & resizing, resizing);
}

TEST_F(Window, SizeThatTheUserGivesIsTakenOverOnceAFrame)
{
    int changes = 0;
    window().setSizeListener([&changes] { ++changes; });
    for (int width = 400; width <= 500; width += 10)
    {
        SetWindowPos(window().getWindowHandle(), nullptr, 0, 0, width, 300, SWP_NOMOVE | SWP_NOZORDER);
        drain();
    }
    EXPECT_EQ(changes, 0);
    window().followSize();
    window().followSize();
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(window().getWidth(), 500);
    EXPECT_EQ(getScreenMetrics().height, 300);
    window().setFullScreen(true);
    window().setFullScreen(false);
    EXPECT_EQ(window().getWidth(), 500) << "the window's own size from now on";
    window().setSizeListener({});
}

TEST_F(Window, SizeOfItsOwnIsTakenOnlyWhileWindowed)
{
    window().setWindowedSize(360, 640);
    EXPECT_EQ(window().getWidth(), 360);
    EXPECT_EQ(getScreenMetrics().height, 640);
    EXPECT_FLOAT_EQ(getScreenMetrics().normalizationFactor, 640.0f);
    EXPECT_FLOAT_EQ(
        window().convertWindowCoordinate(WindowCoordinate(1, 0, WCS_PERCENT), WCS_NORMALIZED, WCS_NORMALIZED).x,
        360.0f / 640.0f);
    EXPECT_NE(GetWindowLongA(window().getWindowHandle(), GWL_STYLE) & WS_CAPTION, 0u);

    window().setFullScreen(true);
    EXPECT_EQ(window().getWidth(), 1280);
    EXPECT_EQ(GetWindowLongA(window().getWindowHandle(), GWL_STYLE) & WS_CAPTION, 0u);

    window().setFullScreen(false);
    EXPECT_EQ(window().getWidth(), 360);
    window().setWindowedSize(0, 0);
    EXPECT_EQ(window().getWidth(), 1280);
    window().setWindowedSize(640, -1);
    EXPECT_EQ(window().getWidth(), 1280);
}

TEST_F(Window, WithoutAFrameItCoversTheMonitorOfChoiceAndComesBack)
{
    platform.desktop = {0, 0, 1000, 700};
    platform.monitors = {{0, 0, 1000, 700}, {1000, 0, 1800, 600}};
    window().setWindowedSize(360, 640);
    window().setMonitor(1);
    EXPECT_EQ(place().x, 1000 + (800 - 360) / 2) << "in the middle of the other monitor's room";
    window().setBorderless(true);
    EXPECT_EQ(window().getWidth(), 800);
    EXPECT_EQ(window().getHeight(), 600);
    EXPECT_EQ(place().x, 1000);
    EXPECT_EQ(GetWindowLongA(window().getWindowHandle(), GWL_STYLE) & WS_CAPTION, 0u);
    window().setMonitor(7);
    EXPECT_EQ(window().getWidth(), 1000) << "the first one in the place of one that is not there";
    window().setBorderless(false);
    EXPECT_EQ(window().getWidth(), 360);
}

TEST_F(Window, ModeThatIsNotInTheListChangesNothing)
{
    const int modes = adapter().getNumDisplayModes();
    window().setDisplayMode(modes);
    window().setDisplayMode(-1);
    EXPECT_EQ(window().getDisplayMode(), 0);
    EXPECT_EQ(countLogLines(String::format("Invalid mode ID %i", modes).toCString()), 1u);
    EXPECT_EQ(countLogLines("Invalid mode ID -1"), 1u);

    window().setDisplayMode(modes - 1);
    EXPECT_EQ(window().getWidth(), adapter().getDisplayModeWidth(modes - 1));
}

TEST_F(Window, ClosingEndsTheGameWithExitCodeZeroAndLaterCallsAreHarmless)
{
    PostMessageA(window().getWindowHandle(), WM_CLOSE, 0, 0);
    const std::optional<MSG> quit = drain();
    ASSERT_TRUE(quit);
    EXPECT_EQ(quit->wParam, 0u);
    EXPECT_EQ(window().getWindowHandle(), nullptr);
    window().constrainCursorIfNeeded();
    window().setFullScreen(true);
}

TEST_F(Window, CursorIsHeldOnlyWhileTheWindowIsInFront)
{
    window();
    SetCursorPos(3, 4);
    window().constrainCursorIfNeeded();
    EXPECT_TRUE(cursor() == centre());

    send(WM_ACTIVATE, WA_INACTIVE);
    SetCursorPos(3, 4);
    window().constrainCursorIfNeeded();
    EXPECT_TRUE(cursor() == (POINT{3, 4})) << "another program has it";

    send(WM_ACTIVATEAPP, TRUE);
    window().constrainCursorIfNeeded();
    EXPECT_TRUE(cursor() == centre());
}

TEST_F(Window, FreedCursorComesBackWhereItWas)
{
    SetCursorPos(3, 4);
    window().setCursorMode(WindowSystem2::CURSOR_ABSOLUTE);
    EXPECT_TRUE(cursor() == (POINT{3, 4}));
    EXPECT_EQ(platform.cursorCount, 0);

    SetCursorPos(50, 60);
    window().constrainCursorIfNeeded();
    EXPECT_TRUE(cursor() == (POINT{50, 60}));
    window().setCursorMode(WindowSystem2::CURSOR_RELATIVE);
    EXPECT_TRUE(cursor() == centre());
    EXPECT_EQ(platform.cursorCount, -1);
    window().setCursorMode(WindowSystem2::CURSOR_ABSOLUTE);
    EXPECT_TRUE(cursor() == (POINT{50, 60}));
}

TEST_F(Window, CursorThatCannotBeHeldIsReportedOnce)
{
    window();
    const std::size_t before = countLogLines("Could not set mouse to center of screen");
    platform.noCursor = true;
    const int moves = platform.cursorMoves;
    for (int i = 0; i < 5; ++i)
        window().constrainCursorIfNeeded();
    EXPECT_EQ(platform.cursorMoves, moves + 5) << "it is tried again each frame";
    EXPECT_EQ(countLogLines("Could not set mouse to center of screen"), before + 1);

    platform.noCursor = false;
    window().constrainCursorIfNeeded();
    platform.noCursor = true;
    window().constrainCursorIfNeeded();
    EXPECT_EQ(countLogLines("Could not set mouse to center of screen"), before + 2);
}

TEST_F(Window, InputReachesTheInputSystemThroughTheLoop)
{
    InputSystem &input = getSystemDeref<InputSystem>();
    ASSERT_TRUE(port::postRawInput(port::keyInput('W', true)));
    drain();
    EXPECT_TRUE(input.isKeyDown('W'));
    EXPECT_FLOAT_EQ(input.getMouseX(), 0.5f) << "the cursor is held at the centre";
}

TEST(WindowInALevel, FrameStepHoldsTheCursorAlsoWhileTheLevelStands)
{
    FailingPlatform platform;
    const port::ScopedWin32Platform scope(platform);
    TestLevel level;
    level.coordinator().setLoopState(Coordinator::LOOP_STOP);
    getSystemDeref<WindowSystem2>();
    const int moves = platform.cursorMoves;
    level.frame();
    EXPECT_EQ(platform.cursorMoves, moves + 1);
}

TEST_F(Window, WindowThatCannotBeMadeEndsTheProcess)
{
    platform.noWindow = true;
    EXPECT_EXIT(window(), testing::ExitedWithCode(1), "Could not create the window!");
}
