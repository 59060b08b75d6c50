#include "physics/BoundingVolumeManager.h"

Handle<AbstractComponent> BoundingVolumeManager::constructComponent(const ReflectorPtr &type)
{
    return constructDerived(type, AbstractComponent::staticType);
}
