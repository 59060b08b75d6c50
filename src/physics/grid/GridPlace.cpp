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
    if (ownMap != previousMap)
    {
        const auto newGrid = PartitioningGrid::ofMap(ownMap).lookup();
        if (!newGrid)
            return;
        newGrid->addVolume(getHandle(&owner));
    }
    else if (place != previousPosition || turn != previousOrientation || hitBoxChanged ||
             standsInWrongList(belongsToStatic) || gridLayout != PartitioningGrid::getLayoutNumber())
    {
        if (const auto ownGrid = PartitioningGrid::ofMap(previousMap).lookup())
            ownGrid->moveVolume(getHandle(&owner), previousPosition, previousOrientation, belongsToStatic);
    }
    else if (newHeight != height || typeChanged)
    {
        if (const auto ownGrid = PartitioningGrid::ofMap(previousMap).lookup())
            ownGrid->refreshOutline(getHandle(&owner));
    }
    height = newHeight;
    typeChanged = hitBoxChanged = false;
    gridLayout = PartitioningGrid::getLayoutNumber();
    previousPosition = place;
    previousOrientation = turn;
    previousMap = ownMap;
}

/// Whether the type has changed so that the volume belongs among the static ones now, or no longer.
bool GridPlace::standsInWrongList(bool belongsToStatic) const
{
    return typeChanged && slot != VolumeListGrid::NO_SLOT && isStatic != belongsToStatic;
}
