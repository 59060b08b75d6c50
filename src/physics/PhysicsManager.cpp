#include "physics/PhysicsManager.h"

Handle<AbstractComponent> PhysicsManager::constructComponent(const ReflectorPtr &type)
{
    return constructDerived(type, AbstractComponent::staticType);
}
