#include "physics/volumes/BoxContacts.h"

#include "physics/volumes/BoundingVolume.h"
#include "physics/volumes/OrientedBox.h"
#include "physics/volumes/VolumeContact.h"

#include "engine/transforms/TransformComponent.h"

namespace
{

/// The direction of an axis, or its opposite, that does not point along another one.
Vec4 opposing(const Vec4 &axis, const Vec4 &direction)
{
    return axis.dot(direction) > 0.f ? -axis : axis;
}

/// The edge of a box along one of its axes that lies farthest along a direction.
BoxEdge farthestEdge(const OrientedBox &box, int axis, const Vec4 &direction)
{
    return BoxEdge{box.farthestEdge(axis, direction), box.axes[axis], box.half[axis]};
}

/// The contact of an edge of one box with one of another.
VolumeContact edgeToEdge(const OrientedBox &one, const OrientedBox &other, const BoxOverlap &overlap)
{
    const Vec4 normal = opposing(overlap.axis, other.centre - one.centre);
    const int edges = overlap.index - BoxOverlap::FIRST_EDGE_AXIS;
    const Vec4 position = whereEdgesMeet(farthestEdge(one, edges / 3, -normal), farthestEdge(other, edges % 3, normal));
    return VolumeContact{position, normal, overlap.depth};
}

/// The contact of a box's deepest corner with a face of another one.
VolumeContact fillPointToBoxCollision(const OrientedBox &one, const OrientedBox &other, const BoxOverlap &overlap)
{
    const Vec4 normal = opposing(overlap.axis, other.centre - one.centre);
    return VolumeContact{one.farthestCorner(-normal), normal, overlap.depth};
}

} // namespace

bool boxToBox(BoundingVolume &one, BoundingVolume &other, std::vector<Collision *> &found)
{
    const TransformComponent *const place = one.findTransform(), *const otherPlace = other.findTransform();
    if (!place || !otherPlace)
        return false;
    const OrientedBox box = one.shapeAt(*place).box(), otherBox = other.shapeAt(*otherPlace).box();
    BoxOverlap overlap;
    if (!overlap.find(box, otherBox))
        return false;
    if (overlap.isOfEdges())
        return addContact(one, other, edgeToEdge(box, otherBox, overlap), found);
    if (overlap.isOfSecond())
        return addContact(one, other, fillPointToBoxCollision(box, otherBox, overlap), found);
    return addContact(other, one, fillPointToBoxCollision(otherBox, box, overlap), found);
}
