#include "tools/editor/EditorSnap.h"

#include "tools/editor/EditorPicking.h"

#include "engine/levels/Coordinator.h"
#include "rendering/drawn/GraphicsComponent2.h"

#include <algorithm>
#include <cmath>

namespace
{
float nearestStep(float value, float step)
{
    return step > 0.f && std::isfinite(step) && std::isfinite(value) ? std::round(value / step) * step : value;
}

/// Whether two boxes come as near as that on the two other axes.
bool liesBeside(const SpanBox &box, const SpanBox &other, int axis, float reach)
{
    for (int each = 0; each < 3; ++each)
        if (each != axis && (box.low[each] > other.high[each] + reach || other.low[each] > box.high[each] + reach))
            return false;
    return true;
}
} // namespace

Vec4 EditorSnap::snapped(const Vec4 &place) const
{
    return Vec4(snappedLength(place.x), snappedLength(place.y), snappedLength(place.z), place.w);
}

float EditorSnap::snappedLength(float length) const
{
    return nearestStep(length, step);
}

float EditorSnap::snappedAngle(float degrees) const
{
    return nearestStep(degrees, angle);
}

void EditorSnap::gatherNeighbours(Coordinator &level, const std::function<bool(const Entity &)> &leftOut)
{
    neighbours.clear();
    forEachDrawn(level,
                 [&](GraphicsComponent2 &component)
                 {
                     const Entity *const entity = entityOf(component);
                     const SeenMesh thing(component);
                     if (!entity || !thing.isSolid() || leftOut(*entity))
                         return;
                     SpanBox box;
                     box.take(thing.placement(), thing.low(), thing.high());
                     neighbours.push_back(box);
                 });
}

Vec4 EditorSnap::towardsNeighbours(const SpanBox &box, int axes) const
{
    Vec4 farther;
    if (box.isEmpty())
        return farther;
    for (int axis = 0; axis < 3; ++axis)
    {
        float nearest = neighbourReach;
        for (const SpanBox &other : neighbours)
        {
            if (!(axes & (1 << axis)) || !liesBeside(box, other, axis, neighbourReach))
                continue;
            for (const float gap : {other.low[axis] - box.high[axis], other.high[axis] - box.low[axis],
                                    other.low[axis] - box.low[axis], other.high[axis] - box.high[axis]})
                if (std::fabs(gap) < nearest)
                {
                    nearest = std::fabs(gap);
                    farther[axis] = gap;
                }
        }
    }
    return farther;
}
