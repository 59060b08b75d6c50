#include "physics/volumes/OrientedBox.h"

namespace
{

/// Square of the length of two edges' cross product below which they count as parallel and leave the decision to the
/// faces, which then see the same axes.
constexpr float PARALLEL_EDGES_SQUARED = 1e-6f;

constexpr int NO_AXIS = -1;
constexpr int FIRST_EDGE_AXIS = BoxOverlap::FIRST_EDGE_AXIS;

/// Half of a box's projection onto an axis, given the axis along the box's own axes.
float transformToAxis(const Vec4 &half, float col0, float col1, float col2)
{
    return std::fabs(col0) * half.x + std::fabs(col1) * half.y + std::fabs(col2) * half.z;
}

/// The search for the axis of least penetration: the faces of the first box, of the second one, then pairs of edges.
///
/// Works in the dot products of the boxes' axes, which give the projections of both boxes onto all fifteen axes.
class AxisSearch
{
public:
    AxisSearch(const OrientedBox &one_, const OrientedBox &two_)
        : one(one_), two(two_), toCenter(two_.centre - one_.centre)
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

    const OrientedBox &one, &two;
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
            if (!tryAxis(penetrationOnAxis(one.half[i], transformToAxis(two.half, dots[i][0], dots[i][1], dots[i][2]),
                                           alongOne[i]),
                         i))
                return false;
        return true;
    }

    bool tryFacesOfTwo()
    {
        for (int j = 0; j < 3; ++j)
            if (!tryAxis(penetrationOnAxis(transformToAxis(one.half, dots[0][j], dots[1][j], dots[2][j]), two.half[j],
                                           alongTwo[j]),
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
        const float projectedOne = std::fabs(dots[i2][j]) * one.half[i1] + std::fabs(dots[i1][j]) * one.half[i2];
        const float projectedTwo = std::fabs(dots[i][j2]) * two.half[j1] + std::fabs(dots[i][j1]) * two.half[j2];
        const float distance = alongOne[i2] * dots[i1][j] - alongOne[i1] * dots[i2][j];
        return tryAxis(penetrationOnAxis(projectedOne, projectedTwo, distance) / std::sqrt(lengthSquared),
                       FIRST_EDGE_AXIS + 3 * i + j);
    }

    float alongOne[3]; ///< toCenter along one's axes
    float alongTwo[3]; ///< toCenter along two's axes
    float dots[3][3];  ///< of one's axis and two's axis
};

} // namespace

bool BoxOverlap::find(const OrientedBox &one, const OrientedBox &two)
{
    AxisSearch search(one, two);
    if (!search.run())
        return false;
    index = search.best;
    axis = search.bestAxis();
    depth = search.smallest;
    return true;
}
