// SdlWindow: the host's window behind a window handle, for the rest of the port.
#pragma once

#include "port/win32/WinTypes.h"

struct SDL_Window;

namespace port
{

/// The host window, made for an OpenGL 4.5 core context; null for a handle that is none.
///
/// Borrowed. It stays valid after DestroyWindow, unseen, until the process ends: a device may outlive its window.
SDL_Window *sdlWindow(HWND hWnd);

/// Gives the display to the window in the nearest mode of this size; `refreshRate` 0 takes any.
/// @return false where the host refuses, and the window stays as it is
bool enterFullScreen(HWND hWnd, int width, int height, int refreshRate);
/// Gives the display back to the desktop; nothing happens to a window that does not have it.
void leaveFullScreen(HWND hWnd);

/// Whether there is no display and all windows are off-screen.
bool isOffscreen();

} // namespace port
