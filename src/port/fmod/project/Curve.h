// Curve: a value over a parameter, straight between points.
#pragma once

#include <vector>

namespace port
{

/// Points by ascending x. Before the first and behind the last point the value stays as it is there.
struct Curve
{
    struct Point
    {
        float x = 0;
        float y = 0;
    };

    /// Value at x; 0 without points.
    float at(float x) const;

    std::vector<Point> points;
};

} // namespace port
