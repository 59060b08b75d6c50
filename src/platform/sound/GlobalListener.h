// GlobalListener: whose ears a level is heard with.
#pragma once

#include "foundation/Vector.h"

class Variant;

/// Place, motion and bearing of the ears of a level, in the space in which its transforms hold their numbers.
struct GlobalListener
{
    Vec4 position = Vec4(0, 0, 0, 1);        ///< metres, w 1
    Vec4 velocity;                           ///< metres a second
    Vec4 directionVector = Vec4(0, 0, 1, 0); ///< where the nose points, length 1
    Vec4 upVector = Vec4(0, 1, 0, 0);        ///< where the crown points, length 1

    /// A place as the ears have it: to the right, up and ahead, metres, w 0.
    Vec4 seen(const Vec4 &place) const
    {
        const Vec4 way = place - position, right = upVector.cross(directionVector);
        return Vec4(way.dot(right), way.dot(upVector), way.dot(directionVector), 0);
    }
};

/// How it crosses the reflection layer: as the script class `GlobalListener`.
void SetToVariant(Variant &v, const GlobalListener &listener);
