// PlayerMessages: what the player tells the level.
//
// A handler takes the message type first and the payload, given here, behind it.
#pragma once

#include "object/tree/ReflectorPtr.h"

extern const ReflectorPtr FlashlightOn;        ///< bool on: the flashlight was switched by hand or by a new battery
extern const ReflectorPtr PlayerCrouchMessage; ///< bool crouched: the player goes down or stands up
extern const ReflectorPtr LeanLeftMessage;     ///< the head is to lean to the left
extern const ReflectorPtr LeanRightMessage;    ///< the head is to lean to the right
extern const ReflectorPtr LeanReturnMessage;   ///< the head is to come back to the middle
extern const ReflectorPtr StopLeaningMessage;  ///< the head is to stay where it is
extern const ReflectorPtr DisplayHUDMessage;   ///< the hud is to be seen for a while
