// Plane: an endless flat surface through three points.
#pragma once

#include "physics/grid/RayCollision.h"

/// A plane; its normal points to where the three points are seen clockwise.
class Plane
{
public:
    /// Points on one line make a plane without a normal, which nothing hits.
    Plane(const Vec4 &one, const Vec4 &two, const Vec4 &three);

    /// Where a segment crosses the plane, from either side; the normal is the plane's own.
    /// @param direction  whole extent of the segment, not normalised
    RayCollision planeToLineSegment(const Vec4 &pos, const Vec4 &direction) const;

    Vec4 normal;    ///< length 1
    Vec4 points[3]; ///< on the plane
    float d;        ///< normal . p + d is the distance of a point p
};
