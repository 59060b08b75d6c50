// PlayedWindow: what becomes of a window, as a recording keeps it and plays it.
#pragma once

#include "port/win32/Messages.h"
#include "port/win32/WinTypes.h"

#include <deque>

/// Comes to the window in its turn among the input: wParam is whether it had the focus.
constexpr UINT WM_PLAYED_FOCUS = WM_USER + 1;
/// Comes to the window in its turn among the input: wParam is the character that was typed.
constexpr UINT WM_PLAYED_TEXT = WM_USER + 2;

/// Who keeps a recording of the window.
class WindowWitness
{
public:
    virtual ~WindowWitness() = default;

    /// The window has the focus now, or not any more.
    virtual void focusChanged(bool active) = 0;
    /// The window's size is in force, pixels.
    /// @param byUser  taken over in the frame step, since the user changed it
    virtual void sizeTaken(int width, int height, bool byUser) = 0;
};

/// Sizes that a recording has for this frame, in their order.
struct PlayedSizes
{
    std::deque<POINT> ofGame; ///< pixels
    std::deque<POINT> ofUser; ///< pixels
};
