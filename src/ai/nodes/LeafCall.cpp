#include "ai/nodes/LeafCall.h"

#include "object/reflection/SavedArguments.h"
#include "object/tree/Object.h"

ErrorReturn<Variant> callLeaf(const ReflectorPtr &function, const Object &leaf)
{
    if (!function)
        return ErrorCode(ErrorCode::NOT_CALLABLE);
    const CremationHold hold;
    return function->call(leaf.getParent());
}

String describeLeafResult(const Variant &given)
{
    switch (given.getType())
    {
    case Variant::VT_INVALID:
        return SCS("nothing");
    case Variant::VT_INT64:
        return String::format("%lld", static_cast<long long>(given.as<std::int64_t>()));
    case Variant::VT_BOOL:
        return given.as<bool>() ? SCS("True") : SCS("False");
    case Variant::VT_STRING:
        return String::format("'%s'", given.as<String>().toCString());
    case Variant::VT_FLOAT:
        return String::format("%g", given.as<double>());
    default:
        return SCS("something of another kind");
    }
}
