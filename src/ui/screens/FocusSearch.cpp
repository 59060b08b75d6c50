#include "ui/screens/FocusSearch.h"

#include <limits>

namespace
{
/// What of a place lies along a direction and across it.
struct Extent
{
    float near, far; ///< along
    float acrossLow, acrossHigh;
};

Extent extentOf(const WidgetRect &place, int x, int y)
{
    if (x > 0)
        return {place.left, place.right(), place.top, place.bottom()};
    if (x < 0)
        return {-place.right(), -place.left, place.top, place.bottom()};
    if (y > 0)
        return {place.top, place.bottom(), place.left, place.right()};
    return {-place.bottom(), -place.top, place.left, place.right()};
}

/// How far apart two places lie across the direction; 0 where they overlap.
float acrossGap(const Extent &a, const Extent &b)
{
    return std::max({a.acrossLow - b.acrossHigh, b.acrossLow - a.acrossHigh, 0.f});
}

constexpr float ASLANT = 3.f; ///< what a way across counts in ways ahead
constexpr float LAP = 0.5f;   ///< of its own length that a neighbour may overlap
} // namespace

std::size_t findInDirection(const std::vector<WidgetRect> &places, std::size_t from, int x, int y)
{
    if (from >= places.size())
        return from;
    const Extent own = extentOf(places[from], x, y);
    const float middle = own.near + (own.far - own.near) * LAP;
    std::size_t best = from, farthest = from;
    float leastCost = std::numeric_limits<float>::max(), leastWrap = leastCost;
    for (std::size_t i = 0; i < places.size(); ++i)
    {
        if (i == from || places[i].isEmpty())
            continue;
        const Extent other = extentOf(places[i], x, y);
        const float across = acrossGap(own, other);
        const float offset = std::abs(other.acrossLow - own.acrossLow) * 0.01f; // a row's first one before its second
        if (other.near >= middle && other.far > own.far)
        {
            // Side by side counts only what stands in the same row.
            if (x != 0 && across > 0.f)
                continue;
            const float cost = std::max(other.near - own.far, 0.f) + across * ASLANT + offset;
            if (cost < leastCost)
            {
                leastCost = cost;
                best = i;
            }
        }
        else if (y != 0 && other.near + across * ASLANT + offset < leastWrap)
        {
            leastWrap = other.near + across * ASLANT + offset;
            farthest = i;
        }
    }
    return best != from || y == 0 ? best : farthest;
}
