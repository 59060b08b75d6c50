// BoundingVolume: the tests of pairs that yield contacts, all but that of two boxes.
#include "physics/volumes/BoundingVolume.h"

#include "physics/bodies/PhysicsComponent.h"
#include "physics/bodies/RigidCollision.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/transforms/TransformComponent.h"

#include <cmath>

namespace
{

/// Where a point outside of a box is nearest to it, or by which face a point inside is nearest to leave.
struct NearestOnBox
{
    Vec4 normal;    ///< from the box to the point, box space, length 1
    float distance; ///< metres; negative for a point inside

    NearestOnBox(const Vec4 &point, const Vec4 &extents)
    {
        Vec4 difference;
        float faceDistance = -INFINITY;
        int face = 0;
        for (int axis = 0; axis < 3; ++axis)
        {
            const float half = 0.5f * extents[axis];
            difference[axis] = point[axis] - std::fmax(std::fmin(point[axis], half), -half);
            if (std::fabs(point[axis]) - half > faceDistance)
            {
                faceDistance = std::fabs(point[axis]) - half;
                face = axis;
            }
        }
        distance = difference.magnitude();
        normal = difference;
        if (distance > 0.f)
            normal /= distance;
        else
        {
            distance = faceDistance;
            normal[face] = point[face] < 0.f ? -1.f : 1.f;
        }
    }
};

} // namespace

/// Appends a contact of two volumes whose normal points from the second to the first; false if a body is missing, or
/// the depth is none that a body could be moved by.
bool BoundingVolume::addContact(BoundingVolume &first, BoundingVolume &second, const Contact &contact,
                                std::vector<Collision *> &found)
{
    const PhysicsComponent *const one = first.findPhysics(), *const two = second.findPhysics();
    if (!one || !two || !std::isfinite(contact.penetration))
        return false;
    RigidCollision *const collision = Collision::make<RigidCollision>();
    if (!collision)
        return false;
    collision->volumes[0] = getHandle(&first);
    collision->volumes[1] = getHandle(&second);
    collision->restitution = one->getRestitution() * two->getRestitution();
    collision->penetration = contact.penetration;
    collision->contactNormal = contact.normal;
    collision->contactPos = contact.position;
    collision->noteDetection();
    found.push_back(collision);
    return true;
}

/// The contact of this sphere with what lies along a normal.
BoundingVolume::Contact BoundingVolume::sphereContact(const Vec4 &centre, const Vec4 &normal, float penetration) const
{
    // The place is measured from the mirrored centre; who reads it expects that.
    Vec4 place = normal * (0.5f * hitBox.x) - centre;
    place.w = 1.f;
    return Contact{place, normal, penetration};
}

bool BoundingVolume::sphereToSphere(Handle<BoundingVolume> other, std::vector<Collision *> &found)
{
    const auto second = other.lookup();
    const TransformComponent *const place = findTransform();
    const TransformComponent *const otherPlace = second ? second->findTransform() : nullptr;
    if (!place || !otherPlace)
        return false;
    const float r = 0.5f * (hitBox.x + second->hitBox.x);
    Vec4 d = place->getPosition() - otherPlace->getPosition();
    const float distance = d.magnitude();
    if (!(r * r > d.magnitudeSquared()))
        return false;
    if (distance > 0.f)
        d /= distance;
    else // two in one place part upwards, where there is room
        d = Vec4(0.f, 1.f, 0.f, 0.f);
    return addContact(*this, *second, sphereContact(place->getPosition(), d, std::fabs(r) - distance), found);
}

bool BoundingVolume::sphereToBox(Handle<BoundingVolume> box, std::vector<Collision *> &found)
{
    const auto second = box.lookup();
    const TransformComponent *const place = findTransform();
    const TransformComponent *const boxPlace = second ? second->findTransform() : nullptr;
    if (!place || !boxPlace)
        return false;
    const Matrix4 &rotation = second->rotationOf(*boxPlace);
    const float radius = 0.5f * hitBox.x;
    const NearestOnBox nearest((place->getPosition() - boxPlace->getPosition()) * rotation, second->hitBox);
    if (!(nearest.distance < radius))
        return false;
    return addContact(*this, *second,
                      sphereContact(place->getPosition(), rotation * nearest.normal, radius - nearest.distance), found);
}

bool BoundingVolume::boxToSphere(Handle<BoundingVolume> sphere, std::vector<Collision *> &found)
{
    const auto other = sphere.lookup();
    return other && other->sphereToBox(getHandle(this), found);
}

bool BoundingVolume::sphereToLineSegment(Handle<BoundingVolume> line, std::vector<Collision *> &found)
{
    const auto second = line.lookup();
    const TransformComponent *const place = findTransform();
    if (!second || !place || !second->findTransform())
        return false;
    Vec4 d = place->getPosition() - second->closestPointToLineSeg(place->getPosition());
    d.w = 0.f;
    const float distance = d.magnitude(), radius = 0.5f * hitBox.x;
    if (!(distance < radius))
        return false;
    if (distance > 0.f)
        d.normalize();
    else // right through the middle: upwards, where there is room
        d = Vec4(0.f, 1.f, 0.f, 0.f);
    return addContact(*this, *second, sphereContact(place->getPosition(), d, radius - distance), found);
}

bool BoundingVolume::boxToLineSegment(Handle<BoundingVolume> line, std::vector<Collision *> &found)
{
    const auto second = line.lookup();
    const TransformComponent *const linePlace = second ? second->findTransform() : nullptr;
    if (!linePlace || !findTransform())
        return false;
    const Vec4 along = second->rotationOf(*linePlace).getColumn(2) * second->hitBox.z;
    const RayCollision hit = boxToLineSegmentWithInfo(linePlace->getPosition() - along * 0.5f, along);
    if (!hit.collided)
        return false;
    // The face that the line enters by, or for a line that starts inside its way back, points at the line.
    Vec4 towardsBox = hit.normal.magnitudeSquared() > 0.f ? -hit.normal : along;
    towardsBox.normalize();
    return addContact(*this, *second, Contact{hit.point, towardsBox, (1.f - hit.t) * along.dot(towardsBox)}, found);
}

bool BoundingVolume::lineSegmentToSphere(Handle<BoundingVolume> sphere, std::vector<Collision *> &found)
{
    const auto other = sphere.lookup();
    return other && other->sphereToLineSegment(getHandle(this), found);
}

bool BoundingVolume::lineSegmentToBox(Handle<BoundingVolume> box, std::vector<Collision *> &found)
{
    const auto other = box.lookup();
    return other && other->boxToLineSegment(getHandle(this), found);
}

bool BoundingVolume::containerToBox(Handle<BoundingVolume> box, std::vector<Collision *> &found)
{
    if (!boxToBox(box, found))
        return false;
    dropLast(found);
    return true;
}

bool BoundingVolume::playerToLight(Handle<BoundingVolume> light, std::vector<Collision *> &found)
{
    const auto other = light.lookup();
    return other && other->lightToPlayer(getHandle(this), found);
}

/// Whether a light reaches the player, as far as its volume tells. Nothing is stopped or moved by light: there is no
/// contact, but each finds the other among its colliders.
bool BoundingVolume::lightToPlayer(Handle<BoundingVolume> player, std::vector<Collision *> &)
{
    const auto other = player.lookup();
    const TransformComponent *const place = findTransform();
    const TransformComponent *const playerPlace = other ? other->findTransform() : nullptr;
    if (!place || !playerPlace || !getSibling(ComponentKeys::graphics2).isValid() ||
        !other->getSibling(ComponentKeys::player).isValid())
        return false;
    const float reach = 0.5f * hitBox.x;
    return (playerPlace->getPosition() - place->getPosition()).magnitudeSquared() <= reach * reach;
}
