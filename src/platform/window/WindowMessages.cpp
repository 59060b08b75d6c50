#include "platform/window/WindowMessages.h"

#include "object/messages/Message.h"

namespace
{
MessageType windowCloseMessage(SCS("WindowCloseMessage"));
MessageType windowFocusMessage(SCS("WindowFocusMessage"));
MessageType windowSizeMessage(SCS("WindowSizeMessage"));
} // namespace

const ReflectorPtr WindowCloseMessage = &windowCloseMessage;
const ReflectorPtr WindowFocusMessage = &windowFocusMessage;
const ReflectorPtr WindowSizeMessage = &windowSizeMessage;
