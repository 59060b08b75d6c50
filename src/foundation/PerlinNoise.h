// PerlinNoise: smooth noise in space.
#pragma once

#include "foundation/Vector.h"

/// Gradient noise on x, y and z, the same for every instance and in every run.
class PerlinNoise
{
public:
    PerlinNoise();

    /// Noise at a place, about -1..1, zero at points with whole coordinates.
    float generateNoise(Vec4 position) const;

private:
    static float fade(float t);
    static float gradient(int hashVal, float x, float y, float z);

    static int permutations[512]; ///< filled by the first instance
};
