#include "physics/RigidBody.h"

#include "engine/TransformComponent.h"

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
    angularVelocity = (angularVelocity + inertiaWorld * netTorque * seconds) * keptOver(angularDamping, frameTime);

    Vec4 position = transform->getPosition() + velocity * seconds;
    Quaternion orientation = transform->getOrientation();
    orientation.update(angularVelocity, seconds);
    position.y = position.y < 0.f ? 0.f : position.y;
    orientation.normalize();
    transform->setPosition(position);
    transform->setOrientation(orientation);

    calculateMatrices();
    clearAccumulator();
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
    if (TransformComponent *const transform = findTransform())
    {
        transformation = transform->getOrientation().generateRotation();
        const Vec4 position = transform->getPosition();
        for (int row = 0; row < 3; ++row)
            transformation[row][3] = position[row];
    }
}

void RigidBody::calculateInertia()
{
    Matrix4 rotation = transformation;
    for (int row = 0; row < 4; ++row)
        rotation[row][3] = 0.f;
    inertiaWorld = rotation * inverseInertia * rotation.transpose();
}

void RigidBody::calculateMatrices()
{
    calculateTransformation();
    calculateInertia();
}

void RigidBody::setInertiaTensor(Vec4 scale)
{
    Matrix4 tensor;
    tensor.setInertiaTensorCoeffs(scale.x, scale.y, scale.z);
    inverseInertia = tensor.inverse();
}

void RigidBody::setDirection(Quaternion q)
{
    if (TransformComponent *const transform = findTransform())
        transform->setOrientation(q);
}
