// Window classes and windows on SDL.
#include "port/win32/SdlPlatform.h"

#include "port/win32/Diagnostics.h"
#include "port/win32/HostPath.h"
#include "port/win32/SdlVideo.h"

#include <SDL.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace port
{

namespace
{
constexpr std::uintptr_t FIRST_WINDOW_NUMBER = 0x10000; ///< above every number that could be a resource

int sdlCoordinate(int coordinate)
{
    return coordinate == CW_USEDEFAULT ? static_cast<int>(SDL_WINDOWPOS_CENTERED) : coordinate;
}

bool isNumber(LPCSTR nameOrNumber)
{
    return reinterpret_cast<std::uintptr_t>(nameOrNumber) <= 0xFFFF;
}

void requestContextOfDevice()
{
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MAJOR_VERSION, 4);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MINOR_VERSION, 5);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_PROFILE_MASK, SDL_GL_CONTEXT_PROFILE_CORE);
    SDL_GL_SetAttribute(SDL_GL_RED_SIZE, 8);
    SDL_GL_SetAttribute(SDL_GL_GREEN_SIZE, 8);
    SDL_GL_SetAttribute(SDL_GL_BLUE_SIZE, 8);
    // Depth and stencil belong to the device's own surfaces.
    SDL_GL_SetAttribute(SDL_GL_DEPTH_SIZE, 0);
    SDL_GL_SetAttribute(SDL_GL_STENCIL_SIZE, 0);
    SDL_GL_SetAttribute(SDL_GL_DOUBLEBUFFER, 1);
}
} // namespace

SdlPlatform::SdlPlatform() : lastWindowNumber(FIRST_WINDOW_NUMBER) {}

SdlPlatform::~SdlPlatform()
{
    for (SDL_Surface *icon : icons)
        SDL_FreeSurface(icon);
    if (!SdlVideo::started())
        return;
    for (const Window &window : windows)
        SDL_DestroyWindow(window.native);
    for (SDL_Window *window : retired)
        SDL_DestroyWindow(window);
}

SdlPlatform::WindowClass *SdlPlatform::findClass(LPCSTR nameOrAtom)
{
    const auto matches = [nameOrAtom](const WindowClass &known)
    {
        if (isNumber(nameOrAtom))
            return known.atom == reinterpret_cast<std::uintptr_t>(nameOrAtom);
        return known.name == nameOrAtom;
    };
    const auto found = std::find_if(classes.begin(), classes.end(), matches);
    return found != classes.end() ? &*found : nullptr;
}

SdlPlatform::Window *SdlPlatform::find(HWND hWnd)
{
    for (Window &window : windows)
        if (window.handle == hWnd)
            return &window;
    SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return nullptr;
}

SdlPlatform::Window *SdlPlatform::findNative(unsigned sdlWindowId)
{
    for (Window &window : windows)
        if (SDL_GetWindowID(window.native) == sdlWindowId)
            return &window;
    return nullptr;
}

ATOM SdlPlatform::RegisterClassExA(const WNDCLASSEXA *windowClass)
{
    if (!windowClass || windowClass->cbSize != sizeof(WNDCLASSEXA) || !windowClass->lpfnWndProc ||
        isNumber(windowClass->lpszClassName))
    {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    if (findClass(windowClass->lpszClassName))
    {
        SetLastError(ERROR_CLASS_ALREADY_EXISTS);
        return 0;
    }
    classes.push_back({windowClass->lpszClassName, ++lastAtom, windowClass->lpfnWndProc, windowClass->hIcon});
    return lastAtom;
}

BOOL SdlPlatform::UnregisterClassA(LPCSTR className, HINSTANCE)
{
    const WindowClass *known = findClass(className);
    if (!known)
    {
        SetLastError(ERROR_CLASS_DOES_NOT_EXIST);
        return FALSE;
    }
    classes.erase(classes.begin() + (known - classes.data()));
    return TRUE;
}

SDL_Window *SdlPlatform::createNative(const char *title, DWORD style, int x, int y, int width, int height)
{
    requestContextOfDevice();
    Uint32 flags = SDL_WINDOW_OPENGL | SDL_WINDOW_HIDDEN;
    if ((style & WS_CAPTION) != WS_CAPTION)
        flags |= SDL_WINDOW_BORDERLESS;
    SDL_Window *native = SDL_CreateWindow(title ? title : "", sdlCoordinate(x), sdlCoordinate(y), width, height, flags);
    if (!native)
        OutputDebugStringA((std::string("Error: No window: ") + SDL_GetError() + "\n").c_str());
    return native;
}

HWND SdlPlatform::CreateWindowExA(DWORD exStyle, LPCSTR className, LPCSTR windowName, DWORD style, int x, int y,
                                  int width, int height, HWND, HMENU, HINSTANCE, LPVOID)
{
    const WindowClass *known = findClass(className);
    if (!known)
    {
        SetLastError(ERROR_CANNOT_FIND_WND_CLASS);
        return nullptr;
    }
    SDL_Window *native = nullptr;
    if (SdlVideo::get().works())
        native = createNative(windowName, style, x, y, width, height);
    if (!native)
    {
        SetLastError(ERROR_GEN_FAILURE);
        return nullptr;
    }
    if (known->icon)
        SDL_SetWindowIcon(native, reinterpret_cast<SDL_Surface *>(known->icon));

    const HWND handle = reinterpret_cast<HWND>(++lastWindowNumber);
    const DWORD hiddenStyle = style & ~WS_VISIBLE;
    windows.push_back(
        {handle, known->procedure, native, static_cast<LONG>(hiddenStyle), static_cast<LONG>(exStyle), false, false});
    fitFrameToStyle(windows.back());
    if (style & WS_VISIBLE)
        ShowWindow(handle, SW_SHOW);
    return handle;
}

BOOL SdlPlatform::DestroyWindow(HWND hWnd)
{
    Window *window = find(hWnd);
    if (!window)
        return FALSE;

    if (activeWindow == hWnd)
        activate(hWnd, false);
    SendMessageA(hWnd, WM_DESTROY, 0, 0);

    window = find(hWnd);
    if (!window)
        return TRUE;
    leaveFullScreen(hWnd);
    SDL_HideWindow(window->native);
    retired.push_back(window->native);
    windows.erase(windows.begin() + (window - windows.data()));
    queue.forget(hWnd);
    return TRUE;
}

BOOL SdlPlatform::AdjustWindowRect(LPRECT rect, DWORD, BOOL)
{
    if (rect)
        return TRUE;
    SetLastError(ERROR_INVALID_PARAMETER);
    return FALSE;
}

BOOL SdlPlatform::GetClientRect(HWND hWnd, LPRECT rect)
{
    const Window *window = find(hWnd);
    if (!window)
        return FALSE;
    if (!rect)
    {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    int width = 0;
    int height = 0;
    SDL_GetWindowSize(window->native, &width, &height);
    *rect = {0, 0, width, height};
    return TRUE;
}

BOOL SdlPlatform::ShowWindow(HWND hWnd, int showCommand)
{
    Window *window = find(hWnd);
    if (!window)
        return FALSE;

    const DWORD style = static_cast<DWORD>(window->style);
    const BOOL wasVisible = (style & WS_VISIBLE) != 0;
    if (showCommand == SW_HIDE)
    {
        window->style = static_cast<LONG>(style & ~WS_VISIBLE);
        SDL_HideWindow(window->native);
        if (isOffscreen())
            activate(hWnd, false);
        return wasVisible;
    }
    window->style = static_cast<LONG>(style | WS_VISIBLE);
    window->needsPaint = window->needsPaint || !wasVisible;
    SDL_ShowWindow(window->native);
    // Nobody can take the keyboard from a window that no display shows.
    if (isOffscreen())
        activate(hWnd, true);
    else
        SDL_RaiseWindow(window->native);
    return wasVisible;
}

BOOL SdlPlatform::UpdateWindow(HWND hWnd)
{
    const Window *window = find(hWnd);
    if (!window)
        return FALSE;
    if (window->needsPaint)
        SendMessageA(hWnd, WM_PAINT, 0, 0);
    return TRUE;
}

BOOL SdlPlatform::ValidateRect(HWND hWnd, LPCRECT)
{
    Window *window = find(hWnd);
    if (!window)
        return FALSE;
    window->needsPaint = false;
    return TRUE;
}

LONG SdlPlatform::SetWindowLongA(HWND hWnd, int index, LONG value)
{
    Window *window = find(hWnd);
    if (!window)
        return 0;
    if (index != GWL_STYLE && index != GWL_EXSTYLE)
    {
        SetLastError(ERROR_INVALID_INDEX);
        return 0;
    }
    if (index == GWL_EXSTYLE)
        return std::exchange(window->exStyle, value);
    const LONG former = std::exchange(window->style, value);
    fitFrameToStyle(*window);
    return former;
}

LONG SdlPlatform::GetWindowLongA(HWND hWnd, int index)
{
    const Window *window = find(hWnd);
    if (!window)
        return 0;
    if (index == GWL_STYLE)
        return window->style;
    if (index == GWL_EXSTYLE)
        return window->exStyle;
    SetLastError(ERROR_INVALID_INDEX);
    return 0;
}

BOOL SdlPlatform::SetWindowPos(HWND hWnd, HWND, int x, int y, int cx, int cy, UINT flags)
{
    Window *window = find(hWnd);
    if (!window)
        return FALSE;
    if (!(flags & SWP_NOSIZE) && (cx <= 0 || cy <= 0))
    {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }

    // A window that covers the display keeps the display's size until it gives the display back.
    SDL_SetWindowFullscreen(window->native, 0);
    window->ownsDisplay = false;
    if (!(flags & SWP_NOSIZE))
        SDL_SetWindowSize(window->native, cx, cy);
    if (!(flags & SWP_NOMOVE))
        SDL_SetWindowPosition(window->native, x, y);
    fitFrameToStyle(*window);
    if (flags & SWP_SHOWWINDOW)
        ShowWindow(hWnd, SW_SHOW);
    return TRUE;
}

void SdlPlatform::fitFrameToStyle(Window &window)
{
    const auto style = static_cast<DWORD>(window.style);
    const bool framed = (style & WS_CAPTION) == WS_CAPTION;
    SDL_SetWindowBordered(window.native, framed ? SDL_TRUE : SDL_FALSE);
    SDL_SetWindowResizable(window.native, framed && (style & WS_THICKFRAME) ? SDL_TRUE : SDL_FALSE);
    if (isOffscreen() || window.ownsDisplay)
        return;

    int width = 0;
    int height = 0;
    SDL_GetWindowSize(window.native, &width, &height);
    SDL_Rect desktop{};
    const bool covers =
        !framed && SDL_GetDisplayBounds(displayOf(window), &desktop) == 0 && width == desktop.w && height == desktop.h;
    SDL_SetWindowFullscreen(window.native, covers ? SDL_WINDOW_FULLSCREEN_DESKTOP : 0);
}

/// The display that a window stands on; the first one where the host does not know.
int SdlPlatform::displayOf(const Window &window)
{
    return std::max(SDL_GetWindowDisplayIndex(window.native), 0);
}

HWND SdlPlatform::GetForegroundWindow()
{
    return activeWindow;
}

LRESULT SdlPlatform::DefWindowProcA(HWND hWnd, UINT message, WPARAM, LPARAM)
{
    switch (message)
    {
    case WM_CLOSE:
        DestroyWindow(hWnd);
        return 0;
    case WM_PAINT:
        SendMessageA(hWnd, WM_ERASEBKGND, 0, 0);
        ValidateRect(hWnd, nullptr);
        return 0;
    case WM_NCACTIVATE:
    case WM_ERASEBKGND:
        return TRUE;
    default:
        return 0;
    }
}

BOOL SdlPlatform::ClientToScreen(HWND hWnd, LPPOINT point)
{
    const Window *window = find(hWnd);
    if (!window)
        return FALSE;
    int x = 0;
    int y = 0;
    SDL_GetWindowPosition(window->native, &x, &y);
    point->x += x;
    point->y += y;
    return TRUE;
}

BOOL SdlPlatform::ScreenToClient(HWND hWnd, LPPOINT point)
{
    POINT origin{0, 0};
    if (!ClientToScreen(hWnd, &origin))
        return FALSE;
    point->x -= origin.x;
    point->y -= origin.y;
    return TRUE;
}

HANDLE SdlPlatform::LoadImageA(HINSTANCE, LPCSTR name, UINT type, int, int, UINT)
{
    if (type != IMAGE_ICON || !isNumber(name))
    {
        SetLastError(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    const std::string number = std::to_string(reinterpret_cast<std::uintptr_t>(name));
    const std::string path = hostPath("..\\assets\\icons\\") + number + ".bmp";
    SDL_Surface *picture = SDL_LoadBMP(path.c_str());
    if (picture)
        icons.push_back(picture);
    else
        SetLastError(ERROR_RESOURCE_NAME_NOT_FOUND);
    return picture;
}

HANDLE SdlPlatform::GetStockObject(int index)
{
    // Windows here have no surface of their own to fill, so a brush is no more than its number.
    return index == BLACK_BRUSH ? reinterpret_cast<HANDLE>(static_cast<std::uintptr_t>(index)) : nullptr;
}

SDL_Window *SdlPlatform::sdlWindow(HWND hWnd)
{
    const Window *window = find(hWnd);
    return window ? window->native : nullptr;
}

bool SdlPlatform::enterFullScreen(HWND hWnd, int width, int height, int refreshRate)
{
    Window *window = find(hWnd);
    if (!window)
        return false;
    if (isOffscreen())
        return true;

    SDL_DisplayMode wanted{SDL_PIXELFORMAT_UNKNOWN, width, height, refreshRate, nullptr};
    SDL_DisplayMode nearest;
    const int display = displayOf(*window);
    if (!SDL_GetClosestDisplayMode(display, &wanted, &nearest) || nearest.w != width || nearest.h != height)
        return false;
    // The desktop's own mode needs no switch, and other programs come to the front sooner without one.
    SDL_Rect desktop{};
    const bool isDesktop = SDL_GetDisplayBounds(display, &desktop) == 0 && width == desktop.w && height == desktop.h;
    SDL_SetWindowDisplayMode(window->native, &nearest);
    const Uint32 kind = isDesktop ? SDL_WINDOW_FULLSCREEN_DESKTOP : SDL_WINDOW_FULLSCREEN;
    window->ownsDisplay = SDL_SetWindowFullscreen(window->native, kind) == 0;
    return window->ownsDisplay;
}

void SdlPlatform::leaveFullScreen(HWND hWnd)
{
    Window *window = find(hWnd);
    if (!window || !window->ownsDisplay)
        return;
    SDL_SetWindowFullscreen(window->native, 0);
    window->ownsDisplay = false;
}

bool SdlPlatform::isOffscreen()
{
    return SdlVideo::get().isOffscreen();
}

BOOL SdlPlatform::EnumDisplaySettingsA(LPCSTR deviceName, DWORD modeNum, DEVMODEA *mode)
{
    const std::vector<DisplayMode> &modes = displayModes();
    const bool present = modeNum == ENUM_CURRENT_SETTINGS || modeNum == ENUM_REGISTRY_SETTINGS;
    if (deviceName || !mode || (!present && modeNum >= modes.size()))
        return FALSE;

    const DisplayMode &found = present ? SdlVideo::get().desktop() : modes[modeNum];
    *mode = DEVMODEA();
    mode->dmBitsPerPel = 32;
    mode->dmPelsWidth = static_cast<DWORD>(found.width);
    mode->dmPelsHeight = static_cast<DWORD>(found.height);
    mode->dmDisplayFrequency = static_cast<DWORD>(found.refreshRate);
    return TRUE;
}

int SdlPlatform::GetSystemMetrics(int index)
{
    const DisplayMode &desktop = SdlVideo::get().desktop();
    measureFrame();
    switch (index)
    {
    case SM_CXSCREEN:
        return desktop.width;
    case SM_CYSCREEN:
        return desktop.height;
    case SM_CMONITORS:
        return isOffscreen() ? 1 : std::max(SDL_GetNumVideoDisplays(), 1);
    case SM_CYCAPTION:
        return isOffscreen() ? 0 : captionHeight;
    case SM_CXSIZEFRAME:
    case SM_CYSIZEFRAME:
        return isOffscreen() ? 0 : frameWidth;
    default:
        return 0;
    }
}

void SdlPlatform::measureFrame()
{
    int top = 0, left = 0, bottom = 0, right = 0;
    for (const Window &window : windows)
    {
        const Uint32 flags = SDL_GetWindowFlags(window.native);
        const bool framed = !(flags & (SDL_WINDOW_BORDERLESS | SDL_WINDOW_FULLSCREEN | SDL_WINDOW_HIDDEN));
        if (!framed || SDL_GetWindowBordersSize(window.native, &top, &left, &bottom, &right) != 0 || top <= 0)
            continue;
        frameWidth = std::max({left, right, bottom});
        captionHeight = std::max(top - frameWidth, 0);
    }
}

BOOL SdlPlatform::SystemParametersInfoA(UINT action, UINT, PVOID data, UINT)
{
    SDL_Rect area;
    if (action != SPI_GETWORKAREA || !data || isOffscreen() || SDL_GetDisplayUsableBounds(0, &area) != 0)
    {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    *static_cast<RECT *>(data) = {area.x, area.y, area.x + area.w, area.y + area.h};
    return TRUE;
}

BOOL SdlPlatform::EnumDisplayMonitors(HDC, LPCRECT, MONITORENUMPROC told, LPARAM data)
{
    const int count = isOffscreen() ? 0 : SDL_GetNumVideoDisplays();
    for (std::uintptr_t number = 1; told && number <= static_cast<std::uintptr_t>(std::max(count, 0)); ++number)
    {
        MONITORINFO info;
        const auto monitor = reinterpret_cast<HMONITOR>(number);
        if (GetMonitorInfoA(monitor, &info) && !told(monitor, nullptr, &info.rcMonitor, data))
            return TRUE;
    }
    return TRUE;
}

/// A monitor's handle is the number of its display, from 1.
BOOL SdlPlatform::GetMonitorInfoA(HMONITOR monitor, MONITORINFO *info)
{
    const int display = static_cast<int>(reinterpret_cast<std::uintptr_t>(monitor)) - 1;
    SDL_Rect all, work;
    if (!info || isOffscreen() || display < 0 || display >= SDL_GetNumVideoDisplays() ||
        SDL_GetDisplayBounds(display, &all) != 0 || SDL_GetDisplayUsableBounds(display, &work) != 0)
    {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    *info = MONITORINFO();
    info->rcMonitor = {all.x, all.y, all.x + all.w, all.y + all.h};
    info->rcWork = {work.x, work.y, work.x + work.w, work.y + work.h};
    info->dwFlags = display == 0 ? MONITORINFOF_PRIMARY : 0;
    return TRUE;
}

const std::vector<DisplayMode> &SdlPlatform::displayModes()
{
    return SdlVideo::get().modes();
}

} // namespace port
