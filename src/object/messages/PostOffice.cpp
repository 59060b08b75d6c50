#include "object/messages/PostOffice.h"

PostOffice_ &PostOffice()
{
    static auto *instance = new PostOffice_;
    return *instance;
}

void PostOffice_::registerMessageHandler(ReflectorPtr messageType, ReflectorPtr handler)
{
    listeners.add(messageType, std::move(handler));
}

void PostOffice_::submitMessage(ReflectorPtr messageType, SavedArguments &sa)
{
    listeners.deliver(messageType, sa);
    if (branch)
        branch(messageType, sa);
}
