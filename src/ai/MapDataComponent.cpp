#include "ai/MapDataComponent.h"

#include "physics/PartitioningGrid.h"

#include "engine/Entity.h"
#include "engine/TransformComponent.h"

namespace
{
const String &partitioningEntity()
{
    static const String name = SCS(".MapData_partitioningGrid");
    return name;
}

const String &transformKey()
{
    static const String key = SCS("transform");
    return key;
}

const String &partitioningKey()
{
    static const String key = SCS("partitioning");
    return key;
}
} // namespace

void MapDataComponent::onLoadComplete()
{
    updateSize();
}

void MapDataComponent::updateSize()
{
    const auto transform = handle_cast<TransformComponent>(getSibling(transformKey())).lookup();
    const auto entity = constructPartitioning(partitioningEntity()).lookup();
    const auto grid = entity ? handle_cast<PartitioningGrid>(entity->getComponent(partitioningKey())).lookup()
                             : Handle<PartitioningGrid>::Result{};
    if (!transform || !grid)
        return;
    const Vec4 scale = transform->getScale();
    if (scale.x != 1.f || scale.z != 1.f)
    {
        grid->setPosition(transform->getPosition());
        grid->setSize(scale);
    }
    grid->updateSize();
}

Handle<Entity> MapDataComponent::constructPartitioning(String name)
{
    const Handle<Entity> child = constructChild(name);
    const auto entity = child.lookup();
    if (entity && !entity->getComponent(partitioningKey()).isValid())
        entity->addComponent(partitioningKey(), PartitioningGrid::staticType);
    return child;
}

/// The map's child of this name; made, with a transform, where it is missing.
Handle<Entity> MapDataComponent::constructChild(const String &name)
{
    const auto map = getParent().lookup();
    if (!map)
        return Handle<Entity>();
    const Handle<Entity> present = handle_cast<Entity>(map->getChild(name));
    if (present.isValid())
        return present;
    const Handle<Entity> made = construct<Entity>(defaultAllocationCategory);
    const auto entity = made.lookup();
    entity->setName(name);
    entity->setParent(getParent());
    entity->addComponent(transformKey(), TransformComponent::staticType);
    return made;
}
