// SdlPlatform: the platform operations on SDL.
#pragma once

#include "port/win32/MessageQueue.h"
#include "port/win32/Win32Platform.h"

#include <cstdint>
#include <string>
#include <vector>

struct SDL_KeyboardEvent;
struct SDL_MouseButtonEvent;
struct SDL_MouseMotionEvent;
struct SDL_MouseWheelEvent;
struct SDL_Surface;
struct SDL_TextInputEvent;
struct SDL_WindowEvent;
union SDL_Event;

namespace port
{

/// Windows, messages, cursor and raw input of the host, through SDL.
///
/// Main thread only. The video driver starts with the first operation that needs it. Off-screen a shown window counts
/// as having the keyboard, and the cursor is where it was put.
class SdlPlatform : public Win32Platform
{
public:
    SdlPlatform();
    ~SdlPlatform() override;
    SdlPlatform(const SdlPlatform &) = delete;
    SdlPlatform &operator=(const SdlPlatform &) = delete;

    ATOM RegisterClassExA(const WNDCLASSEXA *windowClass) override;
    BOOL UnregisterClassA(LPCSTR className, HINSTANCE instance) override;
    HWND CreateWindowExA(DWORD exStyle, LPCSTR className, LPCSTR windowName, DWORD style, int x, int y, int width,
                         int height, HWND parent, HMENU menu, HINSTANCE instance, LPVOID param) override;
    BOOL DestroyWindow(HWND hWnd) override;
    BOOL AdjustWindowRect(LPRECT rect, DWORD style, BOOL menu) override;
    BOOL GetClientRect(HWND hWnd, LPRECT rect) override;
    BOOL ShowWindow(HWND hWnd, int showCommand) override;
    BOOL UpdateWindow(HWND hWnd) override;
    BOOL ValidateRect(HWND hWnd, LPCRECT rect) override;
    LONG SetWindowLongA(HWND hWnd, int index, LONG value) override;
    LONG GetWindowLongA(HWND hWnd, int index) override;
    BOOL SetWindowPos(HWND hWnd, HWND insertAfter, int x, int y, int cx, int cy, UINT flags) override;
    HWND GetForegroundWindow() override;
    LRESULT DefWindowProcA(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam) override;
    BOOL ClientToScreen(HWND hWnd, LPPOINT point) override;
    BOOL ScreenToClient(HWND hWnd, LPPOINT point) override;
    HANDLE LoadImageA(HINSTANCE instance, LPCSTR name, UINT type, int width, int height, UINT flags) override;
    HANDLE GetStockObject(int index) override;

    BOOL PeekMessageA(LPMSG msg, HWND hWnd, UINT first, UINT last, UINT removeMsg) override;
    BOOL TranslateMessage(const MSG *msg) override;
    LRESULT DispatchMessageA(const MSG *msg) override;
    BOOL PostMessageA(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam) override;
    LRESULT SendMessageA(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam) override;
    void PostQuitMessage(int exitCode) override;

    void Sleep(DWORD milliseconds) override;
    DWORD MsgWaitForMultipleObjects(DWORD count, const HANDLE *handles, BOOL waitAll, DWORD milliseconds,
                                    DWORD wakeMask) override;

    int ShowCursor(BOOL show) override;
    BOOL SetCursorPos(int x, int y) override;
    BOOL GetCursorPos(LPPOINT point) override;
    HCURSOR LoadCursorA(HINSTANCE instance, LPCSTR name) override;

    BOOL EnumDisplaySettingsA(LPCSTR deviceName, DWORD modeNum, DEVMODEA *mode) override;
    int GetSystemMetrics(int index) override;
    BOOL SystemParametersInfoA(UINT action, UINT parameter, PVOID data, UINT change) override;
    BOOL EnumDisplayMonitors(HDC context, LPCRECT clip, MONITORENUMPROC told, LPARAM data) override;
    BOOL GetMonitorInfoA(HMONITOR monitor, MONITORINFO *info) override;
    const std::vector<DisplayMode> &displayModes() override;

    BOOL RegisterRawInputDevices(const RAWINPUTDEVICE *devices, UINT count, UINT size) override;
    UINT GetRawInputData(HRAWINPUT rawInput, UINT command, LPVOID data, PUINT size, UINT headerSize) override;
    void forgetComposition() override;
    bool postRawInput(const RAWINPUT &input) override;

    SDL_Window *sdlWindow(HWND hWnd) override;
    bool enterFullScreen(HWND hWnd, int width, int height, int refreshRate) override;
    void leaveFullScreen(HWND hWnd) override;
    bool isOffscreen() override;

private:
    struct WindowClass
    {
        std::string name;
        ATOM atom;
        WNDPROC procedure;
        HICON icon; ///< null: the host's own
    };

    struct Window
    {
        HWND handle;
        WNDPROC procedure;
        SDL_Window *native;
        LONG style;
        LONG exStyle;
        bool needsPaint;
        bool ownsDisplay; ///< in a mode of its own, not the desktop's
    };

    /// Whether a class of device reports its input, and whether key and mouse messages still come beside it.
    struct RawDevice
    {
        bool registered = false;
        bool noLegacy = false;
    };

    // SdlPlatform.cpp
    WindowClass *findClass(LPCSTR nameOrAtom);
    Window *find(HWND hWnd);
    Window *findNative(unsigned sdlWindowId);
    SDL_Window *createNative(const char *title, DWORD style, int x, int y, int width, int height);
    static int displayOf(const Window &window);
    void fitFrameToStyle(Window &window);
    /// Width of the frame at the sides and height of the title above it, as the host last drew them.
    void measureFrame();

    // SdlCursor.cpp
    void holdCursor(bool hold);

    // SdlEvents.cpp
    void pumpEvents();
    void endOnRequest(int signal);
    void closeAllWindows();
    void handleEvent(const SDL_Event &event);
    void handleWindowEvent(const SDL_WindowEvent &event);
    void tellSize(const Window &window);
    void handleKey(const SDL_KeyboardEvent &event);
    void handleText(const SDL_TextInputEvent &event);
    void handleMotion(const SDL_MouseMotionEvent &event);
    void handleButton(const SDL_MouseButtonEvent &event);
    void handleWheel(const SDL_MouseWheelEvent &event);
    void activate(HWND hWnd, bool active);
    void postTo(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam);
    void postDeviceInput(HWND hWnd, const RAWINPUT &input);
    HWND inputTarget(unsigned sdlWindowId);
    /// Whether raw mouse input over this window is the program's to hear: a window behind another one's gets none.
    bool hearsMouse(HWND target) const;
    bool paintMessage(LPMSG msg, HWND hWnd, UINT first, UINT last);
    RawDevice *rawDevice(USHORT usagePage, USHORT usage);

    MessageQueue queue;
    std::vector<WindowClass> classes;
    std::vector<Window> windows;
    std::vector<SDL_Surface *> icons;  ///< that were loaded, to the end: who loads one does not give it back
    std::vector<SDL_Window *> retired; ///< of destroyed windows; a device may still draw into them
    std::uintptr_t lastWindowNumber = 0;
    ATOM lastAtom = 0xC000; ///< where the platform's own numbers of classes begin
    HWND activeWindow = nullptr;
    // What frames usually measure, until the host has drawn one.
    int frameWidth = 4;     ///< pixels
    int captionHeight = 32; ///< pixels
    RawDevice keyboard;
    RawDevice mouse;
    int cursorCount = 0;     ///< seen while not negative
    POINT cursorPlace{0, 0}; ///< where the cursor was put last, screen pixels
    bool cursorHeld = false; ///< the cursor stays at cursorPlace and the mouse reports motion alone
};

} // namespace port
