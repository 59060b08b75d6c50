// FmodVector: vectors as the audio library takes them.
#pragma once

#include "foundation/Vector.h"
#include "port/fmod/fmod.h"

inline FMOD_VECTOR toFmod(const Vec4 &v)
{
    return {v.x, v.y, v.z};
}

/// A place, w 1.
inline Vec4 placeOf(const FMOD_VECTOR &v)
{
    return Vec4(v.x, v.y, v.z, 1);
}
