// PartitioningManager: detects and resolves the contacts of a level.
#pragma once

#include "engine/AbstractManager.h"

/// Manager of the key "partitioning". Makes its components; what it does with them in a frame is not there yet.
class PartitioningManager : public AbstractManager
{
    KV_REFLECTED(PartitioningManager)
public:
    PartitioningManager() = default;

    void doFrame() override {}
    Handle<AbstractComponent> constructComponent(const ReflectorPtr &type) override;
    void addComponentToManager(Handle<AbstractComponent> component, Handle<Entity> entity) override {}
    void removeComponentFromManager(Handle<AbstractComponent> component, Handle<Entity> entity) override {}
    void destroyComponent(Handle<AbstractComponent> component) override {}
};
