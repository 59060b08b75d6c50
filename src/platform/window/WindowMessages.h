// WindowMessages: what the window tells the game.
//
// A handler takes the message type first and the payload, given here, behind it.
#pragma once

#include "object/tree/ReflectorPtr.h"

extern const ReflectorPtr WindowCloseMessage; ///< the window is being closed, by its button or by who ends the process
extern const ReflectorPtr WindowFocusMessage; ///< bool active: the window has the keyboard now, or has it no more
extern const ReflectorPtr WindowSizeMessage; ///< int width, int height: pixels; once the user's resize has come to rest
