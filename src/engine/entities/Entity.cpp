#include "engine/entities/Entity.h"

#include "engine/levels/Coordinator.h"
#include "engine/systems/NameSuggestion.h"
#include "object/reflection/Reflection.h"

#include "foundation/Logger.h"

namespace
{
void logRefusal(const Entity &entity, const String &managerName, const String &cause)
{
    KV_LOGF(Logger_::I_ERROR, "addComponent to '%s' under the key '%s': %s", entity.getName().toCString(),
            managerName.toCString(), cause.toCString());
}

/// The manager that makes an entity's components of one key; null, with the cause logged, if there can be none.
Handle<AbstractManager>::Result findManager(Entity &entity, const String &managerName)
{
    auto coordinator = entity.getAncestorOfType<Coordinator>().lookup();
    if (coordinator)
        return coordinator->getManager(managerName).lookup();
    logRefusal(entity, managerName, SCS("the entity is in no level; give it a parent below a Coordinator first"));
    return {};
}
} // namespace

Handle<AbstractComponent> Entity::getComponent(const String &managerName)
{
    // A few names that are mostly interned: comparing what tells them apart is faster than comparing letters.
    for (const auto &[key, component] : components)
        if (key.getIdentity() == managerName.getIdentity())
            return component;
    const auto found = components.find(managerName);
    return found != components.end() ? found->second : Handle<AbstractComponent>();
}

Handle<AbstractComponent> Entity::addComponent(const String &managerName, const String &componentClassName)
{
    if (const ReflectorPtr type = Reflection().getType(componentClassName))
        return addComponent(managerName, type);
    logRefusal(*this, managerName, describeUnknownClass(componentClassName));
    return Handle<AbstractComponent>();
}

Handle<AbstractComponent> Entity::addComponent(const String &managerName, const ReflectorPtr &componentType)
{
    auto manager = findManager(*this, managerName);
    return manager ? manager->addComponentToEntity(componentType, getTypedHandle()) : Handle<AbstractComponent>();
}

Handle<AbstractComponent> Entity::addComponentRP(const String &managerName, const ReflectorPtr &componentType)
{
    return addComponent(managerName, componentType);
}

Handle<AbstractComponent> Entity::addComponent(const String &managerName)
{
    auto manager = findManager(*this, managerName);
    return manager ? manager->addComponentToEntity(getTypedHandle()) : Handle<AbstractComponent>();
}

void Entity::addComponent(const String &name, Handle<AbstractComponent> h)
{
    components[name] = h;
}
