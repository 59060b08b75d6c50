#include "engine/systems/System.h"

#include "engine/systems/NameSuggestion.h"
#include "engine/systems/SystemSystem.h"
#include "object/reflection/Reflection.h"

#include "foundation/Assertions.h"
#include "foundation/Logger.h"

#include <cstdlib>

UpdaterList System::getUpdaters()
{
    return {};
}

void System::onHierarchyChange(Handle<Object> reparentedObject, Handle<Object> formerParent)
{
    Object::onHierarchyChange(reparentedObject, formerParent);
    const Handle<Object> root = SystemSystem::getInstance();
    const Handle<Object> place = getHandle() == root ? Handle<Object>() : root;
    if (reparentedObject != getHandle() || getParent() == place || isDying())
        return;
    KV_LOGF(Logger_::I_ERROR, "setParent: the system %s cannot be moved; systems outlive every level",
            getName().toCString());
    setParent(place);
}

Handle<System> getSystem(const ReflectorPtr &type)
{
    auto systems = SystemSystem::getInstance().lookup();
    if (systems)
        return systems->getSystem(type);
    KV_LOGF(Logger_::I_ERROR,
            "getSystem: '%s' was asked for while no systems run: they live from bootstrap to shutdown",
            type ? type->getName().toCString() : "<no class>");
    return Handle<System>();
}

Handle<System> getSystem(String type)
{
    const ReflectorPtr systemClass = Reflection().getType(type);
    if (systemClass)
        return getSystem(systemClass);
    KV_LOGF(Logger_::I_ERROR, "getSystem: %s", describeUnknownClass(type).toCString());
    return Handle<System>();
}

Handle<System> getSystemN(String type)
{
    return getSystem(type);
}

void failMissingSystem(const ReflectorPtr &type)
{
    KV_FATAL("The system %s cannot be had; the log tells why.", type->getName().toCString());
    std::abort();
}
