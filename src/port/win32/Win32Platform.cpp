// The published operations, each forwarded to the platform in place.
#include "port/win32/Win32Platform.h"

#include "port/win32/SdlPlatform.h"
#include "port/win32/SdlWindow.h"

namespace port
{

namespace
{
Win32Platform *installedPlatform = nullptr;

SdlPlatform &hostPlatform()
{
    static SdlPlatform platform;
    return platform;
}
} // namespace

Win32Platform &win32Platform()
{
    return installedPlatform ? *installedPlatform : hostPlatform();
}

Win32Platform *installWin32Platform(Win32Platform *platform)
{
    Win32Platform *former = installedPlatform;
    installedPlatform = platform;
    return former;
}

const std::vector<DisplayMode> &displayModes()
{
    return win32Platform().displayModes();
}

void forgetComposition()
{
    win32Platform().forgetComposition();
}

bool postRawInput(const RAWINPUT &input)
{
    return win32Platform().postRawInput(input);
}

SDL_Window *sdlWindow(HWND hWnd)
{
    return win32Platform().sdlWindow(hWnd);
}

bool enterFullScreen(HWND hWnd, int width, int height, int refreshRate)
{
    return win32Platform().enterFullScreen(hWnd, width, height, refreshRate);
}

void leaveFullScreen(HWND hWnd)
{
    win32Platform().leaveFullScreen(hWnd);
}

bool isOffscreen()
{
    return win32Platform().isOffscreen();
}

} // namespace port

ATOM RegisterClassExA(const WNDCLASSEXA *windowClass)
{
    return port::win32Platform().RegisterClassExA(windowClass);
}

BOOL UnregisterClassA(LPCSTR className, HINSTANCE instance)
{
    return port::win32Platform().UnregisterClassA(className, instance);
}

HWND CreateWindowExA(DWORD exStyle, LPCSTR className, LPCSTR windowName, DWORD style, int x, int y, int width,
                     int height, HWND parent, HMENU menu, HINSTANCE instance, LPVOID param)
{
    return port::win32Platform().CreateWindowExA(exStyle, className, windowName, style, x, y, width, height, parent,
                                                 menu, instance, param);
}

BOOL DestroyWindow(HWND hWnd)
{
    return port::win32Platform().DestroyWindow(hWnd);
}

BOOL AdjustWindowRect(LPRECT rect, DWORD style, BOOL menu)
{
    return port::win32Platform().AdjustWindowRect(rect, style, menu);
}

BOOL GetClientRect(HWND hWnd, LPRECT rect)
{
    return port::win32Platform().GetClientRect(hWnd, rect);
}

BOOL ShowWindow(HWND hWnd, int showCommand)
{
    return port::win32Platform().ShowWindow(hWnd, showCommand);
}

BOOL UpdateWindow(HWND hWnd)
{
    return port::win32Platform().UpdateWindow(hWnd);
}

BOOL ValidateRect(HWND hWnd, LPCRECT rect)
{
    return port::win32Platform().ValidateRect(hWnd, rect);
}

LONG SetWindowLongA(HWND hWnd, int index, LONG value)
{
    return port::win32Platform().SetWindowLongA(hWnd, index, value);
}

LONG GetWindowLongA(HWND hWnd, int index)
{
    return port::win32Platform().GetWindowLongA(hWnd, index);
}

BOOL SetWindowPos(HWND hWnd, HWND insertAfter, int x, int y, int cx, int cy, UINT flags)
{
    return port::win32Platform().SetWindowPos(hWnd, insertAfter, x, y, cx, cy, flags);
}

HWND GetForegroundWindow()
{
    return port::win32Platform().GetForegroundWindow();
}

LRESULT DefWindowProcA(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    return port::win32Platform().DefWindowProcA(hWnd, message, wParam, lParam);
}

BOOL ClientToScreen(HWND hWnd, LPPOINT point)
{
    return port::win32Platform().ClientToScreen(hWnd, point);
}

BOOL ScreenToClient(HWND hWnd, LPPOINT point)
{
    return port::win32Platform().ScreenToClient(hWnd, point);
}

HANDLE LoadImageA(HINSTANCE instance, LPCSTR name, UINT type, int width, int height, UINT flags)
{
    return port::win32Platform().LoadImageA(instance, name, type, width, height, flags);
}

HANDLE GetStockObject(int index)
{
    return port::win32Platform().GetStockObject(index);
}

BOOL PeekMessageA(LPMSG msg, HWND hWnd, UINT first, UINT last, UINT removeMsg)
{
    return port::win32Platform().PeekMessageA(msg, hWnd, first, last, removeMsg);
}

BOOL TranslateMessage(const MSG *msg)
{
    return port::win32Platform().TranslateMessage(msg);
}

LRESULT DispatchMessageA(const MSG *msg)
{
    return port::win32Platform().DispatchMessageA(msg);
}

BOOL PostMessageA(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    return port::win32Platform().PostMessageA(hWnd, message, wParam, lParam);
}

LRESULT SendMessageA(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    return port::win32Platform().SendMessageA(hWnd, message, wParam, lParam);
}

void PostQuitMessage(int exitCode)
{
    port::win32Platform().PostQuitMessage(exitCode);
}

void Sleep(DWORD milliseconds)
{
    port::win32Platform().Sleep(milliseconds);
}

DWORD MsgWaitForMultipleObjects(DWORD count, const HANDLE *handles, BOOL waitAll, DWORD milliseconds, DWORD wakeMask)
{
    return port::win32Platform().MsgWaitForMultipleObjects(count, handles, waitAll, milliseconds, wakeMask);
}

int ShowCursor(BOOL show)
{
    return port::win32Platform().ShowCursor(show);
}

BOOL SetCursorPos(int x, int y)
{
    return port::win32Platform().SetCursorPos(x, y);
}

BOOL GetCursorPos(LPPOINT point)
{
    return port::win32Platform().GetCursorPos(point);
}

HCURSOR LoadCursorA(HINSTANCE instance, LPCSTR name)
{
    return port::win32Platform().LoadCursorA(instance, name);
}

BOOL EnumDisplaySettingsA(LPCSTR deviceName, DWORD modeNum, DEVMODEA *mode)
{
    return port::win32Platform().EnumDisplaySettingsA(deviceName, modeNum, mode);
}

int GetSystemMetrics(int index)
{
    return port::win32Platform().GetSystemMetrics(index);
}

BOOL SystemParametersInfoA(UINT action, UINT parameter, PVOID data, UINT change)
{
    return port::win32Platform().SystemParametersInfoA(action, parameter, data, change);
}

BOOL EnumDisplayMonitors(HDC context, LPCRECT clip, MONITORENUMPROC told, LPARAM data)
{
    return port::win32Platform().EnumDisplayMonitors(context, clip, told, data);
}

BOOL GetMonitorInfoA(HMONITOR monitor, MONITORINFO *info)
{
    return port::win32Platform().GetMonitorInfoA(monitor, info);
}

BOOL RegisterRawInputDevices(const RAWINPUTDEVICE *devices, UINT count, UINT size)
{
    return port::win32Platform().RegisterRawInputDevices(devices, count, size);
}

UINT GetRawInputData(HRAWINPUT rawInput, UINT command, LPVOID data, PUINT size, UINT headerSize)
{
    return port::win32Platform().GetRawInputData(rawInput, command, data, size, headerSize);
}
