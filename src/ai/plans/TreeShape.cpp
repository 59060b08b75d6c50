#include "ai/plans/TreeShape.h"

#include <algorithm>
#include <cstddef>
#include <unordered_map>

namespace
{
/// All shapes that are in use, by what `hashOf` makes of their steps.
using Shapes = std::unordered_multimap<std::size_t, const TreeShape *>;

Shapes &shapes()
{
    static Shapes &all = *new Shapes; // never destroyed: trees may outlive it
    return all;
}

std::size_t hashOf(const std::vector<TaskStep> &steps)
{
    constexpr std::size_t PRIME = 1099511628211u;
    std::size_t hash = steps.size();
    for (const TaskStep &step : steps)
        for (const std::size_t part : {reinterpret_cast<std::size_t>(step.ask), reinterpret_cast<std::size_t>(step.act),
                                       std::size_t(step.count), std::size_t(step.kind)})
            hash = (hash ^ part) * PRIME;
    return hash;
}
} // namespace

TreeShape::Ptr TreeShape::of(std::vector<TaskStep> &&steps, int depth)
{
    const std::size_t hash = hashOf(steps);
    const auto [begin, end] = shapes().equal_range(hash);
    const auto alike = std::find_if(begin, end, [&](const auto &entry) { return entry.second->steps == steps; });
    if (alike != end)
        return Ptr(alike->second);
    Ptr made(new TreeShape(std::move(steps), depth));
    shapes().emplace(hash, made.get());
    return made;
}

/// Ends the shape, of which there is no tree any more.
void TreeShape::remove() const
{
    const auto [begin, end] = shapes().equal_range(hashOf(steps));
    shapes().erase(std::find_if(begin, end, [this](const auto &entry) { return entry.second == this; }));
    delete this;
}
