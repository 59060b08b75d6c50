// PlacedShape: a box or a ball as it stands somewhere, against points and segments.
#pragma once

#include "physics/grid/RayCollision.h"
#include "physics/volumes/OrientedBox.h"

#include "foundation/Matrix4.h"
#include "foundation/Quaternion.h"
#include "foundation/Vector.h"

/// The rotation of an orientation, made when that has changed.
class KeptRotation
{
public:
    const Matrix4 &of(const Quaternion &orientation)
    {
        if (orientation.r != madeFrom.r || orientation.i != madeFrom.i || orientation.j != madeFrom.j ||
            orientation.k != madeFrom.k)
            make(orientation);
        return rotation;
    }

private:
    void make(const Quaternion &orientation);

    Quaternion madeFrom;
    Matrix4 rotation;
};

/// A box of extents, the ball whose diameter is their x, and the line along its z axis that is as long as their z.
///
/// In the space of the transforms, metres. Borrows the rotation for the call that asks.
struct PlacedShape
{
    const Matrix4 &rotation;
    Vec4 centre;
    Vec4 extents; ///< full ones

    OrientedBox box() const { return OrientedBox(rotation, centre, extents); }

    /// Whether a point lies in the box, give or take the rounding of its place.
    bool boxHolds(const Vec4 &point) const;
    /// The nearest place outside of the box for a point in it, and how deep that lies.
    void leaveBox(const Vec4 &point, Vec4 &outside, float &depth) const;
    /// Where a segment enters the ball.
    /// @param direction  whole extent of the segment, not normalised
    RayCollision segmentIntoBall(const Vec4 &pos, const Vec4 &direction) const;
    /// Where a segment enters the box; one that starts inside has the parameter 0 and no normal.
    /// @param direction  whole extent of the segment, not normalised
    RayCollision segmentIntoBox(const Vec4 &pos, const Vec4 &direction) const;
    /// The point of the line that is nearest to another one.
    Vec4 nearestOnLine(const Vec4 &point) const;
};

/// The middle of an edge, its direction of length 1 and half its length.
struct BoxEdge
{
    Vec4 middle;
    Vec4 direction;
    float reach;
};

/// Where two edges come nearest to each other: the middle between their nearest points.
///
/// Parallel edges, and edges whose lines come nearest beyond their ends, give the first edge's middle.
Vec4 whereEdgesMeet(const BoxEdge &one, const BoxEdge &two);
