// Arena: the boxes of the physics workloads as objects of the engine.
#pragma once

#include "bench_common.h"

#include "physics/volumes/BoundingVolume.h"
#include "physics/grid/PartitioningGrid.h"
#include "physics/bodies/RigidBody.h"

#include "engine/levels/Coordinator.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/transforms/TransformComponent.h"

#include <vector>

/// One box as its user holds it.
struct ArenaBox
{
    TransformComponent *transform;
    BoundingVolume *volume;
    RigidBody *body;
};

/// A level with one map, whose grid has cells of 2 m, and boxes of 1 m in it. It dies with its scope.
class ArenaLevel
{
public:
    /// @param side    of the square that the boxes stand in, metres
    /// @param margin  how far the grid reaches beyond it, metres
    ArenaLevel(float side, float margin);
    ~ArenaLevel();
    ArenaLevel(const ArenaLevel &) = delete;
    ArenaLevel &operator=(const ArenaLevel &) = delete;

    ArenaBox add(BoundingVolume::VolumeType type, Vec4 place, Vec4 extents, float inverseMass);
    void addBoxes(const std::vector<bench::BoxState> &states, BoundingVolume::VolumeType type);
    /// Four walls, 1 m thick and 4 m high, around the square.
    void addWalls(float side);
    /// Hands a box its place and yaw.
    static void place(const ArenaBox &box, const bench::BoxState &state);

    AbstractManager &manager(const char *key) { return *level.lookup()->getManager(SCS(key)).lookup(); }

    Handle<Coordinator> level;
    Handle<MapRootEntity> map;
    PartitioningGrid *grid = nullptr;
    std::vector<ArenaBox> boxes;
};
