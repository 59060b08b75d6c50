#include "physics/volumes/PairTests.h"

#include "physics/volumes/BoxContacts.h"
#include "physics/volumes/Collision.h"
#include "physics/volumes/LitByVolumes.h"
#include "physics/volumes/VolumeContact.h"
#include "physics/volumes/VolumeTraits.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/Entity.h"
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

typedef BoundingVolume::DetectCollision Test;
typedef std::vector<Collision *> Found;

bool neverCollide(BoundingVolume &, BoundingVolume &, Found &)
{
    return false;
}

/// The contact of a sphere with what lies along a normal.
VolumeContact sphereContact(const Vec4 &centre, float radius, const Vec4 &normal, float penetration)
{
    // The place is measured from the mirrored centre; who reads it expects that.
    Vec4 place = normal * radius - centre;
    place.w = 1.f;
    return VolumeContact{place, normal, penetration};
}

bool sphereToSphere(BoundingVolume &one, BoundingVolume &other, Found &found)
{
    const TransformComponent *const place = one.findTransform(), *const otherPlace = other.findTransform();
    if (!place || !otherPlace)
        return false;
    const float r = 0.5f * (one.getHitBox().x + other.getHitBox().x);
    Vec4 d = place->getPosition() - otherPlace->getPosition();
    const float distance = d.magnitude();
    if (!(r * r > d.magnitudeSquared()))
        return false;
    if (distance > 0.f)
        d /= distance;
    else // two in one place part upwards, where there is room
        d = Vec4(0.f, 1.f, 0.f, 0.f);
    return addContact(one, other,
                      sphereContact(place->getPosition(), 0.5f * one.getHitBox().x, d, std::fabs(r) - distance), found);
}

bool sphereToBox(BoundingVolume &sphere, BoundingVolume &box, Found &found)
{
    const TransformComponent *const place = sphere.findTransform(), *const boxPlace = box.findTransform();
    if (!place || !boxPlace)
        return false;
    const PlacedShape shape = box.shapeAt(*boxPlace);
    const float radius = 0.5f * sphere.getHitBox().x;
    const NearestOnBox nearest((place->getPosition() - shape.centre) * shape.rotation, shape.extents);
    if (!(nearest.distance < radius))
        return false;
    return addContact(
        sphere, box,
        sphereContact(place->getPosition(), radius, shape.rotation * nearest.normal, radius - nearest.distance), found);
}

bool boxToSphere(BoundingVolume &box, BoundingVolume &sphere, Found &found)
{
    return sphereToBox(sphere, box, found);
}

bool sphereToLineSegment(BoundingVolume &sphere, BoundingVolume &line, Found &found)
{
    const TransformComponent *const place = sphere.findTransform();
    if (!place || !line.findTransform())
        return false;
    Vec4 d = place->getPosition() - line.closestPointToLineSeg(place->getPosition());
    d.w = 0.f;
    const float distance = d.magnitude(), radius = 0.5f * sphere.getHitBox().x;
    if (!(distance < radius))
        return false;
    if (distance > 0.f)
        d.normalize();
    else // right through the middle: upwards, where there is room
        d = Vec4(0.f, 1.f, 0.f, 0.f);
    return addContact(sphere, line, sphereContact(place->getPosition(), radius, d, radius - distance), found);
}

bool boxToLineSegment(BoundingVolume &box, BoundingVolume &line, Found &found)
{
    const TransformComponent *const linePlace = line.findTransform();
    if (!linePlace || !box.findTransform())
        return false;
    const Vec4 along = line.shapeAt(*linePlace).rotation.getColumn(2) * line.getHitBox().z;
    const RayCollision hit = box.boxToLineSegmentWithInfo(linePlace->getPosition() - along * 0.5f, along);
    if (!hit.collided)
        return false;
    // The face that the line enters by, or for a line that starts inside its way back, points at the line.
    Vec4 towardsBox = hit.normal.magnitudeSquared() > 0.f ? -hit.normal : along;
    towardsBox.normalize();
    return addContact(box, line, VolumeContact{hit.point, towardsBox, (1.f - hit.t) * along.dot(towardsBox)}, found);
}

bool containerToBox(BoundingVolume &container, BoundingVolume &box, Found &found)
{
    if (!boxToBox(container, box, found))
        return false;
    Collision::dropLast(found);
    return true;
}

/// Whether a volume is that of a light: beside it, or, for one that only stands in for a light, above it.
bool hasLight(BoundingVolume &volume)
{
    if (volume.getSibling(ComponentKeys::graphics2).isValid())
        return true;
    const auto entity = volume.getIsPartitioningDummy() ? volume.getParent().lookup() : Handle<Object>::Result{};
    const auto lamp = entity ? handle_cast<Entity>(entity->getParent()).lookup() : Handle<Entity>::Result{};
    return lamp && lamp->getComponent(ComponentKeys::graphics2).isValid();
}

/// Whether a light reaches the player, as far as its volume tells; the player is told. Nothing is stopped or moved by
/// light: there is no contact, but each finds the other among its colliders.
bool lightToPlayer(BoundingVolume &light, BoundingVolume &player, Found &)
{
    const TransformComponent *const place = light.findTransform(), *const playerPlace = player.findTransform();
    const auto mind = player.getSibling(ComponentKeys::player).lookup();
    if (!place || !playerPlace || !mind || !hasLight(light))
        return false;
    const float reach = 0.5f * light.getHitBox().x;
    if (!((playerPlace->getPosition() - place->getPosition()).magnitudeSquared() <= reach * reach))
        return false;
    if (auto *const lit = dynamic_cast<ILitByVolumes *>(mind.ptr))
        lit->reachedByLight(light);
    return true;
}

bool playerToLight(BoundingVolume &player, BoundingVolume &light, Found &found)
{
    return lightToPlayer(light, player, found);
}

} // namespace

bool lineSegmentToSphere(BoundingVolume &line, BoundingVolume &sphere, Found &found)
{
    return sphereToLineSegment(sphere, line, found);
}

bool lineSegmentToBox(BoundingVolume &line, BoundingVolume &box, Found &found)
{
    return boxToLineSegment(box, line, found);
}

const BoundingVolume::DetectCollision *pairTestsOf(BoundingVolume::VolumeType type)
{
    constexpr Test N = &neverCollide;
    constexpr Test SS = &sphereToSphere, SB = &sphereToBox, BS = &boxToSphere, BB = &boxToBox;
    constexpr Test SL = &sphereToLineSegment, BL = &boxToLineSegment, CB = &containerToBox;
    constexpr Test PL = &playerToLight, LP = &lightToPlayer;
    static constexpr Test tests[BoundingVolume::NUM_VOLUMES][BoundingVolume::NUM_VOLUMES] = {
        // clang-format off
        // SPHERE BOX NONE WALL DOOR PLAYER SHADOW BULLET PARTICLE CONTAINER DUMMY
        {  SS,    SB, N,   SB,  SB,  SB,    N,     SL,    N,       N,        N  }, // BV_SPHERE
        {  BS,    BB, N,   BB,  BB,  BB,    N,     BL,    N,       CB,       N  }, // BV_BOX
        {  N,     N,  N,   N,   N,   N,     N,     N,     N,       N,        N  }, // BV_NONE
        {  BS,    BB, N,   N,   N,   BB,    BB,    BL,    N,       N,        N  }, // BV_WALL
        {  BS,    BB, N,   N,   N,   BB,    N,     BL,    N,       N,        N  }, // BV_DOOR
        {  BS,    BB, N,   BB,  BB,  BB,    N,     N,     N,       N,        PL }, // BV_PLAYER
        {  N,     N,  N,   BB,  N,   N,     N,     BL,    N,       N,        N  }, // BV_SHADOW
        {  N,     N,  N,   N,   N,   LP,    N,     N,     N,       N,        N  }, // BV_BULLET
        {},                                                                        // BV_PARTICLE
        {  N,     N,  N,   N,   N,   LP,    N,     N,     N,       N,        N  }, // BV_CONTAINER
        {  N,     N,  N,   N,   N,   LP,    N,     N,     N,       N,        N  }, // BV_PARTITIONING_DUMMY
        // clang-format on
    };
    return VolumeTraits::of(type).keepsTests ? nullptr : tests[type];
}

bool areTestedWithWalls(BoundingVolume::VolumeType type)
{
    const BoundingVolume::DetectCollision *const tests = pairTestsOf(type);
    return !tests || tests[BoundingVolume::BV_WALL] != &neverCollide;
}
