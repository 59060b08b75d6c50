// PostOffice: delivers messages to the handlers registered for them.
#pragma once

#include "object/messages/ListenerSets.h"

/// The process-wide post office. A message submitted here reaches its own handlers first, then those of the current
/// level's branch office. Delivery is synchronous; a handler that fails is dropped, which is the only way out.
class PostOffice_
{
public:
    /// Delivers to the level's branch office; the layer that owns levels installs it.
    using BranchDelivery = void (*)(const ReflectorPtr &messageType, SavedArguments &sa);

    /// Adds a handler for a message type; the same handler twice is one.
    void registerMessageHandler(ReflectorPtr messageType, ReflectorPtr handler);
    /// Calls every handler of the message type with the type and the payload, here and then at the level's branch.
    void submitMessage(ReflectorPtr messageType, SavedArguments &sa);
    /// The handlers that are registered here, not those of levels.
    const ListenerSets &getListeners() const { return listeners; }
    void setBranchDelivery(BranchDelivery delivery) { branch = delivery; }

private:
    friend PostOffice_ &PostOffice();
    PostOffice_() = default;

    ListenerSets listeners;
    BranchDelivery branch = nullptr;
};

/// The one post office of the process.
PostOffice_ &PostOffice();
