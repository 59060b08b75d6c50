// BoundingVolume: two boxes against each other, by separating axes.
#include "physics/volumes/BoundingVolume.h"

#include "physics/bodies/RigidCollision.h"

#include "engine/transforms/TransformComponent.h"

namespace
{

/// Square of the length of two edges' cross product below which they count as parallel and leave the decision to the
/// faces, which then see the same axes.
constexpr float PARALLEL_EDGES_SQUARED = 1e-6f;

constexpr int NO_AXIS = -1;
constexpr int FIRST_EDGE_AXIS = 6;

/// A box as the tests see it: its axes and full extents.
struct Box
{
    Vec4 axes[3];
    Vec4 extents;
    Vec4 centre;

    Box(const Matrix4 &rotation, const Vec4 &position, const Vec4 &hitBox)
        : axes{rotation.getColumn(0), rotation.getColumn(1), rotation.getColumn(2)}, extents(hitBox), centre(position)
    {
    }
    /// The corner that lies farthest along a direction.
    Vec4 farthestCorner(const Vec4 &direction) const
    {
        Vec4 corner = centre;
        for (int i = 0; i < 3; ++i)
            corner += axes[i] * std::copysign(0.5f * extents[i], axes[i].dot(direction));
        return corner;
    }
    /// The middle of the edge along one axis that lies farthest along a direction.
    Vec4 farthestEdge(int along, const Vec4 &direction) const
    {
        const Vec4 corner = farthestCorner(direction);
        return corner - axes[along] * axes[along].dot(corner - centre);
    }
};

/// Half of a box's projection onto an axis, given the axis along the box's own axes.
float transformToAxis(const Vec4 &hit, float col0, float col1, float col2)
{
    return 0.5f * (std::fabs(col0) * hit.x + std::fabs(col1) * hit.y + std::fabs(col2) * hit.z);
}

/// The search for the axis of least penetration: the faces of the first box, of the second one, then pairs of edges.
///
/// Works in the dot products of the boxes' axes, which give the projections of both boxes onto all fifteen axes.
class AxisSearch
{
public:
    AxisSearch(const Box &one_, const Box &two_) : one(one_), two(two_), toCenter(two_.centre - one_.centre)
    {
        for (int i = 0; i < 3; ++i)
        {
            alongOne[i] = one.axes[i].dot(toCenter);
            alongTwo[i] = two.axes[i].dot(toCenter);
            for (int j = 0; j < 3; ++j)
                dots[i][j] = one.axes[i].dot(two.axes[j]);
        }
    }

    /// False if an axis separates the boxes.
    bool run() { return tryFacesOfOne() && tryFacesOfTwo() && tryEdges() && best != NO_AXIS; }

    /// The best axis in space, length 1.
    Vec4 bestAxis() const
    {
        if (best < 3)
            return one.axes[best];
        if (best < FIRST_EDGE_AXIS)
            return two.axes[best - 3];
        Vec4 axis = one.axes[(best - FIRST_EDGE_AXIS) / 3].cross(two.axes[(best - FIRST_EDGE_AXIS) % 3]);
        axis.normalize();
        return axis;
    }

    const Box &one, &two;
    const Vec4 toCenter;
    float smallest = -1.f; ///< depth along the best axis so far; negative before there is one
    int best = NO_AXIS;

private:
    static float penetrationOnAxis(float projectedOne, float projectedTwo, float distance)
    {
        return projectedOne + projectedTwo - std::fabs(distance);
    }

    /// False if the boxes do not reach each other along an axis.
    bool tryAxis(float penetration, int index)
    {
        if (!(penetration >= 0.f))
            return false;
        if (smallest < 0.f || smallest > penetration)
        {
            smallest = penetration;
            best = index;
        }
        return true;
    }

    bool tryFacesOfOne()
    {
        for (int i = 0; i < 3; ++i)
            if (!tryAxis(penetrationOnAxis(0.5f * one.extents[i],
                                           transformToAxis(two.extents, dots[i][0], dots[i][1], dots[i][2]),
                                           alongOne[i]),
                         i))
                return false;
        return true;
    }

    bool tryFacesOfTwo()
    {
        for (int j = 0; j < 3; ++j)
            if (!tryAxis(penetrationOnAxis(transformToAxis(one.extents, dots[0][j], dots[1][j], dots[2][j]),
                                           0.5f * two.extents[j], alongTwo[j]),
                         3 + j))
                return false;
        return true;
    }

    bool tryEdges()
    {
        for (int i = 0; i < 3; ++i)
            for (int j = 0; j < 3; ++j)
                if (!tryEdgePair(i, j))
                    return false;
        return true;
    }

    /// Tries the cross product of an axis of each box, a = one's i and b = two's j. Along one's axes it has no part in
    /// i, and by the other two dot products of b; along two's likewise.
    bool tryEdgePair(int i, int j)
    {
        const float lengthSquared = 1.f - dots[i][j] * dots[i][j];
        if (lengthSquared < PARALLEL_EDGES_SQUARED)
            return true;
        const int i1 = (i + 1) % 3, i2 = (i + 2) % 3, j1 = (j + 1) % 3, j2 = (j + 2) % 3;
        const float projectedOne =
            0.5f * (std::fabs(dots[i2][j]) * one.extents[i1] + std::fabs(dots[i1][j]) * one.extents[i2]);
        const float projectedTwo =
            0.5f * (std::fabs(dots[i][j2]) * two.extents[j1] + std::fabs(dots[i][j1]) * two.extents[j2]);
        const float distance = alongOne[i2] * dots[i1][j] - alongOne[i1] * dots[i2][j];
        return tryAxis(penetrationOnAxis(projectedOne, projectedTwo, distance) / std::sqrt(lengthSquared),
                       FIRST_EDGE_AXIS + 3 * i + j);
    }

    float alongOne[3]; ///< toCenter along one's axes
    float alongTwo[3]; ///< toCenter along two's axes
    float dots[3][3];  ///< of one's axis and two's axis
};

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
    const Box one(rotationOf(*place), place->getPosition(), hitBox);
    const Box two(other->rotationOf(*otherPlace), otherPlace->getPosition(), other->hitBox);
    AxisSearch search(one, two);
    if (!search.run())
        return false;
    const Vec4 axis = search.bestAxis();
    if (search.best >= FIRST_EDGE_AXIS)
    {
        const int edges = search.best - FIRST_EDGE_AXIS;
        return edgeToEdge(*other, search.toCenter, found, axis, search.smallest, edges / 3, edges % 3);
    }
    if (search.best >= 3)
        return fillPointToBoxCollision(*other, search.toCenter, found, axis, search.smallest, hitBox);
    return other->fillPointToBoxCollision(*this, -search.toCenter, found, axis, search.smallest, other->hitBox);
}

/// Appends the contact of an edge of this box with one of another, given by the numbers of the axes they lie along.
bool BoundingVolume::edgeToEdge(BoundingVolume &other, const Vec4 &toCenter, std::vector<Collision *> &found,
                                const Vec4 &axis, float depth, int edgeOne, int edgeTwo)
{
    const Vec4 normal = opposing(axis, toCenter);
    const TransformComponent &place = *findTransform(), &otherPlace = *other.findTransform();
    const Box one(rotationOf(place), place.getPosition(), hitBox);
    const Box two(other.rotationOf(otherPlace), otherPlace.getPosition(), other.hitBox);
    const Vec4 position =
        contactPoint(one.farthestEdge(edgeOne, -normal), one.axes[edgeOne], 0.5f * hitBox[edgeOne],
                     two.farthestEdge(edgeTwo, normal), two.axes[edgeTwo], 0.5f * other.hitBox[edgeTwo]);
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
    const Vec4 deepest = Box(rotationOf(place), place.getPosition(), scale).farthestCorner(-normal);
    return addContact(*this, other, Contact{deepest, normal, depth}, found);
}
