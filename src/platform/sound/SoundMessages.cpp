#include "platform/sound/SoundMessages.h"

#include "object/messages/Message.h"

namespace
{
MessageType soundHeardMessage(SCS("SoundHeardMessage"));
MessageType soundMadeMessage(SCS("SoundMadeMessage"));
} // namespace

const ReflectorPtr SoundHeardMessage = &soundHeardMessage;
const ReflectorPtr SoundMadeMessage = &soundMadeMessage;
