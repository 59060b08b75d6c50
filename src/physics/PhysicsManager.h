// PhysicsManager: moves the rigid bodies of a level.
#pragma once

#include "engine/AbstractManager.h"

/// Manager of the key "physics". Makes its components; what it does with them in a frame is not there yet.
class PhysicsManager : public AbstractManager
{
    KV_REFLECTED(PhysicsManager)
public:
    PhysicsManager() = default;

    void doFrame() override {}
    Handle<AbstractComponent> constructComponent(const ReflectorPtr &type) override;
    void addComponentToManager(Handle<AbstractComponent> component, Handle<Entity> entity) override {}
    void removeComponentFromManager(Handle<AbstractComponent> component, Handle<Entity> entity) override {}
    void destroyComponent(Handle<AbstractComponent> component) override {}
};
