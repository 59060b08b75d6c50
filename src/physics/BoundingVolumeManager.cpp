#include "physics/BoundingVolumeManager.h"

#include "physics/BoundingVolume.h"

Handle<AbstractComponent> BoundingVolumeManager::constructComponent(const ReflectorPtr &type)
{
    return constructDerived(type, BoundingVolume::staticType);
}
