// Message: named things that are sent by calling them.
#pragma once

#include "object/tree/IReflectedThing.h"
#include "object/reflection/IReflectionProvider.h"
#include "object/reflection/SavedArguments.h"

#include <vector>

/// A message in flight, as an object receives it directly: its type and its payload.
class Message
{
public:
    Message(ReflectorPtr messageType, SavedArguments payload)
        : type(std::move(messageType)), arguments(std::move(payload))
    {
    }

    const ReflectorPtr &getType() const { return type; }
    const SavedArguments &getArguments() const { return arguments; }

private:
    ReflectorPtr type;
    SavedArguments arguments;
};

/// A kind of message. Calling it delivers the message through the post office to every registered handler.
///
/// Message types are file-level statics of the module that sends them and live as long as the process. A handler takes
/// the message type first and the payload behind it.
class MessageType final : public IReflectedThing
{
public:
    explicit MessageType(String name);

    String toString() const override { return name; }
    String getName() const override { return name; }
    /// "<Message>".
    String getQualifiedName() const override;
    Kind getKind() const override { return FUNCTION; }
    IReflectionProvider *getReflectionProvider() const override;
    ReflectorPtr getEnclosingScope() const override { return nullptr; }
    /// "<unknown>(0)".
    String getDefinitionLocation() const override;
    ReflectorPtr getMember(String) const override { return nullptr; }
    MemberList getMemberList() const override { return MemberList(); }
    PropertyList getPropertyList() const override;
    ErrorReturn<PropertyDesc> getProperty(const String &name) const override;
    ReflectorPtr getOverriddenThing() const override { return nullptr; }
    std::size_t getArgCount() const override { return 4; }
    ReflectorPtr getReturnType() const override { return nullptr; }
    ReflectorPtr getArgType(std::size_t) const override { return nullptr; }
    /// Sends the message with these arguments as its payload; always succeeds.
    ErrorReturn<Variant> do_call(SavedArguments &args) const override;
    Handle<Object> construct_a(IAllocator &allocator, AllocationCategory &category) const override;
    bool isSubclassOf(const ReflectorPtr &) const override { return false; }
    void acquireRef() const override {}
    void releaseRef() const override {}

    /// Every message type of the process, in the order of their construction.
    static const std::vector<const MessageType *> &getAll();

private:
    String name;
};

/// The provider that message types name as theirs; finds nothing, since messages are no types.
class MessageReflectionProvider final : public IReflectionProvider
{
public:
    ReflectorPtr getType(const String &) override { return nullptr; }
};

/// The message type of a name, for scripts that subscribe; null if no module declares one.
ReflectorPtr getMessageType(const String &name);
