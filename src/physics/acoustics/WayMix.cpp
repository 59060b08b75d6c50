#include "physics/acoustics/WayMix.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr float NEAR = 1.f;          ///< metres within which a sound gains no loudness by coming nearer
constexpr float WALL_LOSS = 34.f;    ///< decibels of a wall
constexpr float WALL = 0.1f;         ///< metres that take as much
constexpr float FURTHER_LOSS = 20.f; ///< decibels a metre of wall behind those
constexpr float MOST_LOSS = 90.f;    ///< decibels: nothing
constexpr float WALL_CUTOFF = 500.f; ///< Hz

float fromDecibels(float decibels)
{
    return std::pow(10.f, -std::min(decibels, MOST_LOSS) / 20.f);
}

float pitchOf(const WayLoss &loss)
{
    constexpr float open = HeardWay::OPEN / 1000.f; // kHz
    return std::log(1000.f / std::sqrt(loss.dullness + 1.f / (open * open)));
}

/// A direction of length 1; what has none looks up at the sound.
Vec4 directionTo(const Vec4 &way)
{
    const float length = std::sqrt(way.x * way.x + way.y * way.y + way.z * way.z);
    return length > 0.f ? Vec4(way.x / length, way.y / length, way.z / length, 0.f) : Vec4(0.f, 1.f, 0.f, 0.f);
}

} // namespace

HeardWay HeardWay::nothingAt(const Vec4 &ear)
{
    HeardWay heard;
    heard.apparent = ear;
    heard.gain = heard.reverb = 0.f;
    heard.open = heard.inSight = false;
    return heard;
}

WayMix::Part WayMix::blend(const Part &one, const Part &other, float share)
{
    Part mixed;
    mixed.distance = one.distance + (other.distance - one.distance) * share;
    mixed.pitch = one.pitch + (other.pitch - one.pitch) * share;
    mixed.aim = one.aim + (other.aim - one.aim) * share;
    return mixed;
}

void WayMix::addWay(float length, const WayLoss &loss, const PlanPoint &aim)
{
    const float rise = sound.y - ear.y;
    Part way;
    way.distance = std::sqrt(length * length + rise * rise);
    way.level = fromDecibels(loss.decibels) / std::max(way.distance, NEAR);
    way.pitch = pitchOf(loss);
    const PlanPoint flat = aim.unit() * length;
    way.aim = directionTo(Vec4(flat.x, rise, flat.z, 0.f));

    const float level = std::max(air.level, way.level);
    const auto weightOf = [&](const Part &part) { return std::pow(part.level / level, 4.f); };
    air = blend(air, way, weightOf(way) / (weightOf(air) + weightOf(way)));
    air.level = level;
}

void WayMix::addWalls(float thickness)
{
    const Vec4 way = sound - ear;
    throughWalls.distance = std::sqrt(way.x * way.x + way.y * way.y + way.z * way.z);
    // Next to nothing of wall is no wall: there the way around it is as straight, and is all that is heard.
    const float share = std::min(thickness / WALL, 1.f);
    const float decibels = WALL_LOSS * share + FURTHER_LOSS * std::max(thickness - WALL, 0.f);
    throughWalls.level = std::sqrt(share) * fromDecibels(decibels) / std::max(throughWalls.distance, NEAR);
    throughWalls.pitch = std::log(WALL_CUTOFF);
    throughWalls.aim = directionTo(way);
}

HeardWay WayMix::getHeard() const
{
    const float energy = air.level * air.level + throughWalls.level * throughWalls.level;
    if (!(energy > 0.f))
        return HeardWay::nothingAt(ear);
    const Part all = blend(air, throughWalls, throughWalls.level * throughWalls.level / energy);
    HeardWay heard;
    heard.distance = all.distance;
    heard.gain = std::min(std::sqrt(energy) * std::max(all.distance, NEAR), 1.f);
    heard.lowpass = std::min(std::exp(all.pitch), HeardWay::OPEN);
    heard.reverb = std::sqrt(heard.gain);
    heard.apparent = ear + directionTo(all.aim) * all.distance;
    heard.apparent.w = 1.f;
    heard.open = air.level >= throughWalls.level;
    return heard;
}
