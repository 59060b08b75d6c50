#include "port/win32/OffscreenWindow.h"

#include "port/win32/Diagnostics.h"
#include "port/win32/SdlPlatform.h"
#include "port/win32/Waiting.h"

namespace
{
class Windows : public OffscreenWindow
{
};

std::vector<UINT> kinds(const std::vector<MSG> &messages)
{
    std::vector<UINT> found;
    for (const MSG &message : messages)
        found.push_back(message.message);
    return found;
}

struct NoWindows : port::SdlPlatform
{
    HWND CreateWindowExA(DWORD, LPCSTR, LPCSTR, DWORD, int, int, int, int, HWND, HMENU, HINSTANCE, LPVOID) override
    {
        SetLastError(ERROR_ACCESS_DENIED);
        return nullptr;
    }
};
} // namespace

TEST_F(Windows, CloseButtonDestroysTheWindowAndItsQuitValueEndsTheLoop)
{
    pushWindowEvent(SDL_WINDOWEVENT_CLOSE);

    const std::optional<MSG> quit = drain();

    ASSERT_TRUE(quit);
    EXPECT_EQ(quit->wParam, WPARAM(QUIT_VALUE));
    EXPECT_EQ(heardOf(WM_DESTROY).size(), 1u);
    RECT rect;
    EXPECT_FALSE(GetClientRect(hWnd, &rect));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_WINDOW_HANDLE);
    EXPECT_EQ(GetForegroundWindow(), nullptr);
}

TEST_F(Windows, WaitingEndsWithTheTimeOrAtOnceWhenAMessageIsThere)
{
    drain();
    EXPECT_EQ(MsgWaitForMultipleObjects(0, nullptr, FALSE, 1, QS_ALLINPUT), WAIT_TIMEOUT);
    PostMessageA(hWnd, WM_USER, 0, 0);
    constexpr DWORD longerThanAnyTest = 1000000000;
    EXPECT_EQ(MsgWaitForMultipleObjects(0, nullptr, FALSE, longerThanAnyTest, QS_ALLINPUT), WAIT_OBJECT_0);
    const HANDLE none = nullptr;
    EXPECT_EQ(MsgWaitForMultipleObjects(1, &none, FALSE, 1, QS_ALLINPUT), WAIT_FAILED);
}

TEST_F(Windows, UsersInterruptClosesEveryWindow)
{
    SDL_Event interrupt{};
    interrupt.type = SDL_QUIT;
    push(interrupt);

    EXPECT_TRUE(drain());
    EXPECT_EQ(heardOf(WM_CLOSE).size(), 1u);
}

TEST_F(Windows, QuitMessageComesAfterThosePostedLater)
{
    PostQuitMessage(3);
    PostMessageA(hWnd, WM_USER, 1, 2);

    const std::optional<MSG> quit = drain();

    ASSERT_TRUE(quit);
    EXPECT_EQ(quit->wParam, 3u);
    EXPECT_EQ(heardOf(WM_USER).size(), 1u);
    EXPECT_FALSE(drain()) << "a quit message is there once";
}

TEST_F(Windows, FilteredPeekLeavesTheOthersInOrder)
{
    for (UINT i = 0; i < 3; ++i)
        PostMessageA(hWnd, WM_USER + i, 0, 0);

    std::vector<MSG> taken;
    MSG msg;
    ASSERT_TRUE(PeekMessageA(&msg, hWnd, WM_USER + 1, WM_USER + 1, PM_REMOVE));
    taken.push_back(msg);
    ASSERT_TRUE(PeekMessageA(&msg, nullptr, WM_USER, WM_USER + 2, PM_NOREMOVE));
    while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE))
        taken.push_back(msg);

    EXPECT_EQ(kinds(taken), (std::vector<UINT>{WM_USER + 1, WM_USER, WM_USER + 2}));
}

TEST_F(Windows, PaintingIsDueUntilTheWindowIsValid)
{
    pushWindowEvent(SDL_WINDOWEVENT_EXPOSED);
    MSG msg;
    ASSERT_TRUE(PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE));
    EXPECT_EQ(msg.message, WM_PAINT);
    ASSERT_TRUE(PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) << "nobody has painted yet";

    DispatchMessageA(&msg);

    EXPECT_EQ(heardOf(WM_ERASEBKGND).size(), 1u);
    EXPECT_FALSE(PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE));
}

TEST_F(Windows, ShownWindowHasTheKeyboardOffscreenAndHidingTakesItAway)
{
    EXPECT_TRUE(port::isOffscreen());
    EXPECT_EQ(GetForegroundWindow(), hWnd);

    EXPECT_TRUE(ShowWindow(hWnd, SW_HIDE));

    EXPECT_EQ(GetForegroundWindow(), nullptr);
    ASSERT_EQ(heardOf(WM_ACTIVATEAPP).size(), 1u);
    EXPECT_EQ(heardOf(WM_ACTIVATEAPP)[0].wParam, 0u);
    EXPECT_EQ(heardOf(WM_ACTIVATE)[0].wParam, 0u);
    EXPECT_FALSE(ShowWindow(hWnd, SW_SHOW)) << "it was hidden before";
}

TEST_F(Windows, SizeAndStyleFollowAtOnce)
{
    const LONG bare = static_cast<LONG>(WS_POPUP | WS_VISIBLE);
    EXPECT_EQ(SetWindowLongA(hWnd, GWL_STYLE, bare), LONG(WS_CAPTION | WS_VISIBLE));
    EXPECT_EQ(GetWindowLongA(hWnd, GWL_STYLE), bare);

    ASSERT_TRUE(SetWindowPos(hWnd, nullptr, 10, 20, 1280, 720, SWP_NOZORDER));

    RECT client;
    ASSERT_TRUE(GetClientRect(hWnd, &client));
    EXPECT_EQ(client.right, 1280);
    EXPECT_EQ(client.bottom, 720);
    EXPECT_FALSE(SetWindowPos(hWnd, nullptr, 0, 0, 0, -5, 0));
    EXPECT_EQ(SetWindowLongA(hWnd, 77, 1), 0);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_INDEX);
}

TEST_F(Windows, ClientAndScreenPointsTurnIntoEachOther)
{
    POINT point{5, 6};
    ASSERT_TRUE(ClientToScreen(hWnd, &point));
    EXPECT_EQ(point.x, 105);
    EXPECT_EQ(point.y, 56);
    ASSERT_TRUE(ScreenToClient(hWnd, &point));
    EXPECT_EQ(point.x, 5);
    EXPECT_EQ(point.y, 6);
}

TEST_F(Windows, CursorIsWhereItWasPutWithoutADisplay)
{
    ASSERT_TRUE(SetCursorPos(321, 123));
    POINT place;
    ASSERT_TRUE(GetCursorPos(&place));
    EXPECT_EQ(place.x, 321);
    EXPECT_EQ(place.y, 123);
    EXPECT_EQ(ShowCursor(FALSE), -1);
    EXPECT_TRUE(SetCursorPos(321, 123)) << "holding the cursor is not possible here, and no failure";
    EXPECT_EQ(ShowCursor(TRUE), 0);
}

TEST_F(Windows, ClassesAreKnownByNameAndOnce)
{
    WNDCLASSEXA again;
    again.lpszClassName = "OffscreenWindow";
    again.lpfnWndProc = DefWindowProcA;
    EXPECT_EQ(RegisterClassExA(&again), 0);
    EXPECT_EQ(GetLastError(), ERROR_CLASS_ALREADY_EXISTS);

    again.lpfnWndProc = nullptr;
    EXPECT_EQ(RegisterClassExA(&again), 0);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);

    EXPECT_EQ(CreateWindowExA(0, "NoSuchClass", "", 0, 0, 0, 8, 8, nullptr, nullptr, nullptr, nullptr), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_CANNOT_FIND_WND_CLASS);
}

TEST_F(Windows, AnotherPlatformStandsInForTheHosts)
{
    NoWindows failing;
    {
        const port::ScopedWin32Platform scope(failing);
        EXPECT_EQ(CreateWindowExA(0, "OffscreenWindow", "", 0, 0, 0, 8, 8, nullptr, nullptr, nullptr, nullptr),
                  nullptr);
        EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
    }
    EXPECT_EQ(GetForegroundWindow(), hWnd);
}

TEST_F(Windows, OffscreenModesHoldTheDesktopAndLargerOnes)
{
    DEVMODEA desktop;
    ASSERT_TRUE(EnumDisplaySettingsA(nullptr, ENUM_REGISTRY_SETTINGS, &desktop));
    EXPECT_EQ(int(desktop.dmPelsWidth), GetSystemMetrics(SM_CXSCREEN));
    EXPECT_EQ(int(desktop.dmPelsHeight), GetSystemMetrics(SM_CYSCREEN));

    const auto count = static_cast<DWORD>(port::displayModes().size());
    bool holdsDesktop = false;
    bool holdsLarger = false;
    DEVMODEA mode;
    for (DWORD i = 0; i < count; ++i)
    {
        ASSERT_TRUE(EnumDisplaySettingsA(nullptr, i, &mode));
        holdsDesktop |= mode.dmPelsWidth == desktop.dmPelsWidth && mode.dmPelsHeight == desktop.dmPelsHeight;
        holdsLarger |= mode.dmPelsWidth > desktop.dmPelsWidth;
    }
    EXPECT_TRUE(holdsDesktop);
    EXPECT_TRUE(holdsLarger);
    EXPECT_FALSE(EnumDisplaySettingsA(nullptr, count, &mode));
}

TEST_F(Windows, MissingIconSaysWhatIsMissing)
{
    EXPECT_EQ(LoadImageA(nullptr, MAKEINTRESOURCEA(9999), IMAGE_ICON, 0, 0, LR_DEFAULTSIZE), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_RESOURCE_NAME_NOT_FOUND);
}

TEST_F(Windows, EmptyQueueWritesTheDebugOutputSoFar)
{
    port::flushDebugOutput();
    testing::internal::CaptureStderr();
    OutputDebugStringA("first line\n");
    OutputDebugStringA("second line\n");
    drain();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "first line\nsecond line\n");
}
