#include "engine/entities/ScriptComponent.h"

#include "object/python/ScriptCall.h"
#include "object/reflection/SavedArguments.h"

namespace
{
/// Calls a callback, if there is one, and lets go of it if the call fails, so that one mistake is reported once.
void callOrDrop(ReflectorPtr &callback, const char *role, const Object &component)
{
    if (!callback)
        return;
    // A copy: the callback may set another one in its own place.
    const ReflectorPtr called = callback;
    SavedArguments none(0);
    if (!callOrReport(called, none, component, role) && callback == called)
        callback = nullptr;
}
} // namespace

void ScriptComponent::doFrame()
{
    callOrDrop(frameCallback, "frame callback", *this);
}

void ScriptComponent::onLoadComplete()
{
    callOrDrop(loadCallback, "load callback", *this);
}
