// The cursor on SDL.
#include "port/win32/SdlPlatform.h"

#include "port/win32/Diagnostics.h"
#include "port/win32/SdlVideo.h"

#include <SDL.h>

namespace port
{

int SdlPlatform::ShowCursor(BOOL show)
{
    cursorCount += show ? 1 : -1;
    if (cursorCount >= 0)
        holdCursor(false);
    if (SdlVideo::get().works())
        SDL_ShowCursor(cursorCount >= 0 ? SDL_ENABLE : SDL_DISABLE);
    return cursorCount;
}

BOOL SdlPlatform::SetCursorPos(int x, int y)
{
    // Whoever hides the cursor and puts it back on one spot wants motion, not a place: the host then reports the
    // motion itself, which neither the window's edge nor the put-back cuts short.
    const bool again = cursorCount < 0 && x == cursorPlace.x && y == cursorPlace.y;
    cursorPlace = {x, y};
    if (isOffscreen())
        return TRUE;

    holdCursor(again && activeWindow);
    if (cursorHeld)
        return TRUE;
    POINT inClient{x, y};
    if (activeWindow && ScreenToClient(activeWindow, &inClient))
        SDL_WarpMouseInWindow(sdlWindow(activeWindow), inClient.x, inClient.y);
    else
        SDL_WarpMouseGlobal(x, y);
    return TRUE;
}

void SdlPlatform::holdCursor(bool hold)
{
    if (hold == cursorHeld)
        return;
    // Some hosts cannot; the cursor is then put back like any other.
    const bool done = SDL_SetRelativeMouseMode(hold ? SDL_TRUE : SDL_FALSE) == 0;
    cursorHeld = hold && done;
}

BOOL SdlPlatform::GetCursorPos(LPPOINT point)
{
    if (!point)
    {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    if (isOffscreen() || cursorHeld)
    {
        *point = cursorPlace;
        return TRUE;
    }
    int x = 0;
    int y = 0;
    SDL_GetGlobalMouseState(&x, &y);
    *point = {x, y};
    return TRUE;
}

HCURSOR SdlPlatform::LoadCursorA(HINSTANCE, LPCSTR name)
{
    if (name == IDC_ARROW)
        return reinterpret_cast<HCURSOR>(const_cast<char *>(IDC_ARROW)); // what the host shows anyway
    SetLastError(ERROR_RESOURCE_NAME_NOT_FOUND);
    return nullptr;
}

} // namespace port
