#include "tools/bars/Subscriptions.h"

#include "engine/levels/BranchPostOffice.h"
#include "object/messages/PostOffice.h"
#include "object/reflection/PartialFunctionApplication.h"
#include "object/tree/WellKnownPaths.h"

#include <algorithm>

namespace
{
/// Whether a handler is a method of an object.
bool isBoundTo(const ReflectorPtr &handler, const Handle<Object> &object)
{
    if (!handler->isBoundCall())
        return false;
    const SavedArguments &bound = static_cast<const PartialFunctionApplication &>(*handler).getBoundArguments();
    return bound.getArgCount() > 0 && bound[0].getType() == Variant::VT_HANDLE &&
           bound[0].as<Handle<Object>>() == object;
}

/// The method's own name: a bound call tells of its arguments, too.
String methodOf(const IReflectedThing &handler)
{
    return static_cast<const PartialFunctionApplication &>(handler).getFunction()->getQualifiedName();
}

void gather(const ListenerSets &listeners, const Handle<Object> &object, std::vector<String> &out)
{
    listeners.forEach(
        [&](const ReflectorPtr &type, const ReflectorPtr &handler)
        {
            if (isBoundTo(handler, object))
                out.push_back(String::format("%s: %s", type->getName().toCString(), methodOf(*handler).toCString()));
        });
}
} // namespace

std::vector<String> subscriptionsOf(const Handle<Object> &object)
{
    std::vector<String> found;
    gather(PostOffice().getListeners(), object, found);
    const Handle<Object> level = getObjectByPath(WellKnownPaths::currentLevel);
    if (const auto live = level.lookup())
    {
        const auto branch = handle_cast<BranchPostOffice>(live->getDescendantByPath(WellKnownPaths::branchPostOffice));
        if (const auto office = branch.lookup())
            gather(office->getListeners(), object, found);
    }
    std::sort(found.begin(), found.end());
    return found;
}
