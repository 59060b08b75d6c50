#include "object/reflection/PartialFunctionApplication.h"

#include "object/reflection/PropertyDesc.h"

#include "foundation/Allocators.h"
#include "foundation/Assertions.h"
#include "foundation/Logger.h"

namespace
{
AllocationCategory &boundCallCategory()
{
    static auto *category = new AllocationCategory("bound calls");
    return *category;
}
} // namespace

PartialFunctionApplication::PartialFunctionApplication(const ReflectorPtr &fn_, const SavedArguments &args_)
    : IReflectedThing(BOUND_CALL), fn(fn_), args(args_)
{
}

ReflectorPtr PartialFunctionApplication::construct(ReflectorPtr fn, const SavedArguments &args)
{
    KV_CRITICAL_ASSERT(fn, "a partial application needs something to call");
    void *block = ballocate(DefaultAllocatorGroup(), boundCallCategory(), sizeof(PartialFunctionApplication));
    return ReflectorPtr(new (block) PartialFunctionApplication(fn, args));
}

void PartialFunctionApplication::releaseRef() const
{
    if (--refCount > 0)
        return;
    auto *self = const_cast<PartialFunctionApplication *>(this);
    self->~PartialFunctionApplication();
    deallocate(self);
}

ErrorReturn<Variant> PartialFunctionApplication::do_call(SavedArguments &given) const
{
    const std::size_t bound = args.getArgCount();
    const std::size_t total = bound + given.getArgCount();
    if (total > maxCallArgs)
    {
        KV_LOGF(Logger_::I_ERROR, "%s: %zu bound and %zu given arguments are more than the %zu that a call takes",
                fn->getQualifiedName().toCString(), bound, given.getArgCount(), maxCallArgs);
        return ErrorCode(ErrorCode::CALL_FAILURE, WRONG_ARGUMENT_COUNT);
    }

    // The call may release the last reference to this bound call.
    const ReflectorPtr target = fn;
    SavedArguments merged(total);
    for (std::size_t i = 0; i < bound; ++i)
        merged[i] = args[i];
    for (std::size_t i = bound; i < total; ++i)
        merged[i] = given[i - bound];
    return target->do_call(merged);
}

String PartialFunctionApplication::toString() const
{
    return String::format("<Partial application of %s>", fn->toString().toCString());
}

String PartialFunctionApplication::getName() const
{
    return fn->getName();
}

String PartialFunctionApplication::getQualifiedName() const
{
    return toString();
}

IReflectedThing::Kind PartialFunctionApplication::getKind() const
{
    return fn->getKind();
}

IReflectionProvider *PartialFunctionApplication::getReflectionProvider() const
{
    return fn->getReflectionProvider();
}

ReflectorPtr PartialFunctionApplication::getEnclosingScope() const
{
    return fn->getEnclosingScope();
}

String PartialFunctionApplication::getDefinitionLocation() const
{
    return fn->getDefinitionLocation();
}

ReflectorPtr PartialFunctionApplication::getMember(String name) const
{
    return fn->getMember(name);
}

IReflectedThing::MemberList PartialFunctionApplication::getMemberList() const
{
    return fn->getMemberList();
}

IReflectedThing::PropertyList PartialFunctionApplication::getPropertyList() const
{
    return fn->getPropertyList();
}

ErrorReturn<PropertyDesc> PartialFunctionApplication::getProperty(const String &name) const
{
    return fn->getProperty(name);
}

ReflectorPtr PartialFunctionApplication::getOverriddenThing() const
{
    return fn->getOverriddenThing();
}

std::size_t PartialFunctionApplication::getArgCount() const
{
    const std::size_t all = fn->getArgCount();
    return all > args.getArgCount() ? all - args.getArgCount() : 0;
}

ReflectorPtr PartialFunctionApplication::getReturnType() const
{
    return fn->getReturnType();
}

ReflectorPtr PartialFunctionApplication::getArgType(std::size_t arg) const
{
    return fn->getArgType(arg);
}

Handle<Object> PartialFunctionApplication::construct_a(IAllocator &allocator, AllocationCategory &category) const
{
    return fn->construct_a(allocator, category);
}

bool PartialFunctionApplication::isSubclassOf(const ReflectorPtr &possibleSuperclass) const
{
    return fn->isSubclassOf(possibleSuperclass);
}
