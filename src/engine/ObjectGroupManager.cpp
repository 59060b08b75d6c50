#include "engine/ObjectGroupManager.h"

Handle<AbstractComponent> ObjectGroupManager::constructComponent(const ReflectorPtr &type)
{
    return constructDerived(type, AbstractComponent::staticType);
}
