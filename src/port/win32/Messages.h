// Messages: the window messages that the engine meets, and the operations of the message loop.
//
// Operations carry their published names and meaning; each is forwarded to the platform in place, see Win32Platform.h.
#pragma once

#include "port/win32/WinTypes.h"

constexpr UINT WM_NULL = 0x0000;
constexpr UINT WM_DESTROY = 0x0002;
constexpr UINT WM_SIZE = 0x0005;
constexpr UINT WM_ACTIVATE = 0x0006;
constexpr UINT WM_SETFOCUS = 0x0007;
constexpr UINT WM_KILLFOCUS = 0x0008;
constexpr UINT WM_PAINT = 0x000F;
constexpr UINT WM_CLOSE = 0x0010;
constexpr UINT WM_QUIT = 0x0012;
constexpr UINT WM_ERASEBKGND = 0x0014;
constexpr UINT WM_ACTIVATEAPP = 0x001C;
constexpr UINT WM_SETCURSOR = 0x0020;
constexpr UINT WM_NCACTIVATE = 0x0086;
constexpr UINT WM_INPUT = 0x00FF;
constexpr UINT WM_KEYDOWN = 0x0100;
constexpr UINT WM_KEYUP = 0x0101;
constexpr UINT WM_CHAR = 0x0102;
constexpr UINT WM_SYSKEYDOWN = 0x0104;
constexpr UINT WM_SYSKEYUP = 0x0105;
constexpr UINT WM_MOUSEMOVE = 0x0200;
constexpr UINT WM_LBUTTONDOWN = 0x0201;
constexpr UINT WM_LBUTTONUP = 0x0202;
constexpr UINT WM_RBUTTONDOWN = 0x0204;
constexpr UINT WM_RBUTTONUP = 0x0205;
constexpr UINT WM_MBUTTONDOWN = 0x0207;
constexpr UINT WM_MBUTTONUP = 0x0208;
constexpr UINT WM_MOUSEWHEEL = 0x020A;
constexpr UINT WM_XBUTTONDOWN = 0x020B;
constexpr UINT WM_XBUTTONUP = 0x020C;
constexpr UINT WM_USER = 0x0400;

constexpr WORD WA_INACTIVE = 0;
constexpr WORD WA_ACTIVE = 1;
constexpr WPARAM SIZE_RESTORED = 0;
constexpr WPARAM SIZE_MINIMIZED = 1;
constexpr WPARAM SIZE_MAXIMIZED = 2;
constexpr WORD HTCLIENT = 1;
constexpr int WHEEL_DELTA = 120;

constexpr UINT PM_NOREMOVE = 0x0000;
constexpr UINT PM_REMOVE = 0x0001;

/// One message as the loop takes it from the queue.
struct MSG
{
    HWND hwnd = nullptr; ///< the window it is for; null for the thread's own
    UINT message = WM_NULL;
    WPARAM wParam = 0;
    LPARAM lParam = 0;
    DWORD time = 0; ///< milliseconds since the platform started
    POINT pt{0, 0}; ///< cursor, screen pixels
};
typedef MSG *LPMSG;

/// Takes or copies the next message; messages that the host sends directly are delivered in passing.
///
/// Posted messages and input come in the order of their arrival, then the quit message, then painting.
/// @param hWnd           only this window's messages; null for all
/// @param first, last    only messages in this range; both 0 for all
/// @return whether there was one
BOOL PeekMessageA(LPMSG msg, HWND hWnd, UINT first, UINT last, UINT removeMsg);

/// Posts the WM_CHAR of a key message that stands for a control character.
///
/// Printable text arrives as WM_CHAR by itself, composed by the host's keyboard layout.
/// @return whether it was a key message
BOOL TranslateMessage(const MSG *msg);

namespace port
{

/// Forgets an accent or the like that waits for the letter below it: what is typed next begins anew.
void forgetComposition();

} // namespace port

/// Calls the window's procedure; 0 where the window is gone.
LRESULT DispatchMessageA(const MSG *msg);

/// Puts a message behind those that wait.
BOOL PostMessageA(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam);

/// Calls the window's procedure directly.
LRESULT SendMessageA(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam);

/// Makes WM_QUIT the last message that the loop finds, with this value in wParam.
void PostQuitMessage(int exitCode);
