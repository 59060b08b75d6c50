// Cursor: the mouse cursor's place and visibility.
//
// Operations carry their published names and meaning; each is forwarded to the platform in place, see Win32Platform.h.
#pragma once

#include "port/win32/WinTypes.h"

inline const LPCSTR IDC_ARROW = reinterpret_cast<LPCSTR>(static_cast<ULONG_PTR>(32512));

constexpr DWORD ERROR_RESOURCE_NAME_NOT_FOUND = 1814;

/// Counts up or down; the cursor is seen while the count is not negative. It starts at 0.
/// @return the new count
int ShowCursor(BOOL show);

/// Moves the cursor to a place on the screen, in pixels.
///
/// A hidden cursor that is put on the same place again and again is held there: the mouse then reports motion without
/// end in WM_INPUT, also where it would have left the window. Off-screen the place is only remembered.
BOOL SetCursorPos(int x, int y);
/// The cursor's place on the screen, in pixels.
BOOL GetCursorPos(LPPOINT point);

/// One of the system's own cursors.
/// @return null for an unknown name: ERROR_RESOURCE_NAME_NOT_FOUND
HCURSOR LoadCursorA(HINSTANCE instance, LPCSTR name);
