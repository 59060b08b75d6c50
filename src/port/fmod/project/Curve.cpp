#include "port/fmod/project/Curve.h"

namespace port
{

float Curve::at(float x) const
{
    if (points.empty())
        return 0;
    if (x <= points.front().x)
        return points.front().y;
    for (std::size_t i = 1; i < points.size(); ++i)
        if (x < points[i].x)
        {
            const Point &from = points[i - 1], &to = points[i];
            return from.y + (to.y - from.y) * (x - from.x) / (to.x - from.x);
        }
    return points.back().y;
}

} // namespace port
