#include "physics/PhysicsManager.h"

#include "physics/BoundingVolume.h"

#include "engine/Coordinator.h"

#include <algorithm>

void PhysicsManager::doFrame()
{
    static const String master = SCS("master");
    const auto coordinator = getAncestorOfType<Coordinator>().lookup();
    if (!coordinator)
        return;
    const Seconds frameTime = coordinator->getTimer(master).getFrameTimeSeconds();
    for (std::size_t i = 0; i < components.size();)
    {
        const Handle<PhysicsComponent> h = components[i];
        if (const auto body = h.lookup())
            moveBody(*body, frameTime);
        // A body's step may make bodies and take them away.
        if (i < components.size() && components[i] == h)
            ++i;
        else
            i = static_cast<std::size_t>(std::upper_bound(components.begin(), components.end(), h) -
                                         components.begin());
    }
}

void PhysicsManager::moveBody(PhysicsComponent &body, Seconds frameTime)
{
    const BoundingVolume *const volume = body.findVolume();
    if (!volume || volume->getVolumeType() == BoundingVolume::BV_WALL)
        return;
    const bool isShadow = volume->getVolumeType() == BoundingVolume::BV_SHADOW;
    body.addForce(Vec4(0.f, -GRAVITY_FORCE, 0.f, 0.f));
    body.doFrame(frameTime);
    if (!isShadow)
        return;
    if (const auto player = currentPlayer.lookup())
        player->addShadow(getHandle(&body));
}

Handle<AbstractComponent> PhysicsManager::constructComponent(const ReflectorPtr &type)
{
    return constructDerived(type, PhysicsComponent::staticType);
}

void PhysicsManager::addComponentToManager(Handle<AbstractComponent> component, Handle<Entity>)
{
    const Handle<PhysicsComponent> body = handle_cast<PhysicsComponent>(component);
    const auto place = std::lower_bound(components.begin(), components.end(), body);
    if (body.isValid() && (place == components.end() || *place != body))
        components.insert(place, body);
}

void PhysicsManager::removeComponentFromManager(Handle<AbstractComponent> component, Handle<Entity>)
{
    const Handle<PhysicsComponent> body = unchecked_handle_cast<PhysicsComponent>(component);
    const auto place = std::lower_bound(components.begin(), components.end(), body);
    if (place != components.end() && *place == body)
        components.erase(place);
}

void PhysicsManager::destroyComponent(Handle<AbstractComponent> component)
{
    const auto doomed = component.lookup();
    if (doomed && !doomed->isDying())
        doomed->murder();
}
