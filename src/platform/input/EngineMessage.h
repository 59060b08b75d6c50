// EngineMessage: the call that sends a message of the engine with its payload.
#pragma once

#include "object/messages/PostOffice.h"
#include "object/reflection/SavedArguments.h"

/// Delivers a message to all its handlers before it returns; allocates nothing for numbers.
template <class... Payload>
void sendEngineMessage(const ReflectorPtr &messageType, const Payload &...payload)
{
    SavedArguments arguments = SavedArguments::of(payload...);
    PostOffice().submitMessage(messageType, arguments);
}
