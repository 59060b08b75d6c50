// BulletPhysics: a body with a limited time to live.
#pragma once

#include "physics/bodies/RigidBody.h"

/// A body that flies for some seconds and then is gone with its entity, under the component key "physics".
///
/// Falls as any body does: by 20 N, whatever its mass. Its volume is usually of the type BV_BULLET, which others test
/// as a line along the entity's z axis:
///
///     kaVel.addComponent(shot, 'boundingVolume', 'BoundingVolume', hitBox=kaVel.Vec4(0.02, 0.02, 0.4, 0),
///                        volumeType='BV_BULLET')
///     kaVel.addComponent(shot, 'physics', 'BulletPhysics', lifetime=3.0, mass=50.0,
///                        velocity=kaVel.Vec4(0, 0, 30, 0))
///     kaVel.finishLoad(shot)
class BulletPhysics : public RigidBody
{
    KV_REFLECTED(BulletPhysics)
public:
    BulletPhysics() = default;

    /// Finds the bullet's transform.
    void onLoadComplete() override { setTransformComponent(); }
    using RigidBody::doFrame;
    /// Lets the bullet fly on; when its time is up, or it has come down to height 0, its entity is murdered.
    ///
    /// A lifetime of 0 ends with the first frame.
    void doFrame(Seconds frameTime) override;

    /// Seconds left to live.
    float getLifetime() const { return lifetime; }
    /// Sets the seconds left to live; what is no number counts as 0.
    void setLifetime(float val) { lifetime = val; }

private:
    void destroy();

    float lifetime = 5.f; ///< seconds: a shot is out of every room by then
};
