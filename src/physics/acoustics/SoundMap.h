// SoundMap: what SoundWays knows of its map.
#pragma once
#include "physics/acoustics/HeardWay.h"
#include <vector>
class SoundMap
{
public:
    std::vector<HeardWay> heard;
    Vec4 listener;
    std::vector<Vec4> places;
};
