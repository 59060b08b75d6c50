#include "object/tree/IReflectedThing.h"

#include "object/tree/Handle.h"
#include "object/reflection/PropertyDesc.h"

#include "foundation/Allocators.h"

Handle<Object> IReflectedThing::construct(AllocationCategory &category) const
{
    return construct_a(*DefaultAllocatorGroup(), category);
}

PropertyDesc IReflectedThing::makeProperty(String name, ReflectorPtr getter, ReflectorPtr setter)
{
    return PropertyDesc(std::move(name), std::move(getter), std::move(setter));
}

String PropertyDesc::toString() const
{
    const ReflectorPtr &function = getter ? getter : setter;
    const ReflectorPtr scope = function ? function->getEnclosingScope() : nullptr;
    return String::format("<property %s of %s>", name.toCString(),
                          scope ? scope->getQualifiedName().toCString() : "nothing");
}
