// InputMessages: what keyboard, mouse and pads tell the game.
//
// Positions are normalised window coordinates, 1.0 being the longer side of the window. A handler takes the message
// type first and the payload, given here, behind it.
#pragma once

#include "object/tree/ReflectorPtr.h"

extern const ReflectorPtr KeyDownMessage; ///< int key: virtual-key code; once a press, repeats are not sent
extern const ReflectorPtr KeyUpMessage;   ///< int key: virtual-key code

extern const ReflectorPtr MouseDownMessage;  ///< unsigned click: 0 left, 1 right, 2 middle, 3, 4; float x, float y
extern const ReflectorPtr MouseUpMessage;    ///< as MouseDownMessage
extern const ReflectorPtr MouseWheelMessage; ///< int direction: 120 a notch away from the player; float x, float y
extern const ReflectorPtr MouseMove;         ///< float x, float y: motion, right and down; while the cursor is held
extern const ReflectorPtr MousePos;          ///< unsigned button: the lowest held, or 5; float x, float y: y from below

extern const ReflectorPtr
    ButtonPressed;                     ///< int button: one XINPUT_GAMEPAD_ bit, each frame it is down; unsigned player
extern const ReflectorPtr LeftJoyPos;  ///< float x, float y: -1 to 1, right and up; unsigned player
extern const ReflectorPtr RightJoyPos; ///< as LeftJoyPos
extern const ReflectorPtr LeftTriggerPos;  ///< float position: 0 to 1; unsigned player
extern const ReflectorPtr RightTriggerPos; ///< as LeftTriggerPos
