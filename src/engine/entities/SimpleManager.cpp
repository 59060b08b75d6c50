#include "engine/entities/SimpleManager.h"

#include "engine/systems/RunningMark.h"

#include "foundation/Logger.h"

#include <algorithm>

void SimpleManager::doFrame()
{
    // A walk within a walk leaves the arrays alone that the outer one reads.
    if (walking)
    {
        runBehind(Handle<SimpleComponent>());
        return;
    }
    const RunningMark mark(walking);
    refreshWalkOrder();
    const ObjectMap_ &objects = ObjectMap();
    SimpleComponent *const *const walked = walkOrder.objects.data();
    const std::size_t count = walkOrder.objects.size();
    for (std::size_t i = 0; i < count; ++i)
    {
        if (walked[i])
            walked[i]->doFrame();
        if (objects.getChangeCount() != walkOrder.objectChanges || setChanges != walkOrder.setChanges)
        {
            runBehind(walkOrder.handles[i]);
            return;
        }
    }
}

/// Runs the components behind this one straight from the set, which may change under the walk.
void SimpleManager::runBehind(Handle<SimpleComponent> last)
{
    for (auto next = components.upper_bound(last); next != components.end(); next = components.upper_bound(last))
    {
        last = *next;
        if (auto component = last.lookup())
            component->doFrame();
    }
}

void SimpleManager::refreshWalkOrder()
{
    const std::uint64_t objectChanges = ObjectMap().getChangeCount();
    if (walkOrder.setChanges != setChanges)
        walkOrder.handles.assign(components.begin(), components.end());
    else if (walkOrder.objectChanges == objectChanges)
        return;
    walkOrder.objects.resize(walkOrder.handles.size());
    std::transform(walkOrder.handles.begin(), walkOrder.handles.end(), walkOrder.objects.begin(),
                   [](const Handle<SimpleComponent> &h) { return h.lookup().ptr; });
    walkOrder.objectChanges = objectChanges;
    walkOrder.setChanges = setChanges;
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
    setChanges += components.insert(simple).second;
}

void SimpleManager::removeComponentFromManager(Handle<AbstractComponent> component, Handle<Entity>)
{
    setChanges += static_cast<std::uint32_t>(components.erase(unchecked_handle_cast<SimpleComponent>(component)));
}

void SimpleManager::destroyComponent(Handle<AbstractComponent> component)
{
    auto doomed = component.lookup();
    if (doomed && !doomed->isDying())
        doomed->murder();
}
