#include "ai/paths/PathManager.h"

Handle<AbstractComponent> PathManager::constructComponent(const ReflectorPtr &type)
{
    return constructDerived(type, AbstractComponent::staticType);
}
