// PartialFunctionApplication: a callable with its first arguments bound.
#pragma once

#include "object/reflection/SavedArguments.h"

/// A call whose first arguments are fixed: the way one method of one object becomes a callable.
///
/// Updaters and message handlers are such bound calls. Counted: it dies with its last ReflectorPtr. Describes itself
/// as the wrapped thing does. Bound and given arguments together must not exceed maxCallArgs; a call with more fails
/// with WRONG_ARGUMENT_COUNT.
class PartialFunctionApplication final : public IReflectedThing
{
public:
    template <class... Arguments>
    static ReflectorPtr construct(ReflectorPtr fn, const Arguments &...arguments)
    {
        return construct(std::move(fn), SavedArguments::of(arguments...));
    }
    static ReflectorPtr construct(ReflectorPtr fn, const SavedArguments &args);

    /// The wrapped thing.
    const ReflectorPtr &getFunction() const { return fn; }
    /// The bound arguments.
    const SavedArguments &getBoundArguments() const { return args; }
    /// Whether one reference alone is left, so that no container holds this besides the asker.
    bool hasOneReference() const { return refCount == 1; }

    String toString() const override;
    String getName() const override;
    String getQualifiedName() const override;
    Kind getKind() const override;
    IReflectionProvider *getReflectionProvider() const override;
    ReflectorPtr getEnclosingScope() const override;
    String getDefinitionLocation() const override;
    ReflectorPtr getMember(String name) const override;
    MemberList getMemberList() const override;
    PropertyList getPropertyList() const override;
    ErrorReturn<PropertyDesc> getProperty(const String &name) const override;
    ReflectorPtr getOverriddenThing() const override;
    /// The wrapped thing's count less the bound count.
    std::size_t getArgCount() const override;
    ReflectorPtr getReturnType() const override;
    ReflectorPtr getArgType(std::size_t arg) const override;
    ErrorReturn<Variant> do_call(SavedArguments &given) const override;
    Handle<Object> construct_a(IAllocator &allocator, AllocationCategory &category) const override;
    bool isSubclassOf(const ReflectorPtr &possibleSuperclass) const override;
    void acquireRef() const override { ++refCount; }
    void releaseRef() const override;

private:
    PartialFunctionApplication(const ReflectorPtr &fn, const SavedArguments &args);
    ~PartialFunctionApplication() override = default;

    ReflectorPtr fn;
    SavedArguments args;
    mutable int refCount = 0;
};
