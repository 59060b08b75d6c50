// Finite: whether numbers are numbers.
#pragma once

#include "foundation/Quaternion.h"
#include "foundation/Vector.h"

/// Whether all four components are numbers, and none is infinite.
inline bool isFinite(const Vec4 &v)
{
    // A difference of a number with itself is 0, of infinity or of no number it is no number.
    return (v.x - v.x) + (v.y - v.y) + (v.z - v.z) + (v.w - v.w) == 0.f;
}

/// Whether all four components are numbers, and none is infinite.
inline bool isFinite(const Quaternion &q)
{
    return isFinite(Vec4(q.r, q.i, q.j, q.k));
}
