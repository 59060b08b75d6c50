// ListenerSets: handlers by message type, and how a message reaches them.
#pragma once

#include "object/reflection/SavedArguments.h"

#include <map>
#include <vector>

/// The handlers of one post office, a set for each message type.
///
/// Handlers are called in the order of their registration, so that two runs deliver alike. A delivery takes the whole
/// set away and puts each handler back once its call has succeeded: a handler registered meanwhile waits for the next
/// message, a message submitted meanwhile reaches those that are back, and a handler that fails is gone.
class ListenerSets
{
public:
    /// Adds a handler; one that is there already changes nothing. A null type or handler is ignored.
    void add(const ReflectorPtr &messageType, ReflectorPtr handler);
    /// Calls each handler of a type with the type and the payload. Allocates nothing once the sets have grown.
    void deliver(const ReflectorPtr &messageType, SavedArguments &payload);
    /// Count of handlers of a type.
    std::size_t getHandlerCount(const ReflectorPtr &messageType) const;
    /// Calls a function with each message type and handler; it may change nothing here.
    template <class Function>
    void forEach(const Function &function) const
    {
        for (const auto &[type, office] : offices)
            for (const ReflectorPtr &handler : office.handlers)
                function(type, handler);
    }

private:
    using ListenerSet = std::vector<ReflectorPtr>;

    /// The set of one message type, and how many registrations it has seen.
    struct Office
    {
        ListenerSet handlers;
        unsigned registrations = 0;
    };
    using ListenerSetMap = std::map<ReflectorPtr, Office>;

    static bool contains(const ListenerSet &set, const ReflectorPtr &handler);
    void putBack(Office &office, unsigned registrationsBefore, ReflectorPtr &handler);
    ListenerSet takeSpare();

    ListenerSetMap offices;
    std::vector<ListenerSet> spares; ///< emptied sets whose memory serves the next deliveries
};
