#include "engine/SimpleManager.h"

#include "foundation/Logger.h"

#include <algorithm>

void SimpleManager::doFrame()
{
    const ObjectMap_ &objects = ObjectMap();
    refreshWalkOrder();
    for (std::size_t i = 0; i < walkOrder.objects.size();)
    {
        const Handle<SimpleComponent> present = walkOrder.handles[i];
        if (SimpleComponent *component = walkOrder.objects[i])
            component->doFrame();
        ++i;
        if (walkOrder.stale || walkOrder.changeCount != objects.getChangeCount())
            i = resumeBehind(present);
    }
}

void SimpleManager::refreshWalkOrder()
{
    const std::uint64_t changeCount = ObjectMap().getChangeCount();
    if (!walkOrder.stale && walkOrder.changeCount == changeCount)
        return;
    if (walkOrder.stale)
        walkOrder.handles.assign(components.begin(), components.end());
    walkOrder.objects.resize(walkOrder.handles.size());
    std::transform(walkOrder.handles.begin(), walkOrder.handles.end(), walkOrder.objects.begin(),
                   [](const Handle<SimpleComponent> &h) { return h.lookup().ptr; });
    walkOrder.changeCount = changeCount;
    walkOrder.stale = false;
}

std::size_t SimpleManager::resumeBehind(const Handle<SimpleComponent> &last)
{
    refreshWalkOrder();
    const auto next = std::upper_bound(walkOrder.handles.begin(), walkOrder.handles.end(), last);
    return static_cast<std::size_t>(next - walkOrder.handles.begin());
}

Handle<AbstractComponent> SimpleManager::constructComponent(const ReflectorPtr &type)
{
    return constructDerived(type, SimpleComponent::staticType);
}

void SimpleManager::addComponentToManager(Handle<AbstractComponent> component, Handle<Entity>)
{
    const Handle<SimpleComponent> simple = handle_cast<SimpleComponent>(component);
    if (!simple.isValid())
    {
        KV_LOGF(Logger_::I_ERROR, "%s: %s is no live SimpleComponent and cannot be run", getName().toCString(),
                component.toString().toCString());
        return;
    }
    walkOrder.stale |= components.insert(simple).second;
}

void SimpleManager::removeComponentFromManager(Handle<AbstractComponent> component, Handle<Entity>)
{
    walkOrder.stale |= components.erase(unchecked_handle_cast<SimpleComponent>(component)) != 0;
}

void SimpleManager::destroyComponent(Handle<AbstractComponent> component)
{
    auto doomed = component.lookup();
    if (doomed && !doomed->isDying())
        doomed->murder();
}
