#include "engine/entities/NullManager.h"

Handle<AbstractComponent> NullManager::constructComponent(const ReflectorPtr &type)
{
    return constructDerived(type, AbstractComponent::staticType);
}
