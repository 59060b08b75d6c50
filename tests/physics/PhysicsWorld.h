// PhysicsWorld: a map with a partitioning grid, and boxes to put into it.
#pragma once

#include "physics/volumes/BoundingVolume.h"
#include "physics/grid/PartitioningGrid.h"
#include "physics/bodies/RigidBody.h"
#include "support/TestLevel.h"

#include <random>

/// A box with everything that takes part in collisions.
struct TestBox
{
    Handle<Entity> entity;
    TransformComponent *transform;
    BoundingVolume *volume;
    RigidBody *body;

    Handle<BoundingVolume> handle() const { return getHandle(volume); }
};

/// One map of 40 x 30 m about (3, 0, -2) with cells of 2 m: 20 columns, 15 rows.
class PhysicsWorld
{
public:
    PhysicsWorld()
    {
        map = level.map("map", Vec4(3, 0, -2, 1), Vec4(40, 10, 30, 0));
        const Handle<Entity> data = level.entity(".MapData_partitioningGrid", map);
        grid = level.component<PartitioningGrid>(data, "partitioning").lookup().ptr;
        grid->setPosition(Vec4(3, 0, -2, 1));
        grid->setSize(Vec4(40, 0, 30, 0));
        grid->updateSize();
    }

    /// A box of some type at a place, loaded, and in the grid once a frame has run.
    TestBox box(BoundingVolume::VolumeType type, Vec4 place, Vec4 hitBox = Vec4(1, 1, 1, 0))
    {
        TestBox made;
        made.entity = level.entity("box", map);
        made.transform = level.transform(made.entity, place).lookup().ptr;
        made.volume = level.component<BoundingVolume>(made.entity, "boundingVolume").lookup().ptr;
        made.volume->setHitBox(hitBox);
        made.volume->setVolumeType(type);
        made.body = level.component<RigidBody>(made.entity, "physics").lookup().ptr;
        made.body->onLoadComplete();
        return made;
    }

    /// Puts a box into the grid at once.
    TestBox inGrid(const TestBox &box)
    {
        grid->addVolume(box.handle());
        return box;
    }

    TestLevel level;
    Handle<MapRootEntity> map;
    PartitioningGrid *grid = nullptr;
};

/// Uniform numbers of a seed.
class Chance
{
public:
    explicit Chance(unsigned seed) : generator(seed) {}
    float operator()(float from, float to) { return std::uniform_real_distribution<float>(from, to)(generator); }
    int below(int count) { return std::uniform_int_distribution<int>(0, count - 1)(generator); }
    Quaternion turn()
    {
        Quaternion q((*this)(-1, 1), (*this)(-1, 1), (*this)(-1, 1), (*this)(-1, 1));
        q.normalize();
        return q;
    }

private:
    std::mt19937 generator;
};
