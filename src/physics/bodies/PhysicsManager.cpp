#include "physics/bodies/PhysicsManager.h"

#include "physics/volumes/BoundingVolume.h"
#include "physics/volumes/VolumeTraits.h"
#include "physics/grid/Prefetch.h"
#include "physics/bodies/RigidBody.h"

#include "engine/levels/Coordinator.h"
#include "engine/time/TimerNames.h"
#include "engine/transforms/TransformComponent.h"

#include <algorithm>

void PhysicsManager::doFrame()
{
    const auto coordinator = getAncestorOfType<Coordinator>().lookup();
    if (!coordinator)
        return;
    const Seconds frameTime = coordinator->getTimer(TimerNames::master).getFrameTimeSeconds();
    for (std::size_t i = 0; i < components.size();)
    {
        const Handle<PhysicsComponent> h = components[i];
        prefetchBehind(i);
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

/// Has what the bodies behind one need loaded in time: first themselves, then what they refer to.
void PhysicsManager::prefetchBehind(std::size_t index) const
{
    constexpr std::size_t bodiesAhead = 16, siblingsAhead = 8;
    if (index + bodiesAhead >= components.size())
        return;
    prefetch(components[index + bodiesAhead].lookup().ptr, sizeof(RigidBody));
    if (const auto body = components[index + siblingsAhead].lookup())
    {
        prefetch(body->findVolume(), sizeof(BoundingVolume));
        prefetch(body->getTransformComponent().lookup().ptr, sizeof(TransformComponent));
    }
}

void PhysicsManager::moveBody(PhysicsComponent &body, Seconds frameTime)
{
    const BoundingVolume *const volume = body.findVolume();
    if (!volume || VolumeTraits::of(*volume).isStatic)
        return;
    const bool isShadow = VolumeTraits::of(*volume).isShadow;
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
