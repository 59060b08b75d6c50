#include "platform/input/InputMessages.h"

#include "object/messages/Message.h"

namespace
{
MessageType keyDownMessage(SCS("KeyDownMessage"));
MessageType keyUpMessage(SCS("KeyUpMessage"));
MessageType mouseDownMessage(SCS("MouseDownMessage"));
MessageType mouseUpMessage(SCS("MouseUpMessage"));
MessageType mouseWheelMessage(SCS("MouseWheelMessage"));
MessageType mouseMoveMessage(SCS("MouseMove"));
MessageType mousePosMessage(SCS("MousePos"));
MessageType buttonPressedMessage(SCS("ButtonPressed"));
MessageType leftJoyPosMessage(SCS("LeftJoyPos"));
MessageType rightJoyPosMessage(SCS("RightJoyPos"));
MessageType leftTriggerPosMessage(SCS("LeftTriggerPos"));
MessageType rightTriggerPosMessage(SCS("RightTriggerPos"));
} // namespace

const ReflectorPtr KeyDownMessage = &keyDownMessage;
const ReflectorPtr KeyUpMessage = &keyUpMessage;
const ReflectorPtr MouseDownMessage = &mouseDownMessage;
const ReflectorPtr MouseUpMessage = &mouseUpMessage;
const ReflectorPtr MouseWheelMessage = &mouseWheelMessage;
const ReflectorPtr MouseMove = &mouseMoveMessage;
const ReflectorPtr MousePos = &mousePosMessage;
const ReflectorPtr ButtonPressed = &buttonPressedMessage;
const ReflectorPtr LeftJoyPos = &leftJoyPosMessage;
const ReflectorPtr RightJoyPos = &rightJoyPosMessage;
const ReflectorPtr LeftTriggerPos = &leftTriggerPosMessage;
const ReflectorPtr RightTriggerPos = &rightTriggerPosMessage;
