// MapRootEntity: the root of one loaded map.
#pragma once

#include "engine/entities/Entity.h"

/// Root of one loaded map: its children live in the space of its transform.
class MapRootEntity : public Entity
{
    KV_REFLECTED(MapRootEntity)
public:
    MapRootEntity() = default;

    /// Name under which the map was loaded.
    String getMapName() const { return mapName; }
    /// Stores the name under which the map was loaded.
    void setMapName(String val) { mapName = val; }

private:
    String mapName;
};
