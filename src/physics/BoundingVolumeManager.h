// BoundingVolumeManager: keeps the collision volumes of a level in their grids.
#pragma once

#include "engine/AbstractManager.h"

/// Manager of the key "boundingVolume". Makes its components; what it does with them in a frame is not there yet.
class BoundingVolumeManager : public AbstractManager
{
    KV_REFLECTED(BoundingVolumeManager)
public:
    BoundingVolumeManager() = default;

    void doFrame() override {}
    Handle<AbstractComponent> constructComponent(const ReflectorPtr &type) override;
    void addComponentToManager(Handle<AbstractComponent> component, Handle<Entity> entity) override {}
    void removeComponentFromManager(Handle<AbstractComponent> component, Handle<Entity> entity) override {}
    void destroyComponent(Handle<AbstractComponent> component) override {}
};
