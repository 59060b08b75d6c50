#include "platform/window/WindowSystem2.h"

#include "platform/window/GraphicsAdapterSystem.h"

#include "engine/screen/ScreenMetrics.h"
#include "engine/time/TimeSystem.h"
#include "platform/input/EngineMessage.h"
#include "platform/input/InputSystem.h"
#include "platform/window/WindowMessages.h"

#include "foundation/Assertions.h"
#include "port/tweakbar/TweakBar.h"
#include "port/win32/Diagnostics.h"
#include "port/win32/Display.h"
#include "port/win32/Window.h"

#include <algorithm>
#include <utility>

namespace
{
constexpr const char *CLASS_NAME = "kvWindowClass";
constexpr const char *TITLE = "Mornal";
constexpr WORD ICON_RESOURCE = 102;

constexpr DWORD WINDOWED_STYLE = WS_VISIBLE | WS_CAPTION;
/// What a change of mode gives to a framed window and takes from a bare one.
constexpr DWORD FRAME_STYLE = WS_VISIBLE | WS_CAPTION | WS_SYSMENU;
/// What lets the user resize, minimise and maximise.
constexpr DWORD RESIZE_STYLE = WS_THICKFRAME | WS_MINIMIZEBOX | WS_MAXIMIZEBOX;
/// What a change of mode keeps of the style: everything that is neither frame nor visibility.
constexpr DWORD KEPT_STYLE = 0x6F380000;

/// Raises the text with the system's reason as a critical assertion.
ErrorCode failWindow(const char *text)
{
    const ErrorCode reason = winError();
    KV_FATAL("%s\n\n%s", text, reason.toString().toCString());
    return ErrorCode(ErrorCode::WIN32_ERROR, reason.getHRESULT());
}

/// Reports the text with the system's reason in the log.
void warnOfWindow(const char *text)
{
    KV_WARN("%s\n\n%s", text, winError().toString().toCString());
}

/// Largest window, pixels: that of the largest screens, since the render targets of a larger one fill the memory.
constexpr int LARGEST_WIDTH = 7680;
constexpr int LARGEST_HEIGHT = 4320;

/// The usual window on a desktop that has room for more, pixels.
constexpr int USUAL_WIDTH = 1280;
constexpr int USUAL_HEIGHT = 720;

/// How long a size has to stay the same before the user is taken to be done, seconds.
constexpr Seconds REST = 0.5;

/// The monitors as they are told one by one.
struct MonitorSearch
{
    int wanted;
    int seen = 0;
    MONITORINFO found{};
    bool isFound = false;
};

BOOL CALLBACK lookAtMonitor(HMONITOR handle, HDC, LPRECT, LPARAM data)
{
    MonitorSearch &search = *reinterpret_cast<MonitorSearch *>(data);
    if (search.seen++ != search.wanted)
        return TRUE;
    search.isFound = GetMonitorInfoA(handle, &search.found);
    return FALSE;
}

/// The whole of a monitor; the first screen where there is none of the number.
RECT boundsOfMonitor(int number)
{
    MonitorSearch search{number};
    EnumDisplayMonitors(nullptr, nullptr, lookAtMonitor, reinterpret_cast<LPARAM>(&search));
    return search.isFound ? search.found.rcMonitor
                          : RECT{0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
}

/// What the panels of a monitor leave.
/// @return false where there is no desktop
bool workAreaOf(int number, RECT &room)
{
    MonitorSearch search{number};
    if (number > 0)
        EnumDisplayMonitors(nullptr, nullptr, lookAtMonitor, reinterpret_cast<LPARAM>(&search));
    room = search.found.rcWork;
    return search.isFound || SystemParametersInfoA(SPI_GETWORKAREA, 0, &room, 0);
}

/// What the desktop leaves for a window inside its frame; the screen where there is no desktop.
RECT roomOnDesktop(int monitor)
{
    RECT room;
    if (!workAreaOf(monitor, room))
        return {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    const int side = GetSystemMetrics(SM_CXSIZEFRAME);
    const int edge = GetSystemMetrics(SM_CYSIZEFRAME);
    return {room.left + side, room.top + edge + GetSystemMetrics(SM_CYCAPTION), room.right - side, room.bottom - edge};
}

/// The size as far as the desktop has room for it; off-screen nothing is too large.
SIZE fitted(int width, int height, int monitor)
{
    RECT room;
    if (!workAreaOf(monitor, room))
        return {width, height};
    room = roomOnDesktop(monitor);
    return {std::clamp(width, 1, std::max(room.right - room.left, 1)),
            std::clamp(height, 1, std::max(room.bottom - room.top, 1))};
}

/// Where a window of this size stands in the middle of the desktop.
POINT centred(const RECT &rect, int monitor)
{
    const RECT room = roomOnDesktop(monitor);
    return {(room.left + room.right - (rect.right - rect.left)) / 2,
            (room.top + room.bottom - (rect.bottom - rect.top)) / 2};
}
} // namespace

Handle<WindowSystem2> WindowSystem2::instance;

void WindowSystem2::systemStartup()
{
    instance = ::getHandle(this);
    startWithUsualSize();
    setDisplayMode(displayMode);
    KV_CRITICAL_ASSERT(createWindow().succeeded(), "Unable to create the game window.");
    hArrowCursor = LoadCursorA(nullptr, IDC_ARROW);
    setCursorMode(CURSOR_RELATIVE);
}

void WindowSystem2::systemShutdown()
{
    setCursorMode(CURSOR_ABSOLUTE);
    if (sizeIsUntold)
        tellSizeAtRest();
    instance = Handle<WindowSystem2>();
    if (hWnd)
        DestroyWindow(hWnd);
    hWnd = nullptr;
    UnregisterClassA(CLASS_NAME, nullptr);
    windowClass = 0;
}

System::DependencyList WindowSystem2::systemDependencies()
{
    return {GraphicsAdapterSystem::staticType};
}

UpdaterList WindowSystem2::getUpdaters()
{
    constexpr int beforeAllManagers = 50;
    return {Updater(SCS("WindowSystem2::constrainCursorIfNeeded"), bind(SCS("constrainCursorIfNeeded")),
                    beforeAllManagers, true),
            Updater(SCS("WindowSystem2::followSize"), bind(SCS("followSize")), beforeAllManagers, true)};
}

ErrorCode WindowSystem2::registerWindowClass()
{
    WNDCLASSEXA description;
    description.lpfnWndProc = forwardingWndProc;
    description.hIcon = static_cast<HICON>(
        LoadImageA(nullptr, MAKEINTRESOURCEA(ICON_RESOURCE), IMAGE_ICON, 0, 0, LR_DEFAULTSIZE | LR_SHARED));
    description.hbrBackground = static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH));
    description.lpszClassName = CLASS_NAME;
    windowClass = RegisterClassExA(&description);
    return windowClass ? ErrorCode() : failWindow("Could not create the window class");
}

ErrorCode WindowSystem2::createWindow()
{
    const ErrorCode registered = registerWindowClass();
    if (!registered.succeeded())
        return registered;

    const DWORD style = isBare() ? WS_POPUP : windowedStyle();
    RECT rect{0, 0, curWidth, curHeight};
    if (!AdjustWindowRect(&rect, style, FALSE))
        return failWindow("Could not calculate the required window size");
    const POINT place = placeOf(rect);
    hWnd = CreateWindowExA(0, CLASS_NAME, TITLE, style, place.x, place.y, rect.right - rect.left,
                           rect.bottom - rect.top, nullptr, nullptr, nullptr, nullptr);
    if (!hWnd)
        return failWindow("Could not create the window!");

    RECT client;
    if (GetClientRect(hWnd, &client))
        takeClientSize(client.right, client.bottom);
    ShowWindow(hWnd, SW_SHOW);
    UpdateWindow(hWnd);
    showCursor(false);
    return ErrorCode();
}

void WindowSystem2::setDisplayMode(int val)
{
    const GraphicsAdapterSystem &adapter = getSystemDeref<GraphicsAdapterSystem>();
    const bool known = val >= 0 && val < adapter.getNumDisplayModes();
    KV_VERIFY(known, "Invalid mode ID %i", val);
    if (!known)
        return;

    displayMode = val;
    refreshRate = adapter.getDisplayModeRefreshRate(val);
    const bool ownSize = !fullScreen && windowedWidth > 0;
    const int width = ownSize ? windowedWidth : adapter.getDisplayModeWidth(val);
    const int height = ownSize ? windowedHeight : adapter.getDisplayModeHeight(val);
    SIZE size = fullScreen ? SIZE{width, height} : fitted(width, height, monitor);
    if (borderless && !fullScreen)
    {
        const RECT whole = boundsOfMonitor(monitor);
        size = {whole.right - whole.left, whole.bottom - whole.top};
    }
    takeClientSize(size.cx, size.cy);
    if (hWnd)
        updateWindow(size.cx, size.cy);
}

/// A player's first window covers no desktop that is larger than what one usually plays in.
void WindowSystem2::startWithUsualSize()
{
    const bool largeDesktop =
        GetSystemMetrics(SM_CXSCREEN) > USUAL_WIDTH && GetSystemMetrics(SM_CYSCREEN) > USUAL_HEIGHT;
    if (windowedWidth > 0 || !largeDesktop)
        return;
    windowedWidth = USUAL_WIDTH;
    windowedHeight = USUAL_HEIGHT;
}

DWORD WindowSystem2::windowedStyle() const
{
    return resizable ? WINDOWED_STYLE | RESIZE_STYLE : WINDOWED_STYLE;
}

void WindowSystem2::setResizable(bool val)
{
    if (val == resizable)
        return;
    resizable = val;
    if (!hWnd || isBare())
        return;
    const DWORD style = static_cast<DWORD>(GetWindowLongA(hWnd, GWL_STYLE)) & ~RESIZE_STYLE;
    SetWindowLongA(hWnd, GWL_STYLE, static_cast<LONG>(resizable ? style | RESIZE_STYLE : style));
}

void WindowSystem2::updateWindow(int width, int height)
{
    const DWORD kept = static_cast<DWORD>(GetWindowLongA(hWnd, GWL_STYLE)) & KEPT_STYLE;
    const DWORD style = isBare() ? kept & ~FRAME_STYLE : kept | FRAME_STYLE | windowedStyle();
    SetLastError(ERROR_SUCCESS);
    if (!SetWindowLongA(hWnd, GWL_STYLE, static_cast<LONG>(style)) && GetLastError() != ERROR_SUCCESS)
        warnOfWindow("Could not update the window flags");

    RECT rect{0, 0, std::clamp(width, 1, LARGEST_WIDTH), std::clamp(height, 1, LARGEST_HEIGHT)};
    AdjustWindowRect(&rect, style, FALSE);
    const POINT place = placeOf(rect);
    if (!SetWindowPos(hWnd, nullptr, place.x, place.y, rect.right - rect.left, rect.bottom - rect.top,
                      SWP_NOZORDER | SWP_FRAMECHANGED | SWP_SHOWWINDOW))
        warnOfWindow("Could not set the new window size");

    RECT client;
    if (GetClientRect(hWnd, &client))
        takeClientSize(client.right, client.bottom);
    else
        warnOfWindow("Could not get the new window size");
    if (sizeListener)
        sizeListener();
}

void WindowSystem2::takeClientSize(int width, int height)
{
    if (!playedSizes)
    {
        putInForce(width, height);
        if (witness)
            witness->sizeTaken(width, height, false);
    }
    else if (!playedSizes->ofGame.empty())
    {
        const POINT size = playedSizes->ofGame.front();
        playedSizes->ofGame.pop_front();
        putInForce(size.x, size.y);
    }
}

void WindowSystem2::setPlayedSize(int width, int height)
{
    const bool valid = width > 0 && height > 0 && width <= LARGEST_WIDTH && height <= LARGEST_HEIGHT;
    RECT client;
    if (valid)
    {
        playedSizes.emplace();
        putInForce(width, height);
    }
    else
    {
        playedSizes.reset();
        if (hWnd && GetClientRect(hWnd, &client))
            putInForce(client.right, client.bottom);
    }
    if (hWnd && sizeListener)
        sizeListener();
}

void WindowSystem2::playSize(int width, int height, bool byUser)
{
    if (playedSizes)
        (byUser ? playedSizes->ofUser : playedSizes->ofGame).push_back({width, height});
}

void WindowSystem2::catchUpWithPlayedSize()
{
    if (!playedSizes || playedSizes->ofGame.empty())
        return;
    playedSizes->ofUser.push_back(playedSizes->ofGame.back());
    playedSizes->ofGame.clear();
}

void WindowSystem2::followPlayedSize()
{
    if (playedSizes->ofUser.empty())
        return;
    const POINT size = playedSizes->ofUser.back();
    playedSizes->ofUser.clear();
    putInForce(std::clamp<int>(size.x, 1, LARGEST_WIDTH), std::clamp<int>(size.y, 1, LARGEST_HEIGHT));
    if (sizeListener)
        sizeListener();
}

void WindowSystem2::putInForce(int width, int height)
{
    curWidth = width;
    curHeight = height;
    normalizationFactor = static_cast<float>(std::max({width, height, 1}));
    publishMetrics();
}

void WindowSystem2::publishMetrics() const
{
    setScreenMetrics({curWidth, curHeight, normalizationFactor});
}

void WindowSystem2::setFullScreen(bool val)
{
    fullScreen = val;
    setDisplayMode(displayMode);
}

void WindowSystem2::setBorderless(bool val)
{
    if (val == borderless)
        return;
    borderless = val;
    setDisplayMode(displayMode);
}

void WindowSystem2::setMonitor(int val)
{
    if (val == monitor || val < 0)
        return;
    monitor = val;
    setDisplayMode(displayMode);
}

int WindowSystem2::getNumMonitors() const
{
    return GetSystemMetrics(SM_CMONITORS);
}

/// Where a window of this size stands: a bare one in its monitor's corner, a framed one in the middle of the desktop.
POINT WindowSystem2::placeOf(const RECT &rect) const
{
    if (!isBare())
        return centred(rect, monitor);
    const RECT whole = boundsOfMonitor(monitor);
    return {whole.left, whole.top};
}

void WindowSystem2::setWindowedSize(int width, int height)
{
    const bool valid = (width > 0 && height > 0) || (width == 0 && height == 0);
    KV_VERIFY(valid, "Invalid window size %i x %i; both must be above 0, or both 0 for the mode's size", width, height);
    if (!valid)
        return;
    windowedWidth = width;
    windowedHeight = height;
    setDisplayMode(displayMode);
}

WindowCoordinate WindowSystem2::convertWindowCoordinate(const WindowCoordinate &in, WindowCoordinateSystem xTarget,
                                                        WindowCoordinateSystem yTarget) const
{
    return in.convert(xTarget, yTarget, curWidth, curHeight, normalizationFactor);
}

void WindowSystem2::setCursorMode(CursorMode val)
{
    if (val == currentCursorMode || (val != CURSOR_RELATIVE && val != CURSOR_ABSOLUTE))
        return;
    currentCursorMode = val;
    if (val == CURSOR_RELATIVE)
    {
        if (!GetCursorPos(&lastUnconstrainedCursorPos))
            warnOfWindow("Could not get mouse position");
        showCursor(false);
        constrainCursorIfNeeded();
        return;
    }
    if (!SetCursorPos(lastUnconstrainedCursorPos.x, lastUnconstrainedCursorPos.y))
        warnOfWindow("Could not reset mouse position");
    showCursor(true);
}

void WindowSystem2::setPointerShown(bool val)
{
    pointerShown = val;
    if (currentCursorMode == CURSOR_ABSOLUTE && hWnd)
        showCursor(val);
}

void WindowSystem2::showCursor(bool show)
{
    if (show == cursorShown)
        return;
    cursorShown = show;
    ShowCursor(show);
}

void WindowSystem2::constrainCursorIfNeeded()
{
    if (currentCursorMode != CURSOR_RELATIVE || !windowActive || !hWnd)
        return;
    POINT centre{curWidth / 2, curHeight / 2};
    const bool placed = ClientToScreen(hWnd, &centre);
    reportOnce(placeReported, placed, "Could not get screen-relative mouse coordinate");
    if (placed)
        reportOnce(centreReported, SetCursorPos(centre.x, centre.y), "Could not set mouse to center of screen");
}

void WindowSystem2::reportOnce(bool &reported, bool succeeded, const char *text)
{
    // A failure that lasts would otherwise fill the log, a line a frame.
    if (!succeeded && !reported)
        warnOfWindow(text);
    reported = !succeeded;
}

void WindowSystem2::noteSize(WPARAM kind)
{
    minimised = kind == SIZE_MINIMIZED;
    if (minimised)
        return;
    maximised = kind == SIZE_MAXIMIZED;
    sizeIsNews = true;
}

void WindowSystem2::followSize()
{
    if (playedSizes)
        return followPlayedSize();
    TimeSystem &time = getSystemDeref<TimeSystem>();
    if (sizeIsUntold && time.toSeconds(time.now() - lastSizeChange) >= REST)
        tellSizeAtRest();
    if (!std::exchange(sizeIsNews, false) || !hWnd)
        return;
    RECT client;
    if (!GetClientRect(hWnd, &client) || (client.right == curWidth && client.bottom == curHeight))
        return;
    putInForce(client.right, client.bottom);
    if (witness)
        witness->sizeTaken(curWidth, curHeight, true);
    if (!isBare() && !maximised)
    {
        windowedWidth = curWidth;
        windowedHeight = curHeight;
        sizeIsUntold = true;
        lastSizeChange = time.now();
    }
    if (sizeListener)
        sizeListener();
}

void WindowSystem2::tellSizeAtRest()
{
    sizeIsUntold = false;
    sendEngineMessage(WindowSizeMessage, windowedWidth, windowedHeight);
}

void WindowSystem2::setActive(bool active)
{
    if (active == windowActive)
        return;
    windowActive = active;
    if (!playedSizes)
        tellFocus(active);
}

void WindowSystem2::tellFocus(bool active)
{
    if (witness)
        witness->focusChanged(active);
    sendEngineMessage(WindowFocusMessage, active);
}

LRESULT CALLBACK WindowSystem2::forwardingWndProc(HWND window, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    const auto self = instance.lookup();
    if (!self)
        return DefWindowProcA(window, uMsg, wParam, lParam);
    // The first messages come while the window is being made.
    if (!self->hWnd)
        self->hWnd = window;
    return self->wndProc(uMsg, wParam, lParam);
}

LRESULT WindowSystem2::wndProc(UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    const HWND window = hWnd;
    const bool isPlayed = uMsg == WM_INPUT && getSystemDeref<InputSystem>().isPlayed(lParam);
    if (!isPlayed && TwEventWin(window, uMsg, wParam, lParam))
        return 0;
    switch (uMsg)
    {
    case WM_CLOSE:
        closeRefused = false;
        sendEngineMessage(WindowCloseMessage);
        return closeRefused ? 0 : DefWindowProcA(window, uMsg, wParam, lParam);
    case WM_DESTROY:
        PostQuitMessage(0);
        hWnd = nullptr;
        return 0;
    case WM_ACTIVATE:
    case WM_ACTIVATEAPP:
    case WM_NCACTIVATE:
        setActive(wParam != 0);
        return DefWindowProcA(window, uMsg, wParam, lParam);
    case WM_SIZE:
        noteSize(wParam);
        return 0;
    case WM_PAINT:
        ValidateRect(window, nullptr);
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_SETCURSOR:
        return 0;
    case WM_PLAYED_FOCUS:
        if (playedSizes)
            tellFocus(wParam != 0);
        return 0;
    case WM_CHAR:
        getSystemDeref<InputSystem>().processWM_CHAR(wParam);
        return 0;
    case WM_PLAYED_TEXT:
        getSystemDeref<InputSystem>().typePlayed(static_cast<unsigned>(wParam));
        return 0;
    case WM_INPUT:
        getSystemDeref<InputSystem>().processWM_INPUT(wParam, lParam);
        return 0;
    default:
        return DefWindowProcA(window, uMsg, wParam, lParam);
    }
}
