// RigidBody: a mass with orientation and inertia.
#pragma once

#include "physics/bodies/PhysicsComponent.h"

#include "foundation/Matrix4.h"
#include "foundation/Quaternion.h"

/// Physics object that represents an actual object in the world.
///
/// Forces turn it by their arms; contacts do not.
///
/// Contacts are resolved once a frame, each by what the ones before it have left of its depth, and know no friction. So
/// bodies rest on a wall with inverse mass 0 (the plane at height 0 stops a body and leaves it its speed), and what lies
/// on each other, or across two others, rests still but a little sunk into it: crates of 1 m that fall at 10 m/s2, three
/// high, by 4 cm, five high by 16 cm, ten high by more than half; with each crate twice as heavy as the one above, five
/// high, by 2 cm. Heaps in which a crate bears two tremble: three rows of them by 8 mm a frame, four by 3 cm. Balls rest
/// in one layer that covers half of the ground; heaped up, they squirm for good. Damping is what ends sliding: 0.1 for
/// crates.
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
    /// Sets the moments of inertia about the body's own axes, kg m2; what is not above 0 is logged as an error and
    /// changes nothing.
    void setInertiaTensor(Vec4 scale);
    /// Inverse inertia along the body's own axes.
    virtual const Matrix4 &getInverseInertia() const { return inverseInertia; }
    /// Inverse inertia in native space.
    virtual const Matrix4 &getInverseInertiaWorld() const
    {
        makeMatricesOfStep();
        return inertiaWorld;
    }
    /// The body's matrix as of its last step.
    const Matrix4 &getTransform() const
    {
        makeMatricesOfStep();
        return transformation;
    }

    /// Radians a second about the axes of native space.
    Vec4 getAngularVelocity() const { return angularVelocity; }
    void setAngularVelocity(Vec4 v) { angularVelocity = v; }
    /// Part of the angular velocity that is left after a second, 0..1.
    float getAngularDamping() const { return angularDamping; }
    /// Sets it; what lies outside of 0..1 is logged as an error and changes nothing.
    void setAngularDamping(float d);
    /// What turns the body in this frame, newton metres.
    Vec4 getNetTorque() const { return netTorque; }
    /// Sets the orientation of the body's transform.
    void setDirection(Quaternion q);

protected:
    void stop() override;

private:
    /// Where a step has left the body, until somebody asks for its matrices: most bodies are never asked.
    struct StepEnd
    {
        Vec4 position;
        Quaternion orientation;
        bool isPending = false; ///< the matrices are those of an earlier step
    };

    Vec4 angularAcceleration() const;
    void makeMatricesOfStep() const;
    void setTransformation(const Vec4 &position, const Quaternion &orientation) const;
    void turnInertia() const;

    mutable Matrix4 transformation; ///< native space
    Matrix4 inverseInertia;         ///< own axes
    mutable Matrix4 inertiaWorld;   ///< inverse inertia, native space
    Vec4 netTorque;                 ///< of this frame, newton metres
    Vec4 angularVelocity;           ///< radians a second
    float angularDamping = 1.f;     ///< angular velocity kept per second
    mutable StepEnd stepEnd;
};
