// MapDataComponent: what a map derives from its size.
#pragma once

#include "engine/SimpleComponent.h"

#include "foundation/KVString.h"

class Entity;

/// Builds and keeps the children of a map that follow from its size, under the component key "mapData" of its root.
///
/// All of them have names that begin with ".MapData_": they are made anew rather than saved. The one made so far is
/// ".MapData_partitioningGrid", in which volumes are found.
class MapDataComponent : public SimpleComponent
{
    KV_REFLECTED(MapDataComponent)
public:
    MapDataComponent() = default;

    /// Fits the derived children to the map.
    void onLoadComplete() override;
    void doFrame() override {}

    /// Fits the derived children to the map's transform: its position is the centre, its scale the extent in metres.
    ///
    /// Makes those that are missing. A map whose scale was left at 1 says nothing of its size: its partitioning grid
    /// keeps the place and size that it has.
    void updateSize();
    /// The map's child of this name with a partitioning grid; made, with a transform, where it is missing.
    Handle<Entity> constructPartitioning(String name);

private:
    Handle<Entity> constructChild(const String &name);
};
