#include "engine/entities/ScriptComponent.h"

#include "object/reflection/SavedArguments.h"

#include "foundation/Logger.h"

namespace
{
/// Calls a callback, if there is one, and lets go of it if the call fails, so that one mistake is reported once.
void callOrDrop(ReflectorPtr &callback, const char *role, const Object &component)
{
    if (!callback)
        return;
    // A copy: the callback may set another one in its own place.
    const ReflectorPtr called = callback;
    const ErrorCode outcome = called->call().code;
    if (outcome.succeeded())
        return;
    auto owner = component.getParent().lookup();
    KV_LOGF(Logger_::I_ERROR,
            "ScriptComponent '%s' of '%s': the %s callback %s failed and is not called again until "
            "it is set anew: %s",
            component.getName().toCString(), owner ? owner->getName().toCString() : "nobody", role,
            called->getQualifiedName().toCString(), outcome.toString().toCString());
    if (callback == called)
        callback = nullptr;
}
} // namespace

void ScriptComponent::doFrame()
{
    callOrDrop(frameCallback, "frame", *this);
}

void ScriptComponent::onLoadComplete()
{
    callOrDrop(loadCallback, "load", *this);
}
