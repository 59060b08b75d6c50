#include "engine/entities/AbstractManager.h"

#include "engine/entities/Entity.h"
#include "engine/time/TimeSystem.h"

#include "foundation/Logger.h"

Handle<AbstractComponent> AbstractManager::addComponentToEntity(const ReflectorPtr &type, Handle<Entity> entity)
{
    auto owner = entity.lookup();
    if (!owner)
    {
        KV_LOGF(Logger_::I_ERROR, "%s: a component was to be added to an entity that no longer lives",
                getName().toCString());
        return Handle<AbstractComponent>();
    }
    const Handle<AbstractComponent> h = constructComponent(type);
    auto component = h.lookup();
    if (!component)
        return h;
    component->setName(key);
    component->setParent(entity);
    component->setManager(getTypedHandle());
    owner->addComponent(key, h);
    addComponentToManager(h, entity);
    return h;
}

Handle<AbstractComponent> AbstractManager::addComponentToEntity(Handle<Entity> entity)
{
    return addComponentToEntity(getComponentClass(), entity);
}

void AbstractManager::removeComponentFromEntity(Handle<AbstractComponent> component)
{
    auto removed = component.lookup();
    if (!removed)
        return;
    removeComponentFromManager(component, handle_cast<Entity>(removed->getParent()));
    removed->setParent(Handle<Object>());
    removed->murder();
}

double AbstractManager::getFrameTimeMS() const
{
    return getSystemDeref<TimeSystem>().toSeconds(frameTime) * 1000.0;
}

Handle<AbstractComponent> AbstractManager::constructDerived(const ReflectorPtr &type, const ReflectorPtr &base) const
{
    if (type && type->isSubclassOf(base))
    {
        const Handle<Object> h = type->construct_a(*DefaultAllocatorGroup(), defaultAllocationCategory);
        if (h.isValid())
            return unchecked_handle_cast<AbstractComponent>(h);
        KV_LOGF(Logger_::I_ERROR, "%s: class %s is abstract and cannot be made a component", getName().toCString(),
                type->getName().toCString());
        return Handle<AbstractComponent>();
    }
    if (type && base)
        KV_LOGF(Logger_::I_ERROR, "%s: class %s is no %s, which is what the key '%s' takes", getName().toCString(),
                type->getQualifiedName().toCString(), base->getName().toCString(), key.toCString());
    else
        KV_LOGF(Logger_::I_ERROR, "%s: no component class was named, and the key '%s' has none of its own",
                getName().toCString(), key.toCString());
    return Handle<AbstractComponent>();
}
