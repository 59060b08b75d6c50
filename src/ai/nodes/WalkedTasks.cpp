#include "ai/nodes/WalkedTasks.h"

#include "foundation/Random.h"

#include <algorithm>
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

bool dropFinished(TaskList &running, TaskListIt &active)
{
    if (active + 1 < running.size())
    {
        // A child may stand in the list twice: the walk goes on at the first place of the next one.
        const Handle<BTTask> next = running[active + 1];
        running.erase(running.begin() + static_cast<std::ptrdiff_t>(active));
        active = static_cast<TaskListIt>(std::find(running.begin(), running.end(), next) - running.begin());
        return false;
    }
    if (!running.empty())
        running.pop_back();
    active = static_cast<TaskListIt>(running.size());
    return true;
}

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
