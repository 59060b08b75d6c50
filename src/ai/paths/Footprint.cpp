#include "ai/paths/Footprint.h"

#include "physics/volumes/OrientedBox.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr float UPRIGHT = 0.999f; ///< share of an axis along y

/// Metres from a point to a segment.
float distanceToSegment(const PlanPoint &point, const PlanPoint &from, const PlanPoint &way)
{
    const float length = way.dot(way);
    const float t = length > 0.f ? std::clamp((point - from).dot(way) / length, 0.f, 1.f) : 0.f;
    return (from + way * t - point).length();
}

} // namespace

Footprint::Footprint(const OrientedBox &box) : middle(box.centre)
{
    for (int up = 0; up < 3; ++up)
    {
        if (std::fabs(box.axes[up].y) < UPRIGHT)
            continue;
        along = PlanPoint(box.axes[(up + 1) % 3]).unit();
        halfAlong = std::fabs(box.half[(up + 1) % 3]);
        halfAcross = std::fabs(box.half[(up + 2) % 3]);
        return;
    }
    for (int axis = 0; axis < 3; ++axis)
    {
        halfAlong += std::fabs(box.axes[axis].x * box.half[axis]);
        halfAcross += std::fabs(box.axes[axis].z * box.half[axis]);
    }
}

PlanPoint Footprint::reach() const
{
    return PlanPoint(std::fabs(along.x) * halfAlong + std::fabs(along.z) * halfAcross,
                     std::fabs(along.z) * halfAlong + std::fabs(along.x) * halfAcross);
}

bool Footprint::isFinite() const
{
    return std::isfinite(middle.x + middle.z + along.x + along.z + halfAlong + halfAcross);
}

/// The point in the rectangle's own axes, from its middle.
PlanPoint Footprint::toOwn(const PlanPoint &point) const
{
    const PlanPoint way = point - middle;
    return PlanPoint(way.dot(along), way.dot(along.turned()));
}

float Footprint::ownDistance(const PlanPoint &own) const
{
    const float x = std::max(std::fabs(own.x) - halfAlong, 0.f), z = std::max(std::fabs(own.z) - halfAcross, 0.f);
    return std::sqrt(x * x + z * z);
}

float Footprint::distanceTo(const PlanPoint &point) const
{
    return ownDistance(toOwn(point));
}

float Footprint::distanceTo(const PlanPoint &from, const PlanPoint &to) const
{
    const PlanPoint start = toOwn(from), way = toOwn(to) - start;
    if (isMetBy(start, way))
        return 0.f;
    float nearest = std::min(ownDistance(start), ownDistance(start + way));
    for (const float x : {-halfAlong, halfAlong})
        for (const float z : {-halfAcross, halfAcross})
            nearest = std::min(nearest, distanceToSegment(PlanPoint(x, z), start, way));
    return nearest;
}

bool Footprint::isMetBy(const PlanPoint &ownFrom, const PlanPoint &ownWay) const
{
    float enters = 0.f, leaves = 1.f;
    const auto cut = [&](float from, float way, float half)
    {
        if (way == 0.f)
            return std::fabs(from) <= half;
        const float one = (-half - from) / way, other = (half - from) / way;
        enters = std::max(enters, std::min(one, other));
        leaves = std::min(leaves, std::max(one, other));
        return enters <= leaves;
    };
    return cut(ownFrom.x, ownWay.x, halfAlong) && cut(ownFrom.z, ownWay.z, halfAcross);
}
