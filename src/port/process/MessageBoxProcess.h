// MessageBoxProcess: message boxes that a second process of the same image shows.
#pragma once

#include "port/win32/WinTypes.h"

#include <optional>

namespace port
{

// A box of a process of its own needs nothing of the one that failed: not its window, not its memory, not the display
// it has grabbed. It can be closed from outside, and it outlives a crash.

/// Shows the box and returns its answer where the process was started to do that and no more. Call it first in main.
/// @return the exit code; none in an ordinary run
std::optional<int> runAsMessageBox(int argc, char **argv);

/// Has MessageBoxA show its boxes by this process's own image, if a display is expected. Only a program whose main
/// begins with runAsMessageBox may call it.
void showMessageBoxes();

/// Starts a process of this image that shows the boxes from now on, for one that is about to give up starting programs.
/// It ends with this one; nothing without a display.
void keepMessageBoxProcess();

/// Closes a box that is open, as if the user had; a signal handler may call it.
void closeMessageBox();

/// Shows a box that stays when this process ends, and does not wait; nothing without a display.
///
/// For a signal handler: allocates nothing.
void leaveMessageBox(const char *text, const char *caption);

} // namespace port
