#include "gameplay/player/PlayerMessages.h"

#include "object/messages/Message.h"

namespace
{
MessageType flashlightOn(SCS("FlashlightOn"));
MessageType playerCrouchMessage(SCS("PlayerCrouchMessage"));
MessageType leanLeftMessage(SCS("LeanLeftMessage"));
MessageType leanRightMessage(SCS("LeanRightMessage"));
MessageType leanReturnMessage(SCS("LeanReturnMessage"));
MessageType stopLeaningMessage(SCS("StopLeaningMessage"));
MessageType displayHUDMessage(SCS("DisplayHUDMessage"));
} // namespace

const ReflectorPtr FlashlightOn = &flashlightOn;
const ReflectorPtr PlayerCrouchMessage = &playerCrouchMessage;
const ReflectorPtr LeanLeftMessage = &leanLeftMessage;
const ReflectorPtr LeanRightMessage = &leanRightMessage;
const ReflectorPtr LeanReturnMessage = &leanReturnMessage;
const ReflectorPtr StopLeaningMessage = &stopLeaningMessage;
const ReflectorPtr DisplayHUDMessage = &displayHUDMessage;
