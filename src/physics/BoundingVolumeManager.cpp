#include "physics/BoundingVolumeManager.h"

#include "physics/BoundingVolume.h"
#include "physics/PartitioningGrid.h"

void BoundingVolumeManager::doFrame()
{
    const GridWalk walk;
    SimpleManager::doFrame();
}

Handle<AbstractComponent> BoundingVolumeManager::constructComponent(const ReflectorPtr &type)
{
    return constructDerived(type, BoundingVolume::staticType);
}
