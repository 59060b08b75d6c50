#include "platform/sound/SoundMessages.h"

#include "object/messages/Message.h"

namespace
{
MessageType soundHeardMessage(SCS("SoundHeardMessage"));
}

const ReflectorPtr SoundHeardMessage = &soundHeardMessage;
