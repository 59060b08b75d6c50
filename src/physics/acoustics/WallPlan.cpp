#include "physics/acoustics/WallPlan.h"

#include <algorithm>
#include <utility>

namespace
{

constexpr float BUCKET = 2.f;     ///< metres: some walls each
constexpr int MOST_BUCKETS = 256; ///< along a side; a larger map has larger ones
constexpr float SEAL = 1e-3f;     ///< metres by which walls are thicker, so that no line slips through a seam

/// Cuts a part of a segment to the strip |start + t * step| <= half; false where nothing is left.
bool clipStrip(float start, float step, float half, float &enters, float &leaves)
{
    if (std::fabs(step) < 1e-9f)
        return std::fabs(start) <= half;
    float one = (-half - start) / step, other = (half - start) / step;
    if (one > other)
        std::swap(one, other);
    enters = std::max(enters, one);
    leaves = std::min(leaves, other);
    return enters <= leaves;
}

} // namespace

bool WallBox::clip(const PlanPoint &from, const PlanPoint &way, float &enters, float &leaves) const
{
    const PlanPoint start = from - middle, across = along.turned();
    return clipStrip(start.dot(along), way.dot(along), halfAlong + SEAL, enters, leaves) &&
           clipStrip(start.dot(across), way.dot(across), halfAcross + SEAL, enters, leaves);
}

bool WallBox::isMetBy(const PlanPoint &from, const PlanPoint &way) const
{
    // Apart along a side of the box, or along the normal of the segment: lines of sight ask this most of all.
    const PlanPoint away = from + way * 0.5f - middle, across = along.turned();
    const float one = std::fabs(away.dot(along)), other = std::fabs(away.dot(across));
    const float reachOne = std::fabs(way.dot(along)), reachOther = std::fabs(way.dot(across));
    const float wideOne = halfAlong + SEAL, wideOther = halfAcross + SEAL;
    return one <= wideOne + reachOne * 0.5f && other <= wideOther + reachOther * 0.5f &&
           std::fabs(away.cross(way)) <= wideOne * reachOther + wideOther * reachOne;
}

bool WallBox::holds(const PlanPoint &place) const
{
    const PlanPoint away = place - middle;
    return std::fabs(away.dot(along)) <= halfAlong + SEAL && std::fabs(away.dot(along.turned())) <= halfAcross + SEAL;
}

PlanPoint WallBox::nearestOutside(const PlanPoint &place) const
{
    const PlanPoint away = place - middle, across = along.turned();
    const float one = away.dot(along), other = away.dot(across);
    const float clear = 2.f * SEAL;
    if (halfAlong - std::fabs(one) < halfAcross - std::fabs(other))
        return place + along * (std::copysign(halfAlong + clear, one) - one);
    return place + across * (std::copysign(halfAcross + clear, other) - other);
}

void WallPlan::clear()
{
    walls.clear();
    layOut();
}

void WallPlan::layOut()
{
    seen.assign(walls.size(), 0);
    line = 0;
    columns = rows = 0;
    if (walls.empty())
        return;
    PlanPoint high = walls.front().middle;
    corner = high;
    for (const WallBox &wall : walls)
    {
        const float reach = wall.halfAlong + wall.halfAcross;
        corner = PlanPoint(std::min(corner.x, wall.middle.x - reach), std::min(corner.z, wall.middle.z - reach));
        high = PlanPoint(std::max(high.x, wall.middle.x + reach), std::max(high.z, wall.middle.z + reach));
    }
    const PlanPoint extent = high - corner;
    edge = std::max(BUCKET, std::max(extent.x, extent.z) / MOST_BUCKETS);
    columns = static_cast<int>(extent.x / edge) + 1;
    rows = static_cast<int>(extent.z / edge) + 1;

    const std::size_t buckets = static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows);
    starts.assign(buckets + 1, 0);
    for (const WallBox &wall : walls)
        forEachBucketUnder(wall, [&](std::size_t bucket) { ++starts[bucket + 1]; });
    for (std::size_t bucket = 0; bucket < buckets; ++bucket)
        starts[bucket + 1] += starts[bucket];
    entries.resize(starts[buckets]);
    std::vector<std::uint32_t> next(starts.begin(), starts.end() - 1);
    for (std::uint32_t number = 0; number < walls.size(); ++number)
        forEachBucketUnder(walls[number], [&](std::size_t bucket) { entries[next[bucket]++] = number; });
}

WallPlan::Span WallPlan::columnsOf(float low, float high) const
{
    const auto columnOf = [&](float x)
    { return static_cast<int>(std::clamp((x - corner.x) / edge, 0.f, static_cast<float>(columns - 1))); };
    return Span{columnOf(low), columnOf(high)};
}

WallPlan::Span WallPlan::rowsOf(float low, float high) const
{
    const auto rowOf = [&](float z)
    { return static_cast<int>(std::clamp((z - corner.z) / edge, 0.f, static_cast<float>(rows - 1))); };
    return Span{rowOf(low), rowOf(high)};
}

/// The buckets under the upright rectangle around a wall.
template <class Function>
void WallPlan::forEachBucketUnder(const WallBox &wall, Function function) const
{
    const float reachX = std::fabs(wall.along.x) * wall.halfAlong + std::fabs(wall.along.z) * wall.halfAcross + SEAL;
    const float reachZ = std::fabs(wall.along.z) * wall.halfAlong + std::fabs(wall.along.x) * wall.halfAcross + SEAL;
    const Span across = columnsOf(wall.middle.x - reachX, wall.middle.x + reachX);
    const Span down = rowsOf(wall.middle.z - reachZ, wall.middle.z + reachZ);
    for (int z = down.first; z <= down.last; ++z)
        for (int x = across.first; x <= across.last; ++x)
            function(static_cast<std::size_t>(z) * static_cast<std::size_t>(columns) + static_cast<std::size_t>(x));
}

/// Calls a function with the buckets under a segment, column by column, until it returns false.
/// @return false where it did
template <class Function>
bool WallPlan::walk(const PlanPoint &from, const PlanPoint &to, Function function) const
{
    if (columns == 0)
        return true;
    const PlanPoint way = to - from;
    float enters = 0.f, leaves = 1.f;
    const float halfX = static_cast<float>(columns) * edge * 0.5f, halfZ = static_cast<float>(rows) * edge * 0.5f;
    if (!clipStrip(from.x - corner.x - halfX, way.x, halfX, enters, leaves) ||
        !clipStrip(from.z - corner.z - halfZ, way.z, halfZ, enters, leaves))
        return true;
    const PlanPoint first = from + way * enters, last = from + way * leaves;
    const Span passed = columnsOf(std::min(first.x, last.x), std::max(first.x, last.x));
    const int step = way.x < 0.f ? -1 : 1;
    int column = step > 0 ? passed.first : passed.last;
    for (int count = passed.last - passed.first; count >= 0; --count, column += step)
    {
        const float left = corner.x + static_cast<float>(column) * edge;
        float in = enters, out = leaves;
        if (!clipStrip(from.x - left - edge * 0.5f, way.x, edge * 0.5f + SEAL, in, out))
            continue;
        const float one = from.z + way.z * in, other = from.z + way.z * out;
        const Span down = rowsOf(std::min(one, other) - SEAL, std::max(one, other) + SEAL);
        for (int row = down.first; row <= down.last; ++row)
            if (!function(static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) +
                          static_cast<std::size_t>(column)))
                return false;
    }
    return true;
}

bool WallPlan::isFree(const PlanPoint &from, const PlanPoint &to, int floor) const
{
    const PlanPoint way = to - from;
    const std::uint32_t bit = 1u << floor;
    return walk(from, to,
                [&](std::size_t bucket)
                {
                    for (const std::uint32_t number : wallsIn(bucket))
                    {
                        const WallBox &wall = walls[number];
                        if ((wall.floors & bit) && wall.isMetBy(from, way) && !wall.holds(from) && !wall.holds(to))
                            return false;
                    }
                    return true;
                });
}

/// A wall of a floor that holds a place; null for none.
const WallBox *WallPlan::wallAt(const PlanPoint &place, int floor) const
{
    const std::uint32_t bit = 1u << floor;
    const WallBox *found = nullptr;
    walk(place, place,
         [&](std::size_t bucket)
         {
             for (const std::uint32_t number : wallsIn(bucket))
                 if ((walls[number].floors & bit) && walls[number].holds(place))
                 {
                     found = &walls[number];
                     return false;
                 }
             return true;
         });
    return found;
}

PlanPoint WallPlan::broughtOut(const PlanPoint &place, int floor) const
{
    constexpr int MOST_STEPS = 4; // out of one wall, into the next one beside it
    PlanPoint out = place;
    for (int step = 0; step < MOST_STEPS; ++step)
    {
        const WallBox *const wall = wallAt(out, floor);
        if (!wall)
            return out;
        out = wall->nearestOutside(out);
    }
    return place;
}

float WallPlan::thicknessBetween(const Vec4 &from, const Vec4 &to)
{
    if (++line == 0)
        std::fill(seen.begin(), seen.end(), 0);
    const PlanPoint start(from), end(to);
    const float height = to.y - from.y;
    const PlanPoint way = end - start;
    const float length = std::sqrt(way.dot(way) + height * height);
    float part = 0.f;
    walk(start, end,
         [&](std::size_t bucket)
         {
             for (const std::uint32_t number : wallsIn(bucket))
             {
                 if (std::exchange(seen[number], line) == line)
                     continue;
                 const WallBox &wall = walls[number];
                 const float middle = (wall.bottom + wall.top) * 0.5f, half = (wall.top - wall.bottom) * 0.5f;
                 float enters = 0.f, leaves = 1.f;
                 if (wall.isMetBy(start, way) && wall.clip(start, way, enters, leaves) &&
                     (std::isinf(half) || clipStrip(from.y - middle, height, half, enters, leaves)) && enters > 0.f &&
                     leaves < 1.f)
                     part += leaves - enters;
             }
             return part * length < THICKEST;
         });
    return std::min(part * length, THICKEST);
}
