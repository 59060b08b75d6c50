// PathManager: plans the paths of a level's creatures.
#pragma once

#include "engine/entities/AbstractManager.h"

/// Manager of the key "path". Makes its components; what it does with them in a frame is not there yet.
class PathManager : public AbstractManager
{
    KV_REFLECTED(PathManager)
public:
    PathManager() = default;

    void doFrame() override {}
    Handle<AbstractComponent> constructComponent(const ReflectorPtr &type) override;
    void addComponentToManager(Handle<AbstractComponent> component, Handle<Entity> entity) override {}
    void removeComponentFromManager(Handle<AbstractComponent> component, Handle<Entity> entity) override {}
    void destroyComponent(Handle<AbstractComponent> component) override {}
};
