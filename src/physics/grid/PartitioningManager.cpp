#include "physics/grid/PartitioningManager.h"

#include "engine/levels/Coordinator.h"
#include "engine/time/TimerNames.h"

void PartitioningManager::doFrame()
{
    const auto coordinator = getAncestorOfType<Coordinator>().lookup();
    if (!coordinator)
        return;
    const Seconds frameSeconds = coordinator->getTimer(TimerNames::master).getFrameTimeSeconds();
    // A trigger's script may add grids or take them away.
    for (auto next = components.begin(); next != components.end();)
    {
        const Handle<PartitioningGrid> h = *next;
        if (const auto grid = h.lookup())
        {
            grid->checkCollisions();
            grid->resolveCollisions(frameSeconds);
        }
        next = components.upper_bound(h);
    }
}

Handle<AbstractComponent> PartitioningManager::constructComponent(const ReflectorPtr &type)
{
    return constructDerived(type, PartitioningGrid::staticType);
}

void PartitioningManager::addComponentToManager(Handle<AbstractComponent> component, Handle<Entity>)
{
    const Handle<PartitioningGrid> grid = handle_cast<PartitioningGrid>(component);
    if (grid.isValid())
        components.insert(grid);
}

void PartitioningManager::removeComponentFromManager(Handle<AbstractComponent> component, Handle<Entity>)
{
    components.erase(unchecked_handle_cast<PartitioningGrid>(component));
}

void PartitioningManager::destroyComponent(Handle<AbstractComponent> component)
{
    const auto doomed = component.lookup();
    if (doomed && !doomed->isDying())
        doomed->murder();
}
