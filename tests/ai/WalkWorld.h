// WalkWorld: a map of cells with walls, crates and doors in it, and creatures that walk.
#pragma once

#include "PathWorld.h"

#include "ai/paths/PathFollower.h"
#include "ai/paths/Walkways.h"
#include "physics/bodies/RigidBody.h"
#include "physics/doors/DoorPhysics.h"
#include "physics/doors/SlidingDoorPhysics.h"
#include "physics/grid/PartitioningGrid.h"
#include "physics/volumes/BoundingVolume.h"

/// A map as PathWorld has it, with a grid of volumes; the floor lies at height 0.
class WalkWorld : public PathWorld
{
public:
    WalkWorld(int cols, int rows) : PathWorld(cols, rows)
    {
        const Handle<Entity> data = level.entity(".MapData_partitioningGrid", map);
        PartitioningGrid &grid = *level.component<PartitioningGrid>(data, "partitioning").lookup();
        grid.setSize(Vec4(static_cast<float>(cols), 0, static_cast<float>(rows), 0));
        grid.updateSize();
        const float width = static_cast<float>(cols), depth = static_cast<float>(rows);
        const Handle<Entity> floor = body("floor", BoundingVolume::BV_WALL, -width, width, -depth, depth, 1.f);
        level.component<RigidBody>(floor, "physics").lookup()->setInverseMass(0.f);
        componentOf<TransformComponent>(floor, ComponentKeys::transform)->setPosition(Vec4(0, -0.5f, 0, 1));
    }

    /// A body of a type about the middle of a rectangle of the plane.
    Handle<Entity> body(const char *name, BoundingVolume::VolumeType type, float x0, float x1, float z0, float z1,
                        float height = 2.f)
    {
        const Handle<Entity> entity = level.entity(name, map);
        level.transform(entity, Vec4((x0 + x1) / 2, height / 2, (z0 + z1) / 2, 1));
        BoundingVolume &volume = *level.component<BoundingVolume>(entity, "boundingVolume").lookup();
        volume.setHitBox(Vec4(x1 - x0, height, z1 - z0, 0));
        volume.setVolumeType(type);
        return entity;
    }
    Handle<Entity> wall(float x0, float x1, float z0, float z1)
    {
        const Handle<Entity> made = body("wall", BoundingVolume::BV_WALL, x0, x1, z0, z1);
        level.component<RigidBody>(made, "physics").lookup()->setInverseMass(0.f);
        return made;
    }
    Handle<Entity> crate(float x, float z, float size = 0.9f)
    {
        const float half = size / 2;
        const Handle<Entity> made = body("crate", BoundingVolume::BV_BOX, x - half, x + half, z - half, z + half, size);
        level.component<RigidBody>(made, "physics").lookup()->onLoadComplete();
        return made;
    }
    /// A wall along z = 0 with a doorway of a metre about x.
    void divide(float x)
    {
        const float half = static_cast<float>(main->getGridCols()) / 2 + 1;
        wall(-half, x - 0.5f, -0.1f, 0.1f);
        wall(x + 0.5f, half, -0.1f, 0.1f);
    }
    /// A closed leaf in that doorway.
    template <class Physics>
    Physics &door(const char *name, float x)
    {
        const Handle<Entity> leaf = body(name, BoundingVolume::BV_DOOR, x - 0.48f, x + 0.48f, -0.04f, 0.04f);
        Physics &door = *level.component<Physics>(leaf, "physics").lookup();
        if constexpr (std::is_same_v<Physics, DoorPhysics>)
            door.setPivotPosition(Vec4(-0.48f, 0, 0, 0));
        door.onLoadComplete();
        return door;
    }
    /// A creature of some radius that walks.
    PathFollower &walker(float x, float z, float radius = 0.3f)
    {
        const Handle<Entity> entity =
            body("walker", BoundingVolume::BV_BOX, x - radius, x + radius, z - radius, z + radius, 1.8f);
        level.component<RigidBody>(entity, "physics").lookup()->onLoadComplete();
        return *level.component<PathFollower>(entity, "pathFollower").lookup();
    }
    static Vec4 placeOf(const PathFollower &follower)
    {
        return componentOf<TransformComponent>(follower.getParent(), ComponentKeys::transform)->getPosition();
    }
    static void move(const Handle<Entity> &entity, float x, float z)
    {
        TransformComponent &transform = *componentOf<TransformComponent>(entity, ComponentKeys::transform);
        transform.setPosition(Vec4(x, transform.getPosition().y, z, 1));
    }
    Walkways &ways() { return *Walkways::ofMap(map); }
    void frames(int count)
    {
        for (int i = 0; i < count; ++i)
            level.frame();
    }
    /// Runs until a follower has arrived or given up; the frames that it took.
    int settle(PathFollower &follower, int most = 4000)
    {
        int count = 0;
        for (; follower.getUnderWay() && count < most; ++count)
            level.frame();
        return count;
    }
    /// Whether a path between two cells is found for a creature of some radius.
    bool isJoined(int x, int z, int toX, int toZ, float radius = 0.3f)
    {
        const Vec4 place = main->getCellWorldCoords(x, z);
        PathFollower &follower = walker(place.x, place.z, radius);
        const Handle<Entity> entity = handle_cast<Entity>(follower.getParent());
        level.component<PathComponent>(entity, "path");
        ask(entity, toX, toZ);
        PathWorld::settle(entity);
        const bool found = path(entity).requestStatus() == PS_Succeeded;
        entity.lookup()->murder();
        frames(1);
        return found;
    }
};
