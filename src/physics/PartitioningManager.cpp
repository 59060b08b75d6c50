#include "physics/PartitioningManager.h"

Handle<AbstractComponent> PartitioningManager::constructComponent(const ReflectorPtr &type)
{
    return constructDerived(type, AbstractComponent::staticType);
}
