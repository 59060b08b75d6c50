// NullManager: groups components under a key and does nothing with them.
#pragma once

#include "engine/entities/AbstractManager.h"

/// Manager that does nothing every frame.
///
/// Exists so that components can be found by its key while something else drives them; it keeps no set of them.
class NullManager : public AbstractManager
{
    KV_REFLECTED(NullManager)
public:
    NullManager() = default;

    void doFrame() override {}
    Handle<AbstractComponent> constructComponent(const ReflectorPtr &type) override;
    void addComponentToManager(Handle<AbstractComponent> component, Handle<Entity> entity) override {}
    void removeComponentFromManager(Handle<AbstractComponent> component, Handle<Entity> entity) override {}
    void destroyComponent(Handle<AbstractComponent> component) override {}
};
