// IReflectedThing: one interface for whatever can be looked at, constructed or called by name.
#pragma once

#include "object/tree/ReflectorPtr.h"

#include "foundation/ErrorCode.h"
#include "foundation/IStringizable.h"
#include "foundation/KVString.h"

#include <cstdint>
#include <vector>

class AllocationCategory;
class IAllocator;
class IReflectionProvider;
class Object;
class PropertyDesc;
class SavedArguments;
class Variant;
template <class T>
class Handle;

/// A class, function, enum, script object, message type or bound call, described and callable by name.
///
/// Callers never ask what stands behind it: a manager's frame step, a script callback and a behaviour function are
/// all called through the same `call`.
class IReflectedThing : public IStringizable
{
public:
    /// What a record describes.
    ///
    /// The last four share the numbers of the first four: a struct reads as a class, a typedef as a define, a
    /// variable as a directory, a page as an enum. Every test of a kind rests on this numbering.
    enum Kind
    {
        CLASS = 0,
        DEFINE = 1,
        DIR = 2,
        ENUM = 3,
        ENUMVALUE = 4,
        FILE = 5,
        FRIEND = 6,
        FUNCTION = 7,
        NAMESPACE = 8,
        STRUCT = 0,
        TYPEDEF = 1,
        VARIABLE = 2,
        PAGE = 3
    };

    /// Why a callable thing could not be called.
    enum CallFailureType
    {
        THIS_POINTER_ARG_NOT_A_HANDLE = 0,
        BAD_THIS_POINTER = 1,
        WRONG_ARGUMENT_TYPE = 2,
        WRONG_ARGUMENT_COUNT = 3
    };

    /// How a member function is dispatched.
    enum VirtualMode
    {
        NON_VIRTUAL = 0,
        VIRTUAL = 1,
        PURE_VIRTUAL = 2
    };

    /// Access of a member in its class.
    enum ProtectionMode
    {
        PUBLIC = 0,
        PROTECTED = 1,
        PRIVATE = 2
    };

    using MemberList = std::vector<ReflectorPtr>;
    using PropertyList = std::vector<PropertyDesc>;

    /// Text that names the thing in messages.
    virtual String toString() const = 0;
    /// Short name.
    virtual String getName() const = 0;
    /// Name with its scopes, as "Object::getName".
    virtual String getQualifiedName() const = 0;
    virtual Kind getKind() const = 0;
    /// The provider that knows this thing; null where there is none.
    virtual IReflectionProvider *getReflectionProvider() const = 0;
    /// The class, namespace or file it is declared in; null at the top.
    virtual ReflectorPtr getEnclosingScope() const = 0;
    /// Declaring file and line in the form file(line).
    virtual String getDefinitionLocation() const = 0;
    /// Member of this name, own or inherited; null if there is none.
    virtual ReflectorPtr getMember(String name) const = 0;
    virtual MemberList getMemberList() const = 0;
    virtual PropertyList getPropertyList() const = 0;
    /// Property of this name, or NO_SUCH_PROPERTY.
    virtual ErrorReturn<PropertyDesc> getProperty(const String &name) const = 0;
    /// Number of an enumerator; 0 for anything else.
    virtual std::int64_t getEnumValue() const { return 0; }
    virtual ~IReflectedThing() = default;
    /// The base class's function that this one overrides; null if there is none.
    virtual ReflectorPtr getOverriddenThing() const = 0;
    /// Count of arguments, with the this-argument of a member function.
    virtual std::size_t getArgCount() const = 0;
    /// The reflected class or enum of the result; null where the type is not reflected.
    virtual ReflectorPtr getReturnType() const = 0;
    /// The reflected class or enum of an argument; null where the type is not reflected.
    virtual ReflectorPtr getArgType(std::size_t arg) const = 0;
    /// Calls with arguments that are packed already; see `call`.
    virtual ErrorReturn<Variant> do_call(SavedArguments &args) const = 0;
    /// Makes an object of this class; an invalid handle where the thing is no concrete class.
    virtual Handle<Object> construct_a(IAllocator &allocator, AllocationCategory &category) const = 0;
    /// Whether this class is the other or derives from it.
    virtual bool isSubclassOf(const ReflectorPtr &possibleSuperclass) const = 0;
    virtual void acquireRef() const = 0;
    virtual void releaseRef() const = 0;

    /// Calls with up to five arguments, the object's handle first for a member function.
    ///
    /// A call that cannot be made gives CALL_FAILURE with a CallFailureType, a thing that cannot be called gives
    /// NOT_CALLABLE, and a function that itself returns a failure passes it on. Allocates nothing.
    template <class... Arguments>
    ErrorReturn<Variant> call(const Arguments &...arguments) const;

    /// Makes an object of this class with the default allocator group; invalid where that is impossible.
    Handle<Object> construct(AllocationCategory &category) const;

    /// Describes a property by hand.
    static PropertyDesc makeProperty(String name, ReflectorPtr getter = nullptr, ReflectorPtr setter = nullptr);

    bool isCounted() const { return counting != TABLE; }
    /// Whether this is a PartialFunctionApplication; lets the post office pack a payload once for all of them.
    bool isBoundCall() const { return counting == BOUND_CALL; }

protected:
    /// How references to this thing are kept.
    enum Counting : std::uint8_t
    {
        TABLE,     ///< lives as long as the process, never counted
        COUNTED,   ///< dies with its last reference
        BOUND_CALL ///< counted, and a PartialFunctionApplication
    };

    constexpr explicit IReflectedThing(Counting mode = TABLE) : counting(mode) {}

private:
    Counting counting;
};

inline void ReflectorPtr::acquire() const
{
    if (irt && irt->isCounted())
        irt->acquireRef();
}

inline void ReflectorPtr::release() const
{
    if (irt->isCounted())
        irt->releaseRef();
}

inline ReflectorPtr::ReflectorPtr(const IReflectedThing *thing) : irt(thing)
{
    acquire();
}

inline ReflectorPtr::ReflectorPtr(const ReflectorPtr &rhs) : irt(rhs.irt)
{
    acquire();
}

inline ReflectorPtr &ReflectorPtr::operator=(const ReflectorPtr &rhs)
{
    ReflectorPtr copy(rhs);
    std::swap(irt, copy.irt);
    return *this;
}
