#include "engine/systems/SystemSystem.h"

#include "engine/levels/ObjectLayer.h"
#include "object/reflection/AutoReflector.h"
#include "object/python/PythonCalls.h"
#include "object/reflection/SavedArguments.h"

#include "foundation/Assertions.h"
#include "foundation/Logger.h"

Handle<SystemSystem> SystemSystem::instance;

namespace
{
/// Lets the scripts set the system's properties. Without an interpreter there is nobody to do so.
void configure(const Handle<System> &system, const String &className)
{
    if (!isPythonRunning())
        return;
    Variant ignored;
    if (!pythonCall("serialization", "configureSystem", SavedArguments::of(system), ignored))
    {
        KV_FATAL("Error while configuring system %s:\n\n%s", className.toCString(),
                 getCurrentPythonTraceback().toCString());
    }
}

bool isSystemClass(const ReflectorPtr &type)
{
    if (type && type->isSubclassOf(System::staticType))
        return true;
    KV_LOGF(Logger_::I_ERROR, "getSystem: %s is no class derived from System",
            type ? type->getQualifiedName().toCString() : "an empty reference");
    return false;
}
} // namespace

void SystemSystem::bootstrap()
{
    initAutoReflector();
    if (instance.isValid())
    {
        KV_ERROR("SystemSystem::bootstrap was called while the systems run.");
        return;
    }
    instance =
        checked_handle_cast<SystemSystem>(staticType->construct_a(*DefaultAllocatorGroup(), defaultAllocationCategory));
    auto self = instance.lookup();
    self->setName(staticType->getName());
    self->systems[staticType] = instance;
    self->initializationOrder.push_back(instance);
    connectObjectLayer();
    KV_LOG(Logger_::I_DEBUG, "System bootstrapping complete.");
}

void SystemSystem::shutdown()
{
    auto self = instance.lookup();
    if (!self)
    {
        KV_ERROR("SystemSystem::shutdown was called while no systems run.");
        return;
    }
    cremateDeadObjects();
    stopAll(self->initializationOrder);
    cremateDeadObjects();
    instance = Handle<SystemSystem>();
}

void SystemSystem::stopAll(InitializationOrderList &order)
{
    // By index: a system that stops may be the first to ask for another one, which then starts behind the walk.
    for (std::size_t i = order.size(); i-- > 0;)
    {
        auto system = order[i].lookup();
        if (!system)
            continue;
        KV_LOGF(Logger_::I_DEBUG, "Shutting down system %s", system->getType()->getName().toCString());
        system->systemShutdown();
        if (!system->isDying())
            system->murder();
    }
}

Handle<System> SystemSystem::getSystem(const ReflectorPtr &type)
{
    const auto found = systems.find(type);
    return found != systems.end() ? found->second : constructSystem(type);
}

Handle<System> SystemSystem::constructSystem(const ReflectorPtr &type)
{
    if (!isSystemClass(type))
        return Handle<System>();

    const String className = type->getName();
    KV_LOGF(Logger_::I_DEBUG, "Constructing system %s.", className.toCString());
    const Handle<System> h =
        handle_cast<System>(type->construct_a(*DefaultAllocatorGroup(), defaultAllocationCategory));
    auto system = h.lookup();
    if (!system)
    {
        KV_LOGF(Logger_::I_ERROR, "getSystem: class %s is abstract and cannot be constructed", className.toCString());
        return Handle<System>();
    }
    system->setName(className);
    system->setParent(getTypedHandle());
    currentlyInitializing.insert(type);
    for (const ReflectorPtr &dependency : system->systemDependencies())
        getSystem(dependency);

    KV_LOGF(Logger_::I_DEBUG, "Configuring system %s.", className.toCString());
    configure(h, className);
    KV_LOGF(Logger_::I_DEBUG, "Starting system %s.", className.toCString());
    system->systemStartup();

    for (const Updater &updater : system->getUpdaters())
        updaters.insert(updater);
    systems[type] = h;
    initializationOrder.push_back(h);
    currentlyInitializing.erase(type);
    return h;
}
