// InputWindow: what input needs of the game's window, which lies above this folder.
#pragma once

#include "engine/screen/WindowCoordinate.h"

#include "port/win32/WinTypes.h"

/// The window that has the game's keyboard and mouse. The window system installs itself here.
class InputWindow
{
public:
    virtual ~InputWindow() = default;

    virtual HWND getWindowHandle() const = 0;
    /// Height of the client area, pixels.
    virtual int getHeight() const = 0;
    /// Whether the cursor is hidden and held, so that the mouse tells motion and no place.
    virtual bool isCursorRelative() const = 0;
    virtual void setCursorRelative(bool relative) = 0;
    virtual WindowCoordinate convertWindowCoordinate(const WindowCoordinate &in, WindowCoordinateSystem xTarget,
                                                     WindowCoordinateSystem yTarget) const = 0;

    /// The installed window; null while there is none.
    static InputWindow *current();
    /// Installs a window, or takes it out with null; borrowed.
    static void setCurrent(InputWindow *window);
};
