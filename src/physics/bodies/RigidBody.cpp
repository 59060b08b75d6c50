#include "physics/bodies/RigidBody.h"

#include "engine/transforms/TransformComponent.h"

#include "foundation/Finite.h"

void RigidBody::onLoadComplete()
{
    PhysicsComponent::onLoadComplete();
    calculateMatrices();
}

void RigidBody::doFrame(Seconds frameTime)
{
    TransformComponent *const transform = findTransform();
    if (!transform)
        return;
    const float seconds = static_cast<float>(frameTime);
    const float kept = keptOver(damping, frameTime);
    const Vec4 gained = totalAcceleration() * seconds;
    accLastFrame = gained * kept;
    velocity = (velocity + gained) * kept;
    angularVelocity = (angularVelocity + angularAcceleration() * seconds) * keptOver(angularDamping, frameTime);

    Vec4 position = transform->getPosition() + velocity * seconds;
    Quaternion orientation = transform->getOrientation();
    orientation.update(angularVelocity, seconds);
    position.y = position.y < 0.f ? 0.f : position.y;
    orientation.normalize();
    if (!isFinite(position) || !isFinite(velocity) || !isFinite(orientation))
        return stop();
    transform->setPosition(position);
    transform->setOrientation(orientation);

    stepEnd = StepEnd{position, orientation, true};
    clearAccumulator();
}

void RigidBody::stop()
{
    PhysicsComponent::stop();
    angularVelocity = Vec4();
}

/// What this frame's torque does, radians a second squared.
Vec4 RigidBody::angularAcceleration() const
{
    if (netTorque.magnitudeSquared() == 0.f)
        return Vec4();
    makeMatricesOfStep();
    return inertiaWorld * netTorque;
}

void RigidBody::clearAccumulator()
{
    PhysicsComponent::clearAccumulator();
    netTorque = Vec4();
}

void RigidBody::addForce(Vec4 force, Vec4 point)
{
    addForce(force);
    if (TransformComponent *const transform = findTransform())
        addTorque((point - transform->getPosition()).cross(force));
}

void RigidBody::calculateTransformation()
{
    makeMatricesOfStep();
    if (TransformComponent *const transform = findTransform())
        setTransformation(transform->getPosition(), transform->getOrientation());
}

void RigidBody::calculateInertia()
{
    makeMatricesOfStep();
    turnInertia();
}

void RigidBody::calculateMatrices()
{
    calculateTransformation();
    calculateInertia();
}

void RigidBody::makeMatricesOfStep() const
{
    if (!stepEnd.isPending)
        return;
    stepEnd.isPending = false;
    setTransformation(stepEnd.position, stepEnd.orientation);
    turnInertia();
}

void RigidBody::setTransformation(const Vec4 &position, const Quaternion &orientation) const
{
    transformation = orientation.generateRotation();
    for (int row = 0; row < 3; ++row)
        transformation[row][3] = position[row];
}

void RigidBody::turnInertia() const
{
    Matrix4 rotation = transformation;
    for (int row = 0; row < 4; ++row)
        rotation[row][3] = 0.f;
    inertiaWorld = rotation * inverseInertia * rotation.transpose();
}

void RigidBody::setAngularDamping(float d)
{
    if (isWithin("angularDamping", d, 0.f, 1.f))
        angularDamping = d;
}

void RigidBody::setInertiaTensor(Vec4 scale)
{
    constexpr float least = 1e-12f, most = 1e12f; // beyond them the inverse runs out of numbers
    for (int axis = 0; axis < 3; ++axis)
        if (!isWithin("moment of inertia", scale[axis], least, most))
            return;
    makeMatricesOfStep();
    Matrix4 tensor;
    tensor.setInertiaTensorCoeffs(scale.x, scale.y, scale.z);
    inverseInertia = tensor.inverse();
}

void RigidBody::setDirection(Quaternion q)
{
    if (TransformComponent *const transform = findTransform())
        transform->setOrientation(q);
}
