// RigidBody: a mass with orientation and inertia.
#pragma once

#include "physics/PhysicsComponent.h"

#include "foundation/Matrix4.h"
#include "foundation/Quaternion.h"

/// Physics object that represents an actual object in the world.
///
/// Forces turn it by their arms; contacts do not.
class RigidBody : public PhysicsComponent
{
    KV_REFLECTED(RigidBody)
public:
    RigidBody() = default;

    void onLoadComplete() override;
    using PhysicsComponent::doFrame;
    /// Moves and turns the body: velocities by the forces and torques of this frame, then place and orientation by
    /// the new velocities. Never below height 0.
    void doFrame(Seconds frameTime) override;
    void clearAccumulator() override;

    using PhysicsComponent::addForce;
    /// Add a force at a specific point.
    /// @param force  newtons
    /// @param point  where it acts, native space, metres
    void addForce(Vec4 force, Vec4 point);
    /// Adds a torque to this frame's, newton metres.
    void addTorque(Vec4 torque) { netTorque += torque; }

    /// Takes the body's matrix from its transform: the rotation, with the position in the last column.
    void calculateTransformation();
    /// Turns the inverse inertia into native space.
    void calculateInertia();
    /// Both calculations in their order.
    void calculateMatrices();
    /// Sets the moments of inertia about the body's own axes, kg m2.
    void setInertiaTensor(Vec4 scale);
    /// Inverse inertia along the body's own axes.
    virtual const Matrix4 &getInverseInertia() const { return inverseInertia; }
    /// Inverse inertia in native space.
    virtual const Matrix4 &getInverseInertiaWorld() const { return inertiaWorld; }
    /// The body's matrix as of its last step.
    const Matrix4 &getTransform() const { return transformation; }

    /// Radians a second about the axes of native space.
    Vec4 getAngularVelocity() const { return angularVelocity; }
    void setAngularVelocity(Vec4 v) { angularVelocity = v; }
    /// Part of the angular velocity that is left after a second, 0..1.
    float getAngularDamping() const { return angularDamping; }
    void setAngularDamping(float d) { angularDamping = d; }
    /// Sets the orientation of the body's transform.
    void setDirection(Quaternion q);

private:
    Matrix4 transformation;     ///< of the last step, native space
    Matrix4 inverseInertia;     ///< own axes
    Matrix4 inertiaWorld;       ///< inverse inertia, native space
    Vec4 netTorque;             ///< of this frame, newton metres
    Vec4 angularVelocity;       ///< radians a second
    float angularDamping = 1.f; ///< angular velocity kept per second
};
