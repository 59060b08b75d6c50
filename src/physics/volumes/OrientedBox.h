// OrientedBox: a box as it stands somewhere, and how deep two of them stand in each other.
#pragma once

#include "foundation/Matrix4.h"
#include "foundation/Vector.h"

#include <cmath>

/// A turned box in the space of the transforms, metres.
struct OrientedBox
{
    Vec4 axes[3]; ///< its own, length 1
    Vec4 half;    ///< half extents along the axes
    Vec4 centre;

    OrientedBox() = default;
    /// @param extents  full ones
    OrientedBox(const Matrix4 &rotation, const Vec4 &position, const Vec4 &extents)
        : axes{rotation.getColumn(0), rotation.getColumn(1), rotation.getColumn(2)}, half(extents * 0.5f),
          centre(position)
    {
    }

    /// The corner that lies farthest along a direction.
    Vec4 farthestCorner(const Vec4 &direction) const
    {
        Vec4 corner = centre;
        for (int i = 0; i < 3; ++i)
            corner += axes[i] * std::copysign(half[i], axes[i].dot(direction));
        return corner;
    }
    /// The middle of the edge along one axis that lies farthest along a direction.
    Vec4 farthestEdge(int along, const Vec4 &direction) const
    {
        const Vec4 corner = farthestCorner(direction);
        return corner - axes[along] * axes[along].dot(corner - centre);
    }
};

/// How two boxes stand in each other: along the axis on which that is least.
struct BoxOverlap
{
    static constexpr int FIRST_EDGE_AXIS = 6;

    int index = 0;     ///< 0..2 an axis of the first box, 3..5 of the second, from 6 on the edges 3 * first + second
    Vec4 axis;         ///< length 1; it points along the way from the first box to the second, or against it
    float depth = 0.f; ///< metres

    /// Finds it; false for boxes that some axis separates, which leaves the overlap as it is.
    bool find(const OrientedBox &one, const OrientedBox &two);

    bool isOfEdges() const { return index >= FIRST_EDGE_AXIS; }
    bool isOfSecond() const { return index >= 3 && !isOfEdges(); }
};
