// BoundingVolume: the contacts of two boxes.
#include "physics/volumes/BoundingVolume.h"

#include "physics/volumes/OrientedBox.h"
#include "physics/bodies/RigidCollision.h"

#include "engine/transforms/TransformComponent.h"

namespace
{

/// The direction of an axis, or its opposite, that does not point along another one.
Vec4 opposing(const Vec4 &axis, const Vec4 &direction)
{
    return axis.dot(direction) > 0.f ? -axis : axis;
}

} // namespace

bool BoundingVolume::boxToBox(Handle<BoundingVolume> box, std::vector<Collision *> &found)
{
    const auto other = box.lookup();
    const TransformComponent *const place = findTransform();
    const TransformComponent *const otherPlace = other ? other->findTransform() : nullptr;
    if (!place || !otherPlace)
        return false;
    const OrientedBox one(rotationOf(*place), place->getPosition(), hitBox);
    const OrientedBox two(other->rotationOf(*otherPlace), otherPlace->getPosition(), other->hitBox);
    BoxOverlap overlap;
    if (!overlap.find(one, two))
        return false;
    const Vec4 toCenter = two.centre - one.centre;
    if (overlap.isOfEdges())
    {
        const int edges = overlap.index - BoxOverlap::FIRST_EDGE_AXIS;
        return edgeToEdge(*other, toCenter, found, overlap.axis, overlap.depth, edges / 3, edges % 3);
    }
    if (overlap.isOfSecond())
        return fillPointToBoxCollision(*other, toCenter, found, overlap.axis, overlap.depth, hitBox);
    return other->fillPointToBoxCollision(*this, -toCenter, found, overlap.axis, overlap.depth, other->hitBox);
}

/// Appends the contact of an edge of this box with one of another, given by the numbers of the axes they lie along.
bool BoundingVolume::edgeToEdge(BoundingVolume &other, const Vec4 &toCenter, std::vector<Collision *> &found,
                                const Vec4 &axis, float depth, int edgeOne, int edgeTwo)
{
    const Vec4 normal = opposing(axis, toCenter);
    const TransformComponent &place = *findTransform(), &otherPlace = *other.findTransform();
    const OrientedBox one(rotationOf(place), place.getPosition(), hitBox);
    const OrientedBox two(other.rotationOf(otherPlace), otherPlace.getPosition(), other.hitBox);
    const Vec4 position = contactPoint(one.farthestEdge(edgeOne, -normal), one.axes[edgeOne], one.half[edgeOne],
                                       two.farthestEdge(edgeTwo, normal), two.axes[edgeTwo], two.half[edgeTwo]);
    return addContact(*this, other, Contact{position, normal, depth}, found);
}

/// Appends the contact of this box's deepest corner with a face of another box.
/// @param scale  full extents of this box
bool BoundingVolume::fillPointToBoxCollision(BoundingVolume &other, const Vec4 &toCenter,
                                             std::vector<Collision *> &found, const Vec4 &axis, float depth,
                                             const Vec4 &scale)
{
    const Vec4 normal = opposing(axis, toCenter);
    const TransformComponent &place = *findTransform();
    const Vec4 deepest = OrientedBox(rotationOf(place), place.getPosition(), scale).farthestCorner(-normal);
    return addContact(*this, other, Contact{deepest, normal, depth}, found);
}
