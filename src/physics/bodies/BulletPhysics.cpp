#include "physics/bodies/BulletPhysics.h"

#include "engine/transforms/TransformComponent.h"

void BulletPhysics::doFrame(Seconds frameTime)
{
    lifetime -= static_cast<float>(frameTime);
    if (!(lifetime > 0.f))
        return destroy();
    RigidBody::doFrame(frameTime);
    const TransformComponent *const transform = findTransform();
    if (!transform)
        return;
    // A body's step never leaves it below height 0: one that would have gone there stands at 0 and still falls.
    const float height = transform->getPosition().y;
    if (!(height >= 0.f) || (height == 0.f && getVelocity().y < 0.f))
        destroy();
}

void BulletPhysics::destroy()
{
    const auto entity = getParent().lookup();
    if (entity && !entity->isDying())
        entity->murder();
}
