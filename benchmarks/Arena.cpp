#include "Arena.h"

#include <cmath>

namespace
{
template <class T>
T *addComponent(const Handle<Entity> &entity, const char *key)
{
    return handle_cast<T>(entity.lookup()->addComponent(SCS(key), T::staticType)).lookup().ptr;
}
} // namespace

ArenaLevel::ArenaLevel(float side, float margin)
{
    level = construct<Coordinator>(defaultAllocationCategory);
    map = construct<MapRootEntity>(defaultAllocationCategory);
    map.lookup()->setParent(level);
    addComponent<TransformComponent>(map, "transform");
    const Handle<Entity> data = construct<Entity>(defaultAllocationCategory);
    data.lookup()->setName(SCS(".MapData_partitioningGrid"));
    data.lookup()->setParent(map);
    grid = addComponent<PartitioningGrid>(data, "partitioning");
    const float cells = std::ceil((side + 2 * margin) / grid->getCellSize());
    grid->setSize(Vec4(cells * grid->getCellSize(), 0, cells * grid->getCellSize(), 0));
    grid->updateSize();
}

ArenaLevel::~ArenaLevel()
{
    level.lookup()->murder();
    cremateDeadObjects();
}

ArenaBox ArenaLevel::add(BoundingVolume::VolumeType type, Vec4 place, Vec4 extents, float inverseMass)
{
    const Handle<Entity> entity = construct<Entity>(defaultAllocationCategory);
    entity.lookup()->setParent(map);
    ArenaBox box;
    box.transform = addComponent<TransformComponent>(entity, "transform");
    box.transform->setPosition(place);
    box.volume = addComponent<BoundingVolume>(entity, "boundingVolume");
    box.volume->setHitBox(extents);
    box.volume->setVolumeType(type);
    box.body = addComponent<RigidBody>(entity, "physics");
    box.body->setInverseMass(inverseMass);
    box.body->setRestitution(1);
    box.body->onLoadComplete();
    return box;
}

void ArenaLevel::addBoxes(const std::vector<bench::BoxState> &states, BoundingVolume::VolumeType type)
{
    for (const bench::BoxState &state : states)
    {
        boxes.push_back(add(type, Vec4(0, 0, 0, 1), Vec4(1, 1, 1, 0), 1));
        place(boxes.back(), state);
        boxes.back().body->setVelocity(state.vx, 0, state.vz);
        boxes.back().body->setAngularVelocity(Vec4(0, state.w, 0, 0));
        // Holds a box of 1 kg against the pull of the level.
        boxes.back().body->setAcceleration(0, 20, 0);
    }
}

void ArenaLevel::addWalls(float side)
{
    const float out = side / 2 + 0.5f;
    for (const float sign : {1.f, -1.f})
    {
        add(BoundingVolume::BV_WALL, Vec4(0, 0, sign * out, 1), Vec4(side + 2, 4, 1, 0), 0);
        add(BoundingVolume::BV_WALL, Vec4(sign * out, 0, 0, 1), Vec4(1, 4, side + 2, 0), 0);
    }
}

void ArenaLevel::place(const ArenaBox &box, const bench::BoxState &state)
{
    box.transform->setPosition(Vec4(state.x, 0, state.z, 1));
    box.transform->setOrientation(Quaternion(std::cos(state.yaw / 2), 0, std::sin(state.yaw / 2), 0));
}
