#include "physics/grid/GridPlace.h"

#include "physics/volumes/BoundingVolume.h"
#include "physics/grid/PartitioningGrid.h"

#include "engine/levels/MapRootEntity.h"
#include "engine/transforms/TransformComponent.h"

void GridPlace::follow(BoundingVolume &owner, const TransformComponent &transform, const Handle<MapRootEntity> &ownMap,
                       bool belongsToStatic)
{
    Vec4 place = transform.getPosition();
    const float newHeight = place.y;
    place.y = 0.f;
    const Quaternion turn = transform.getOrientation();
    if (ownMap != map)
    {
        const auto newGrid = PartitioningGrid::ofMap(ownMap).lookup();
        if (!newGrid)
            return;
        newGrid->addVolume(getHandle(&owner));
    }
    else if (place != position || turn != orientation || hitBoxChanged || standsInWrongList(belongsToStatic) ||
             gridLayout != PartitioningGrid::getLayoutNumber())
    {
        if (const auto ownGrid = PartitioningGrid::ofMap(map).lookup())
            ownGrid->moveVolume(getHandle(&owner), position, orientation, belongsToStatic);
    }
    else if (newHeight != height || typeChanged)
    {
        if (const auto ownGrid = PartitioningGrid::ofMap(map).lookup())
            ownGrid->refreshOutline(getHandle(&owner));
    }
    height = newHeight;
    typeChanged = hitBoxChanged = false;
    gridLayout = PartitioningGrid::getLayoutNumber();
    position = place;
    orientation = turn;
    map = ownMap;
}

/// Whether the type has changed so that the volume belongs among the static ones now, or no longer.
bool GridPlace::standsInWrongList(bool belongsToStatic) const
{
    return typeChanged && slot != VolumeListGrid::NO_SLOT && isStatic != belongsToStatic;
}
