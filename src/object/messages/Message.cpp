#include "object/messages/Message.h"

#include "object/messages/PostOffice.h"
#include "object/reflection/PropertyDesc.h"

namespace
{
std::vector<const MessageType *> &allMessageTypes()
{
    static auto *types = new std::vector<const MessageType *>;
    return *types;
}
} // namespace

MessageType::MessageType(String name_) : name(std::move(name_))
{
    allMessageTypes().push_back(this);
}

const std::vector<const MessageType *> &MessageType::getAll()
{
    return allMessageTypes();
}

String MessageType::getQualifiedName() const
{
    return SCS("<Message>");
}

IReflectionProvider *MessageType::getReflectionProvider() const
{
    static auto *provider = new MessageReflectionProvider;
    return provider;
}

String MessageType::getDefinitionLocation() const
{
    return SCS("<unknown>(0)");
}

IReflectedThing::PropertyList MessageType::getPropertyList() const
{
    return PropertyList();
}

ErrorReturn<PropertyDesc> MessageType::getProperty(const String &) const
{
    return ErrorCode(ErrorCode::NO_SUCH_PROPERTY);
}

ErrorReturn<Variant> MessageType::do_call(SavedArguments &args) const
{
    PostOffice().submitMessage(ReflectorPtr(this), args);
    return Variant();
}

Handle<Object> MessageType::construct_a(IAllocator &, AllocationCategory &) const
{
    return Handle<Object>();
}

ReflectorPtr getMessageType(const String &name)
{
    for (const MessageType *type : MessageType::getAll())
    {
        if (type->getName() == name)
            return ReflectorPtr(type);
    }
    return nullptr;
}
