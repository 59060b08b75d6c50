#include "engine/levels/ObjectFromPattern.h"

#include "object/tree/PathBelow.h"
#include "object/tree/Object.h"
#include "object/python/PythonCalls.h"
#include "object/reflection/SavedArguments.h"

#include "foundation/Logger.h"
#include "foundation/Vector.h"

Handle<Object> buildFromPattern(const String &module, const String &pattern, const Handle<Object> &parent,
                                const String &name, const Vec4 *place)
{
    const auto above = parent.lookup();
    if (!above || !isPythonRunning())
        return Handle<Object>();
    const CremationHold hold; // methods of the caller's object are under way
    const Handle<Object> namesake = above->getChild(name);
    const SavedArguments args = place ? SavedArguments::of(module, pattern, parent, name, *place)
                                      : SavedArguments::of(module, pattern, parent, name);
    Variant result;
    const bool returned = pythonCall("kaVel", "build", args, result);
    const Handle<Object> built = result.get<Handle<Object>>().value;
    if (built.isValid())
        return built;
    KV_LOGF(Logger_::I_ERROR, "%s is not built below %s: the pattern %s of the module %s %s", name.toCString(),
            pathBelow(nullptr, *above).toCString(), pattern.toCString(), module.toCString(),
            returned ? "returned no object" : getCurrentPythonTraceback().toCString());
    const auto half = above->getChild(name).lookup();
    if (half && half->getHandle() != namesake)
        half->murder();
    return Handle<Object>();
}
