// SdlKeys: the host's scan codes as virtual-key codes.
#pragma once

#include "port/win32/VirtualKeys.h"

namespace port
{

/// A key as Windows names it.
struct KeyCode
{
    USHORT virtualKey = 0; ///< 0: the key has no code
    bool extended = false; ///< the right one of two modifiers, or a key outside the main block and the number pad
};

/// The key at a place of the keyboard, by SDL scan code.
///
/// By place, not by what the layout prints there: a game's keys are chosen for where the fingers lie.
KeyCode keyCodeOf(int scancode);

} // namespace port
