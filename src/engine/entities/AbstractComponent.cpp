#include "engine/entities/AbstractComponent.h"

#include "engine/entities/AbstractManager.h"
#include "engine/entities/Entity.h"

void AbstractComponent::onMurder()
{
    if (auto owner = manager.lookup())
        owner->removeComponentFromEntity(getTypedHandle());
}

Handle<AbstractComponent> AbstractComponent::getSibling(const String &key)
{
    auto entity = handle_cast<Entity>(getParent()).lookup();
    return entity ? entity->getComponent(key) : Handle<AbstractComponent>();
}

void AbstractComponent::setManager(Handle<AbstractManager> newManager)
{
    manager = newManager;
}
