#include "physics/volumes/BoundingVolumeManager.h"

#include "physics/volumes/BoundingVolume.h"
#include "physics/grid/PartitioningGrid.h"

void BoundingVolumeManager::doFrame()
{
    const GridWalk walk;
    SimpleManager::doFrame();
}

Handle<AbstractComponent> BoundingVolumeManager::constructComponent(const ReflectorPtr &type)
{
    return constructDerived(type, BoundingVolume::staticType);
}

ReflectorPtr BoundingVolumeManager::getComponentClass() const
{
    return BoundingVolume::staticType;
}
