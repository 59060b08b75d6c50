#include "ai/nodes/ShuffledTasks.h"

#include "foundation/Random.h"

#include <utility>

namespace
{
/// A number of chance that is wide enough to reach below a bound: as many draws of 15 bits as that takes.
std::uint64_t drawFor(std::uint64_t bound)
{
    std::uint64_t drawn = static_cast<std::uint64_t>(engineRand()) & ENGINE_RAND_MAX;
    for (std::uint64_t widest = ENGINE_RAND_MAX; bound > widest; widest = widest << 15 | ENGINE_RAND_MAX)
        drawn = drawn << 15 | (static_cast<std::uint64_t>(engineRand()) & ENGINE_RAND_MAX);
    return drawn;
}
} // namespace

void ShuffledTasks::shuffle(const TaskList &children)
{
    shuffledChildren = children;
    for (std::size_t i = 1; i < shuffledChildren.size(); ++i)
    {
        const std::size_t j = drawFor(i + 1) % (i + 1);
        if (i != j)
            std::swap(shuffledChildren[i], shuffledChildren[j]);
    }
}
