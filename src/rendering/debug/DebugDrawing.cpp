#include "rendering/debug/DebugDrawing.h"

#include "rendering/debug/DebugLineGraphicsComponent.h"
#include "rendering/debug/DebugTextGraphicsComponent.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/levels/Coordinator.h"
#include "engine/debug/DebugCollector.h"
#include "engine/entities/Entity.h"
#include "engine/debug/GlobalConfigSystem.h"
#include "engine/entities/SimpleManager.h"

namespace
{

Handle<Entity> makeEntity(const char *name, const Handle<Object> &parent)
{
    const Handle<Entity> entity = construct<Entity>(defaultAllocationCategory);
    entity.lookup()->setName(SCS(name));
    entity.lookup()->setParent(parent);
    return entity;
}

/// Adds an entity that draws one part of what a collector shows.
template <class Drawer>
void addDrawer(const char *name, const Handle<Entity> &parent, SceneGraph::Layer layer,
               const Handle<DebugCollectorComponent> &collector)
{
    const Handle<Entity> entity = makeEntity(name, parent);
    const auto drawer =
        handle_cast<Drawer>(entity.lookup()->addComponent(ComponentKeys::graphics2, Drawer::staticType)).lookup();
    if (!drawer)
        return;
    drawer->setLayer(layer);
    drawer->setCollector(collector);
    drawer->onLoadComplete();
}

bool hasCollector(Coordinator &level, const String &key)
{
    const auto manager = handle_cast<SimpleManager>(level.getManager(key)).lookup();
    return manager && !manager->getComponents().empty();
}

} // namespace

void provideDebugDrawing(Coordinator &level)
{
    if (!getSystemDeref<GlobalConfigSystem>().getDebugDrawEnabled() ||
        hasCollector(level, ComponentKeys::debugDrawCollector))
        return;
    const Handle<Entity> root = makeEntity(".DebugDrawing", level.getHandle());
    const auto collector = handle_cast<DebugCollectorComponent>(
        root.lookup()->addComponent(ComponentKeys::debugDrawCollector, DebugCollectorComponent::staticType));
    addDrawer<DebugLineGraphicsComponent>("worldLines", root, SceneGraph::WORLD_DEBUG, collector);
    addDrawer<DebugLineGraphicsComponent>("screenLines", root, SceneGraph::SCREEN_DEBUG, collector);
    addDrawer<DebugTextGraphicsComponent>("texts", root, SceneGraph::SCREEN_DEBUG, collector);
}
