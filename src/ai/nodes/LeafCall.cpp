#include "ai/nodes/LeafCall.h"

#include "object/python/ScriptCall.h"
#include "object/reflection/DoxyElement.h"
#include "object/reflection/SavedArguments.h"
#include "object/tree/Object.h"

ErrorReturn<Variant> callLeaf(const ReflectorPtr &function, const Object &leaf, String &cause)
{
    ErrorReturn<Variant> given = ErrorCode(ErrorCode::NOT_CALLABLE);
    if (function)
    {
        const CremationHold hold;
        const ScriptCall call(*function, cause);
        given = function->call(leaf.getParent());
    }
    if (!given.succeeded() && cause.empty())
        cause = given.code.toString();
    return given;
}

String describeNeed(const ReflectorPtr &function)
{
    const auto *const native = dynamic_cast<const DoxyElement *>(function.get());
    return String::format("its creature lacks what it goes by, so that it comes to nothing. %s",
                          native ? native->getBriefDescription() : "");
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
