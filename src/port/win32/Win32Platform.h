// Win32Platform: the seam behind the platform operations, so that a test can stand another platform in their place.
#pragma once

#include "port/win32/Display.h"
#include "port/win32/RawInput.h"
#include "port/win32/Waiting.h"
#include "port/win32/Window.h"

struct SDL_Window;

namespace port
{

/// Everything that window, messages, cursor, display and raw input operations ask of the host.
///
/// One method an operation, under its published name; the free functions forward to the platform in place. The host's
/// own is SdlPlatform; a test derives from that and fails or records what it likes.
class Win32Platform
{
public:
    virtual ~Win32Platform() = default;

    virtual ATOM RegisterClassExA(const WNDCLASSEXA *windowClass) = 0;
    virtual BOOL UnregisterClassA(LPCSTR className, HINSTANCE instance) = 0;
    virtual HWND CreateWindowExA(DWORD exStyle, LPCSTR className, LPCSTR windowName, DWORD style, int x, int y,
                                 int width, int height, HWND parent, HMENU menu, HINSTANCE instance, LPVOID param) = 0;
    virtual BOOL DestroyWindow(HWND hWnd) = 0;
    virtual BOOL AdjustWindowRect(LPRECT rect, DWORD style, BOOL menu) = 0;
    virtual BOOL GetClientRect(HWND hWnd, LPRECT rect) = 0;
    virtual BOOL ShowWindow(HWND hWnd, int showCommand) = 0;
    virtual BOOL UpdateWindow(HWND hWnd) = 0;
    virtual BOOL ValidateRect(HWND hWnd, LPCRECT rect) = 0;
    virtual LONG SetWindowLongA(HWND hWnd, int index, LONG value) = 0;
    virtual LONG GetWindowLongA(HWND hWnd, int index) = 0;
    virtual BOOL SetWindowPos(HWND hWnd, HWND insertAfter, int x, int y, int cx, int cy, UINT flags) = 0;
    virtual HWND GetForegroundWindow() = 0;
    virtual LRESULT DefWindowProcA(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam) = 0;
    virtual BOOL ClientToScreen(HWND hWnd, LPPOINT point) = 0;
    virtual BOOL ScreenToClient(HWND hWnd, LPPOINT point) = 0;
    virtual HANDLE LoadImageA(HINSTANCE instance, LPCSTR name, UINT type, int width, int height, UINT flags) = 0;
    virtual HANDLE GetStockObject(int index) = 0;

    virtual BOOL PeekMessageA(LPMSG msg, HWND hWnd, UINT first, UINT last, UINT removeMsg) = 0;
    virtual BOOL TranslateMessage(const MSG *msg) = 0;
    virtual LRESULT DispatchMessageA(const MSG *msg) = 0;
    virtual BOOL PostMessageA(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam) = 0;
    virtual LRESULT SendMessageA(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam) = 0;
    virtual void PostQuitMessage(int exitCode) = 0;

    virtual void Sleep(DWORD milliseconds) = 0;
    virtual DWORD MsgWaitForMultipleObjects(DWORD count, const HANDLE *handles, BOOL waitAll, DWORD milliseconds,
                                            DWORD wakeMask) = 0;

    virtual int ShowCursor(BOOL show) = 0;
    virtual BOOL SetCursorPos(int x, int y) = 0;
    virtual BOOL GetCursorPos(LPPOINT point) = 0;
    virtual HCURSOR LoadCursorA(HINSTANCE instance, LPCSTR name) = 0;

    virtual BOOL EnumDisplaySettingsA(LPCSTR deviceName, DWORD modeNum, DEVMODEA *mode) = 0;
    virtual int GetSystemMetrics(int index) = 0;
    virtual BOOL SystemParametersInfoA(UINT action, UINT parameter, PVOID data, UINT change) = 0;
    virtual BOOL EnumDisplayMonitors(HDC context, LPCRECT clip, MONITORENUMPROC told, LPARAM data) = 0;
    virtual BOOL GetMonitorInfoA(HMONITOR monitor, MONITORINFO *info) = 0;
    virtual const std::vector<DisplayMode> &displayModes() = 0;

    virtual BOOL RegisterRawInputDevices(const RAWINPUTDEVICE *devices, UINT count, UINT size) = 0;
    virtual UINT GetRawInputData(HRAWINPUT rawInput, UINT command, LPVOID data, PUINT size, UINT headerSize) = 0;
    virtual void forgetComposition() = 0;
    virtual bool postRawInput(const RAWINPUT &input) = 0;

    virtual SDL_Window *sdlWindow(HWND hWnd) = 0;
    virtual bool enterFullScreen(HWND hWnd, int width, int height, int refreshRate) = 0;
    virtual void leaveFullScreen(HWND hWnd) = 0;
    virtual bool isOffscreen() = 0;
};

/// The platform in place; the host's own unless another was installed.
Win32Platform &win32Platform();

/// Stands a platform in place of the host's, or with null the host's own back.
/// @return what was installed before; null for the host's own
Win32Platform *installWin32Platform(Win32Platform *platform);

/// Stands a platform in place for the life of this object; borrowed.
class ScopedWin32Platform
{
public:
    explicit ScopedWin32Platform(Win32Platform &platform) : former(installWin32Platform(&platform)) {}
    ~ScopedWin32Platform() { installWin32Platform(former); }
    ScopedWin32Platform(const ScopedWin32Platform &) = delete;
    ScopedWin32Platform &operator=(const ScopedWin32Platform &) = delete;

private:
    Win32Platform *former;
};

} // namespace port
