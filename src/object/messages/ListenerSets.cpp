#include "object/messages/ListenerSets.h"

#include "object/python/ScriptCall.h"
#include "object/reflection/PartialFunctionApplication.h"

#include <algorithm>

namespace
{
/// A bound call that only the registration refers to stands in no set yet: the common case needs no search.
bool isFresh(const IReflectedThing &handler)
{
    return handler.isBoundCall() && static_cast<const PartialFunctionApplication &>(handler).hasOneReference();
}

/// The call of one message, packed so that it serves every handler.
///
/// Most handlers are one method bound to one object: for those the slot in front of the type takes the object, and
/// the payload is packed once for all of them.
class PackedMessage
{
public:
    PackedMessage(const ReflectorPtr &messageType, const SavedArguments &payload)
        : plain(payload.getArgCount() + 1), bound(hasRoomForObject() ? plain.getArgCount() + 1 : 0)
    {
        plain[0] = messageType;
        for (std::size_t i = 0; i < payload.getArgCount(); ++i)
            plain[i + 1] = payload[i];
        for (std::size_t i = 1; i < bound.getArgCount(); ++i)
            bound[i] = plain[i - 1];
    }

    bool callHandler(const IReflectedThing &handler)
    {
        if (handler.isBoundCall() && hasRoomForObject())
        {
            const auto &call = static_cast<const PartialFunctionApplication &>(handler);
            if (call.getBoundArguments().getArgCount() == 1)
            {
                bound[0] = call.getBoundArguments()[0];
                return call.getFunction()->do_call(bound).code.succeeded();
            }
        }
        return handler.do_call(plain).code.succeeded();
    }

private:
    bool hasRoomForObject() const { return plain.getArgCount() < maxCallArgs; }

    SavedArguments plain;
    SavedArguments bound; ///< empty where no object fits in front
};
} // namespace

bool ListenerSets::contains(const ListenerSet &set, const ReflectorPtr &handler)
{
    return std::find(set.begin(), set.end(), handler) != set.end();
}

void ListenerSets::add(const ReflectorPtr &messageType, ReflectorPtr handler)
{
    if (!messageType || !handler)
        return;
    Office &office = offices[messageType];
    if (!isFresh(*handler) && contains(office.handlers, handler))
        return;
    office.handlers.push_back(std::move(handler));
    ++office.registrations;
}

std::size_t ListenerSets::getHandlerCount(const ReflectorPtr &messageType) const
{
    auto found = offices.find(messageType);
    return found == offices.end() ? 0 : found->second.handlers.size();
}

ListenerSets::ListenerSet ListenerSets::takeSpare()
{
    if (spares.empty())
        return ListenerSet();
    ListenerSet spare = std::move(spares.back());
    spares.pop_back();
    return spare;
}

void ListenerSets::putBack(Office &office, unsigned registrationsBefore, ReflectorPtr &handler)
{
    // Only a registration during this delivery can have put the same handler in already.
    if (office.registrations != registrationsBefore && contains(office.handlers, handler))
        return;
    office.handlers.push_back(std::move(handler));
}

void ListenerSets::deliver(const ReflectorPtr &messageType, SavedArguments &payload)
{
    auto found = offices.find(messageType);
    if (found == offices.end() || found->second.handlers.empty() || payload.getArgCount() >= maxCallArgs)
        return;

    Office &office = found->second;
    ListenerSet delivered = takeSpare();
    delivered.swap(office.handlers);
    const unsigned registrationsBefore = office.registrations;

    PackedMessage message(messageType, payload);
    for (ReflectorPtr &handler : delivered)
    {
        const ScriptCall call(*handler, nullptr, "message handler");
        if (message.callHandler(*handler))
            putBack(office, registrationsBefore, handler);
    }
    delivered.clear();
    spares.push_back(std::move(delivered));
}
