// RayCollision: where a segment meets a surface.
#pragma once

#include "foundation/Vector.h"

class Variant;

/// The answer of a shape to a segment.
struct RayCollision
{
    bool collided = false;
    Vec4 point;  ///< where the segment enters, w 1
    Vec4 normal; ///< of the surface there, w 0
    float t = 0; ///< parameter on the segment: 0 at its start, 1 at its end
};

/// How it crosses the reflection layer: as the script class `RayCollision`.
void SetToVariant(Variant &v, const RayCollision &collision);

/// A line with a direction.
struct Edge
{
    Vec4 point;  ///< on the line
    Vec4 vector; ///< along it
};
