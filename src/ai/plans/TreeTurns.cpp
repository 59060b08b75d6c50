#include "ai/plans/TreeTurns.h"

TreeTurns::TreeTurns(const std::vector<TaskStep> &steps) : steps(steps)
{
    if (steps.size() < 2 || steps.size() > MOST_STEPS)
        return;
    turns.resize(steps.size() * RESULTS);
    for (std::uint32_t leaf = 0; leaf < steps.size(); ++leaf)
        for (std::size_t result = 0; result < RESULTS && isPlace(leaf); ++result)
            turns[leaf * RESULTS + result] = workOut(leaf, static_cast<StatusCode>(result));
}

/// Whether a node is a leaf whose call gives its result, and nothing else.
bool TreeTurns::isPlace(std::uint32_t at) const
{
    return steps[at].kind == TaskStep::OTHER || steps[at].kind == TaskStep::ASK || steps[at].kind == TaskStep::ACT;
}

TreeTurns::Turn TreeTurns::workOut(std::uint32_t leaf, StatusCode result) const
{
    Turn turn;
    std::vector<TaskState> states(steps.size());
    turn.result = leaveBehind(leaf, result, states.data());
    const std::uint32_t next = leafBelow(states.data());
    turn.next = isPlace(next) ? static_cast<std::uint8_t>(next) : NOWHERE;
    for (std::uint32_t at = leaf; at != 0;)
    {
        at = steps[at].parent;
        turn.heeded |= std::uint64_t(steps[at].kind == TaskStep::SEQUENCE) << at;
    }
    return turn;
}

std::uint8_t TreeTurns::leaveBehind(std::uint32_t leaf, StatusCode result, TaskState *states) const
{
    for (std::uint32_t at = leaf; at != 0;)
    {
        states[at].lastResult = static_cast<std::uint8_t>(result);
        const std::uint32_t child = at;
        at = steps[at].parent;
        // A turn that ends all below a node is none.
        if (steps[at].isEndedBy(states[at], result))
            return UNKNOWN;
        states[at].active = child - steps[at].first;
        result = steps[at].take(states[at], result);
    }
    return states[0].lastResult = static_cast<std::uint8_t>(result);
}

/// Where the active path ends.
std::uint32_t TreeTurns::leafBelow(const TaskState *states) const
{
    std::uint32_t at = 0;
    for (std::uint32_t turn; (turn = steps[at].turnOf(states[at])) < steps[at].count;)
        at = steps[at].first + turn;
    return at;
}

std::uint8_t TreeTurns::placeOf(const TaskState *states) const
{
    const std::uint32_t leaf = turns.empty() ? 0 : leafBelow(states);
    if (turns.empty() || !isPlace(leaf))
        return NOWHERE;
    // All that does not lead to the leaf has to stand at its beginning.
    int underWay = 0;
    for (std::size_t i = 0; i < steps.size(); ++i)
        underWay += steps[i].takesChildren() && states[i].active != 0;
    for (std::uint32_t at = leaf; at != 0;)
    {
        at = steps[at].parent;
        underWay -= steps[at].turnOf(states[at]) != 0;
    }
    return underWay == 0 ? static_cast<std::uint8_t>(leaf) : NOWHERE;
}

std::uint64_t TreeTurns::endedOf(const TaskState *states) const
{
    std::uint64_t ended = 0;
    for (std::size_t i = 0; i < steps.size() && !turns.empty(); ++i)
        ended |= std::uint64_t(steps[i].kind == TaskStep::SEQUENCE && states[i].terminated) << i;
    return ended;
}
