// PerlinNoise: the gradient noise and its table.
#include "foundation/PerlinNoise.h"

#include <cmath>

int PerlinNoise::permutations[512];

namespace
{

// The reference permutation of the numbers 0..255.
constexpr unsigned char PERMUTATION[256] = {
    151, 160, 137, 91,  90,  15,  131, 13,  201, 95,  96,  53,  194, 233, 7,   225, 140, 36,  103, 30,  69,  142,
    8,   99,  37,  240, 21,  10,  23,  190, 6,   148, 247, 120, 234, 75,  0,   26,  197, 62,  94,  252, 219, 203,
    117, 35,  11,  32,  57,  177, 33,  88,  237, 149, 56,  87,  174, 20,  125, 136, 171, 168, 68,  175, 74,  165,
    71,  134, 139, 48,  27,  166, 77,  146, 158, 231, 83,  111, 229, 122, 60,  211, 133, 230, 220, 105, 92,  41,
    55,  46,  245, 40,  244, 102, 143, 54,  65,  25,  63,  161, 1,   216, 80,  73,  209, 76,  132, 187, 208, 89,
    18,  169, 200, 196, 135, 130, 116, 188, 159, 86,  164, 100, 109, 198, 173, 186, 3,   64,  52,  217, 226, 250,
    124, 123, 5,   202, 38,  147, 118, 126, 255, 82,  85,  212, 207, 206, 59,  227, 47,  16,  58,  17,  182, 189,
    28,  42,  223, 183, 170, 213, 119, 248, 152, 2,   44,  154, 163, 70,  221, 153, 101, 155, 167, 43,  172, 9,
    129, 22,  39,  253, 19,  98,  108, 110, 79,  113, 224, 232, 178, 185, 112, 104, 218, 246, 97,  228, 251, 34,
    242, 193, 238, 210, 144, 12,  191, 179, 162, 241, 81,  51,  145, 235, 249, 14,  239, 107, 49,  192, 214, 31,
    181, 199, 106, 157, 184, 84,  204, 176, 115, 121, 50,  45,  127, 4,   150, 254, 138, 236, 205, 93,  222, 114,
    67,  29,  24,  72,  243, 141, 128, 195, 78,  66,  215, 61,  156, 180};

float mix(float t, float a, float b)
{
    return a + t * (b - a);
}

} // namespace

PerlinNoise::PerlinNoise()
{
    if (permutations[0] == PERMUTATION[0])
        return;
    for (int i = 0; i < 512; ++i)
        permutations[i] = PERMUTATION[i & 255];
}

float PerlinNoise::fade(float t)
{
    return t * t * t * (t * (t * 6 - 15) + 10);
}

// The noise pattern depends on the test for 12 or 4, which differs from the usual one for 12 or 14.
float PerlinNoise::gradient(int hashVal, float x, float y, float z)
{
    const int h = hashVal & 15;
    const float u = h < 8 ? x : y;
    const float v = h < 4 ? y : h == 12 || h == 4 ? x : z;
    return ((h & 1) ? -u : u) + ((h & 2) ? -v : v);
}

float PerlinNoise::generateNoise(Vec4 position) const
{
    const float floorX = std::floor(position.x), floorY = std::floor(position.y), floorZ = std::floor(position.z);
    const int cellX = static_cast<int>(floorX) & 255;
    const int cellY = static_cast<int>(floorY) & 255;
    const int cellZ = static_cast<int>(floorZ) & 255;
    const float x = position.x - floorX, y = position.y - floorY, z = position.z - floorZ;
    const float u = fade(x), v = fade(y), w = fade(z);

    const int *const p = permutations;
    const int a = p[cellX] + cellY, aa = p[a] + cellZ, ab = p[a + 1] + cellZ;
    const int b = p[cellX + 1] + cellY, ba = p[b] + cellZ, bb = p[b + 1] + cellZ;
    const float near = mix(v, mix(u, gradient(p[aa], x, y, z), gradient(p[ba], x - 1, y, z)),
                           mix(u, gradient(p[ab], x, y - 1, z), gradient(p[bb], x - 1, y - 1, z)));
    const float far = mix(v, mix(u, gradient(p[aa + 1], x, y, z - 1), gradient(p[ba + 1], x - 1, y, z - 1)),
                          mix(u, gradient(p[ab + 1], x, y - 1, z - 1), gradient(p[bb + 1], x - 1, y - 1, z - 1)));
    return mix(w, near, far);
}
