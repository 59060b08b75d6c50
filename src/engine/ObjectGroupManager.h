// ObjectGroupManager: keeps the named groups of a level's objects.
#pragma once

#include "engine/AbstractManager.h"

/// Manager of the key "objectGroup". Makes its components; what it does with them in a frame is not there yet.
class ObjectGroupManager : public AbstractManager
{
    KV_REFLECTED(ObjectGroupManager)
public:
    ObjectGroupManager() = default;

    void doFrame() override {}
    Handle<AbstractComponent> constructComponent(const ReflectorPtr &type) override;
    void addComponentToManager(Handle<AbstractComponent> component, Handle<Entity> entity) override {}
    void removeComponentFromManager(Handle<AbstractComponent> component, Handle<Entity> entity) override {}
    void destroyComponent(Handle<AbstractComponent> component) override {}
};
