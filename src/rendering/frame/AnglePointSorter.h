// AnglePointSorter: orders points by the angle at which a pivot sees them in the x, z plane.
#pragma once

#include "foundation/Vector.h"

#include <cmath>

/// Orders points by their angle around a pivot, from -x over +z to +x; the nearer of two in line goes first.
///
/// For points that do not lie below the pivot in z, and whose x and z are finite.
struct AnglePointSorter
{
    Vec4 pivot;

    bool operator()(const Vec4 &lhs, const Vec4 &rhs) const
    {
        const double leftX = double(lhs.x) - pivot.x, leftZ = double(lhs.z) - pivot.z;
        const double rightX = double(rhs.x) - pivot.x, rightZ = double(rhs.z) - pivot.z;
        const double leftAngle = std::atan2(leftX, leftZ), rightAngle = std::atan2(rightX, rightZ);
        if (leftAngle != rightAngle)
            return leftAngle < rightAngle;
        return leftX * leftX + leftZ * leftZ < rightX * rightX + rightZ * rightZ;
    }
};
