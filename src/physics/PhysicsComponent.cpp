#include "physics/PhysicsComponent.h"

#include "physics/BoundingVolume.h"

#include "engine/Coordinator.h"
#include "engine/TransformComponent.h"

#include "foundation/Logger.h"

void PhysicsComponent::onLoadComplete()
{
    setTransformComponent();
}

void PhysicsComponent::setTransformComponent()
{
    static const String transformKey = SCS("transform");
    transComp = handle_cast<TransformComponent>(getSibling(transformKey));
}

void PhysicsComponent::doFrame()
{
    static const String master = SCS("master");
    if (const auto coordinator = getAncestorOfType<Coordinator>().lookup())
        doFrame(coordinator->getTimer(master).getFrameTimeSeconds());
}

void PhysicsComponent::doFrame(Seconds frameTime)
{
    TransformComponent *const transform = findTransform();
    if (!transform)
        return;
    const float seconds = static_cast<float>(frameTime);
    const float kept = keptOver(damping, frameTime);
    Vec4 position = transform->getPosition() + velocity * seconds;
    position.y = position.y < 0.f ? 0.f : position.y;
    transform->setPosition(position);
    const Vec4 gained = totalAcceleration() * seconds;
    accLastFrame = gained * kept;
    velocity = (velocity + gained) * kept;
    clearAccumulator();
}

void PhysicsComponent::setMass(float m)
{
    if (m != 0.f)
        inverseMass = 1.f / m;
    else
        KV_LOGF(Logger_::I_ERROR,
                "%s of %s: a mass of 0 cannot be moved by forces; set inverseMass to 0 for a body that nothing moves.",
                getName().toCString(), getParent().toString().toCString());
}

float PhysicsComponent::keptOver(float keptPerSecond, Seconds time)
{
    return keptPerSecond == 1.f ? 1.f : static_cast<float>(std::pow(static_cast<double>(keptPerSecond), time));
}

TransformComponent *PhysicsComponent::findTransform() const
{
    return transComp.lookup().ptr;
}

void PhysicsComponent::onHierarchyChange(Handle<Object>, Handle<Object>)
{
    objectChanges = 0;
}

BoundingVolume *PhysicsComponent::findVolume()
{
    static const String volumeKey = SCS("boundingVolume");
    const std::uint64_t changes = ObjectMap().getChangeCount();
    if (objectChanges != changes)
    {
        volume = handle_cast<BoundingVolume>(getSibling(volumeKey)).lookup().ptr;
        objectChanges = changes;
    }
    return volume;
}
