#include "physics/bodies/RigidCollision.h"

#include "physics/volumes/BoundingVolume.h"
#include "physics/bodies/PlayerPhysics.h"

#include "engine/transforms/TransformComponent.h"

#include "foundation/Finite.h"

namespace
{
/// Square of the contact speed below which nothing bounces, (m/s)2.
constexpr float RESTING_SPEED_SQUARED = 0.01f;
/// Part of what has brought two bodies that both give way closer to each other which their contact undoes at once.
///
/// With all of it crates that bounce a little throw each other about, with nothing of it those of a pile of ten do;
/// halfway between both come to rest.
constexpr float UNDONE_AT_ONCE = 0.5f;
} // namespace

void RigidCollision::noteDetection()
{
    const PhysicsComponent *const first = findBody(0), *const second = findBody(1);
    comesLast = !first || !second || first->getInverseMass() == 0.f || second->getInverseMass() == 0.f;
    foundApart = wayBetween();
}

void RigidCollision::resolve()
{
    generateContactMatrices();
    bringPenetrationUpToDate();
    if (penetration < 0.f)
        return;
    calculateRelPositions();
    setContactVelocity();
    calculateImpulse();
    resolvePenetration();
    resolveVelocities();
    tellPlayers();
}

/// Lets a player's body know what it touches, which may be what it stands on.
void RigidCollision::tellPlayers() const
{
    for (int i = 0; i < 2; ++i)
    {
        const auto volume = volumes[i].lookup();
        if (!volume || volume->getVolumeType() != BoundingVolume::BV_PLAYER)
            continue;
        if (auto *const player = dynamic_cast<PlayerPhysics *>(volume->findPhysics()))
            tellPlayer(*player, i == 0 ? contactNormal : -contactNormal, findBody(1 - i));
    }
}

void RigidCollision::tellPlayer(PlayerPhysics &player, const Vec4 &normal, const PhysicsComponent *other)
{
    player.touch(normal);
    if (other && other->getInverseMass() > 0.f)
        player.meet(normal, other->getVelocity());
}

PhysicsComponent *RigidCollision::findBody(int index) const
{
    const auto volume = volumes[index].lookup();
    return volume ? volume->findPhysics() : nullptr;
}

/// From the second body's place to the first one's; one without a transform stands at the origin.
Vec4 RigidCollision::wayBetween() const
{
    Vec4 places[2];
    for (int i = 0; i < 2; ++i)
    {
        const auto volume = volumes[i].lookup();
        if (const TransformComponent *const transform = volume ? volume->findTransform() : nullptr)
            places[i] = transform->getPosition();
    }
    return places[0] - places[1];
}

/// Takes off what the bodies have come apart along the normal since the detection, and adds what they have come closer:
/// all of it against what nothing moves, else the part that is undone at once.
void RigidCollision::bringPenetrationUpToDate()
{
    const float apart = (wayBetween() - foundApart).dot(contactNormal);
    penetration -= apart > 0.f || comesLast ? apart : UNDONE_AT_ONCE * apart;
}

void RigidCollision::generateContactMatrices()
{
    contactNormal.normalize();
    const bool vertical = contactNormal.y == 1.f || contactNormal.y == -1.f;
    Vec4 tangent = vertical ? Vec4(1.f, 0.f, 0.f, 0.f) : Vec4(0.f, 1.f, 0.f, 0.f), bitangent;
    makeOrthonormal(contactNormal, tangent, bitangent);
    contactToWorld.basis(contactNormal, tangent, bitangent);
    worldToContact = contactToWorld.transpose();
}

void RigidCollision::calculateRelPositions()
{
    for (int i = 0; i < 2; ++i)
    {
        const auto volume = volumes[i].lookup();
        const TransformComponent *const transform = volume ? volume->findTransform() : nullptr;
        relPosition[i] = transform ? contactPos - transform->getPosition() : contactPos;
    }
}

void RigidCollision::setContactVelocity()
{
    const RigidBody *const first = dynamic_cast<const RigidBody *>(findBody(0));
    const RigidBody *const second = dynamic_cast<const RigidBody *>(findBody(1));
    contactVelocity = worldToContact * (first ? first->getVelocity() : Vec4()) -
                      worldToContact * (second ? second->getVelocity() : Vec4());
}

void RigidCollision::calculateImpulse()
{
    const PhysicsComponent *const first = findBody(0), *const second = findBody(1);
    const float inverseMasses = (first ? first->getInverseMass() : 0.f) + (second ? second->getInverseMass() : 0.f);
    const float accelerated = (first ? first->getAccLastFrame().dot(contactNormal) : 0.f) -
                              (second ? second->getAccLastFrame().dot(contactNormal) : 0.f);
    if (contactVelocity.magnitudeSquared() < RESTING_SPEED_SQUARED)
        restitution = 0.f;
    impulse = Vec4();
    if (inverseMasses != 0.f) // what nothing moves takes no impulse
        impulse.x = (-contactVelocity.x - (contactVelocity.x - accelerated) * restitution) / inverseMasses;
    impulse = contactToWorld * impulse;
}

void RigidCollision::resolvePenetration()
{
    PhysicsComponent *const bodies[2] = {findBody(0), findBody(1)};
    float inverseMasses = 0.f;
    for (const PhysicsComponent *body : bodies)
        inverseMasses += body ? body->getInverseMass() : 0.f;
    if (inverseMasses == 0.f)
        return;
    const float perInverseMass = penetration / inverseMasses;
    for (int i = 0; i < 2; ++i)
    {
        const auto volume = volumes[i].lookup();
        TransformComponent *const transform = volume ? volume->findTransform() : nullptr;
        if (!bodies[i] || !transform)
            continue;
        linearMovement[i] = (i == 0 ? perInverseMass : -perInverseMass) * bodies[i]->getInverseMass();
        const Vec4 moved = transform->getPosition() + contactNormal * linearMovement[i];
        if (isFinite(moved)) // what is wrong with one body stays with it
            transform->setPosition(moved);
    }
}

void RigidCollision::resolveVelocities()
{
    if (!(separatingVelocity() < 0.f))
        return;
    for (int i = 0; i < 2; ++i)
    {
        const auto volume = volumes[i].lookup();
        if (PhysicsComponent *const body = findBody(i))
        {
            const bool slides = volume->getVolumeType() == BoundingVolume::BV_PLAYER;
            const Vec4 changed =
                slides ? alongSurface(body->getVelocity()) : body->getVelocity() + impulse * body->getInverseMass();
            if (isFinite(changed))
                body->setVelocity(changed);
        }
        impulse.negate();
    }
}

/// What is left of a velocity that may not have a part along the normal.
Vec4 RigidCollision::alongSurface(const Vec4 &velocity) const
{
    Vec4 sliding = worldToContact * velocity;
    sliding.x = 0.f;
    return contactToWorld * sliding;
}

float RigidCollision::separatingVelocity() const
{
    const PhysicsComponent *const first = findBody(0), *const second = findBody(1);
    const Vec4 apart = (first ? first->getVelocity() : Vec4()) - (second ? second->getVelocity() : Vec4());
    return apart.dot(contactNormal);
}
