// BranchPostOffice: the post office of one level.
#pragma once

#include "engine/entities/AbstractComponent.h"
#include "object/messages/ListenerSets.h"

/// Delivers messages to the handlers of one level, so that they die with the level.
///
/// Under the component key "postOffice" of the entity "BranchPostOffice" below the coordinator. The process-wide post
/// office passes every message on to the one of the current level.
class BranchPostOffice : public AbstractComponent
{
    KV_REFLECTED(BranchPostOffice)
public:
    BranchPostOffice() = default;

    /// Has a handler called with every message of a type; a handler that fails is dropped.
    void registerMessageHandler(ReflectorPtr messageType, ReflectorPtr handler);
    /// Calls the level's handlers of a message type with the type and the payload.
    void submitMessage(ReflectorPtr messageType, SavedArguments &sa);
    /// The handlers that are registered here.
    const ListenerSets &getListeners() const { return listeners; }

private:
    friend class PostOffice_;

    ListenerSets listeners;
};

/// Delivers a message at the branch of the level now in charge; nothing happens where it has none.
void deliverToCurrentBranch(const ReflectorPtr &messageType, SavedArguments &sa);
