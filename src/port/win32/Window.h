// Window: window classes, windows and their styles.
//
// Operations carry their published names and meaning; each is forwarded to the platform in place, see Win32Platform.h.
// The host draws a window's frame outside the rectangles named here, so that a window and its client area coincide.
#pragma once

#include "port/win32/Cursor.h"
#include "port/win32/Messages.h"
#include "port/win32/WinTypes.h"

typedef LRESULT(CALLBACK *WNDPROC)(HWND, UINT, WPARAM, LPARAM);

constexpr DWORD WS_POPUP = 0x80000000;
constexpr DWORD WS_VISIBLE = 0x10000000;
constexpr DWORD WS_CAPTION = 0x00C00000;
constexpr DWORD WS_SYSMENU = 0x00080000;
constexpr DWORD WS_THICKFRAME = 0x00040000;
constexpr DWORD WS_MINIMIZEBOX = 0x00020000;
constexpr DWORD WS_MAXIMIZEBOX = 0x00010000;

constexpr UINT CS_VREDRAW = 0x0001;
constexpr UINT CS_HREDRAW = 0x0002;

constexpr int SW_HIDE = 0;
constexpr int SW_SHOW = 5;

constexpr int GWL_STYLE = -16;
constexpr int GWL_EXSTYLE = -20;

constexpr UINT SWP_NOSIZE = 0x0001;
constexpr UINT SWP_NOMOVE = 0x0002;
constexpr UINT SWP_NOZORDER = 0x0004;
constexpr UINT SWP_FRAMECHANGED = 0x0020;
constexpr UINT SWP_SHOWWINDOW = 0x0040;

constexpr DWORD ERROR_CLASS_DOES_NOT_EXIST = 1411;
constexpr DWORD ERROR_INVALID_INDEX = 1413;

constexpr int CW_USEDEFAULT = static_cast<int>(0x80000000);

constexpr int BLACK_BRUSH = 4;
constexpr UINT IMAGE_ICON = 1;
constexpr UINT LR_DEFAULTSIZE = 0x0040;
constexpr UINT LR_SHARED = 0x8000;

/// A resource number in the place of a name.
inline LPCSTR MAKEINTRESOURCEA(WORD number)
{
    return reinterpret_cast<LPCSTR>(static_cast<ULONG_PTR>(number));
}

/// What the windows of a class share.
struct WNDCLASSEXA
{
    UINT cbSize = sizeof(WNDCLASSEXA);
    UINT style = 0;
    WNDPROC lpfnWndProc = nullptr;
    int cbClsExtra = 0;
    int cbWndExtra = 0;
    HINSTANCE hInstance = nullptr;
    HICON hIcon = nullptr;
    HCURSOR hCursor = nullptr;
    HBRUSH hbrBackground = nullptr;
    LPCSTR lpszMenuName = nullptr;
    LPCSTR lpszClassName = nullptr;
    HICON hIconSm = nullptr;
};

/// Makes a class known by its name.
/// @return its number; 0 on failure: ERROR_INVALID_PARAMETER, ERROR_CLASS_ALREADY_EXISTS
ATOM RegisterClassExA(const WNDCLASSEXA *windowClass);
/// Forgets a class; its windows live on.
BOOL UnregisterClassA(LPCSTR className, HINSTANCE instance);

/// Makes a window, ready for the device, and shows it if its style says so. Sends no WM_CREATE.
/// @param x, y  place on the screen, or CW_USEDEFAULT
/// @return null on failure: ERROR_CANNOT_FIND_WND_CLASS, or ERROR_GEN_FAILURE with the host's reason in the debug
///         output
HWND CreateWindowExA(DWORD exStyle, LPCSTR className, LPCSTR windowName, DWORD style, int x, int y, int width,
                     int height, HWND parent, HMENU menu, HINSTANCE instance, LPVOID param);
/// Sends WM_DESTROY and ends the window; what a device still draws into it is kept, unseen, until the process ends.
BOOL DestroyWindow(HWND hWnd);

/// The window rectangle of a client rectangle: the same, since frames are the host's.
BOOL AdjustWindowRect(LPRECT rect, DWORD style, BOOL menu);
BOOL GetClientRect(HWND hWnd, LPRECT rect);
/// Shows or hides the window.
/// @return whether it was visible before
BOOL ShowWindow(HWND hWnd, int showCommand);
/// Sends WM_PAINT at once if painting is due.
BOOL UpdateWindow(HWND hWnd);
/// Ends the need of painting; only whole windows are tracked, so any rectangle counts as all.
BOOL ValidateRect(HWND hWnd, LPCRECT rect);

/// Replaces the style; the frame follows at once, and with WS_THICKFRAME the user may resize and maximise.
/// @return the former value; 0 on failure: ERROR_INVALID_INDEX for anything but GWL_STYLE and GWL_EXSTYLE
LONG SetWindowLongA(HWND hWnd, int index, LONG value);
LONG GetWindowLongA(HWND hWnd, int index);
/// Moves and resizes; a frameless window as large as the display covers it, panels included.
BOOL SetWindowPos(HWND hWnd, HWND insertAfter, int x, int y, int cx, int cy, UINT flags);
/// The window that has the keyboard, if it is ours.
HWND GetForegroundWindow();

/// What a window does with a message that it has no answer of its own for.
///
/// WM_CLOSE destroys the window; WM_PAINT erases and validates; WM_NCACTIVATE agrees.
LRESULT DefWindowProcA(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam);

BOOL ClientToScreen(HWND hWnd, LPPOINT point);
BOOL ScreenToClient(HWND hWnd, LPPOINT point);

/// Loads a numbered icon: the picture "..\assets\icons\<number>.bmp".
/// @return null where there is none: ERROR_RESOURCE_NAME_NOT_FOUND
HANDLE LoadImageA(HINSTANCE instance, LPCSTR name, UINT type, int width, int height, UINT flags);
/// One of the system's own drawing objects; null for an unknown index.
HANDLE GetStockObject(int index);
