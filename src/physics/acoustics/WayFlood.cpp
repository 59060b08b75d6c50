#include "physics/acoustics/WayFlood.h"

#include <algorithm>
#include <span>

namespace
{

// Sound bends easily around a slight turn, and leaves its high end at a sharp one.
constexpr float TURN_LOSS = 2.5f;      ///< decibels of a right angle
constexpr float TURN_DULLNESS = 0.03f; ///< of a right angle: about 6 kHz

} // namespace

WayLoss WayFlood::lossOfTurn(const PlanPoint &before, const PlanPoint &behind)
{
    const bool isPassage = before.dot(before) == 0.f || behind.dot(behind) == 0.f;
    const float bend = isPassage ? 0.f : 1.f - before.dot(behind);
    return WayLoss{TURN_LOSS * bend, TURN_DULLNESS * bend};
}

/// Makes all turns unreached; where there are as many as before, only those that were reached need it.
void WayFlood::forget(std::size_t turnCount)
{
    constexpr float unreached = std::numeric_limits<float>::infinity();
    if (costs.size() == turnCount)
        for (const Candidate &candidate : candidates)
        {
            costs[candidate.turn] = unreached;
            ways[candidate.turn] = WayTo();
        }
    else
    {
        costs.assign(turnCount, unreached);
        ways.assign(turnCount, WayTo());
    }
    candidates.clear();
}

void WayFlood::begin(const std::vector<SeenTurn> &seen, std::size_t turnCount, float farthest_)
{
    farthest = farthest_;
    forget(turnCount);
    candidates.reserve(2 * turnCount);
    std::fill(std::begin(firsts), std::end(firsts), NO_CANDIDATE);
    step = 0;
    for (const SeenTurn &turn : seen)
    {
        WayTo first;
        first.length = turn.length;
        first.loss = turn.loss;
        first.door = turn.door;
        first.first = turn.turn;
        first.direction = turn.direction;
        reach(turn.turn, turn.length + turn.loss.decibels * metresADecibel, first);
    }
}

bool WayFlood::spread(const SoundSpace &space, const std::vector<WayLoss> &doorLosses, WorkBudget &budget)
{
    while (step < STEPS)
    {
        if (firsts[step] == NO_CANDIDATE)
        {
            ++step;
            continue;
        }
        const auto [cost, turn, next] = candidates[firsts[step]];
        const bool isNews = cost == costs[turn] && ways[turn].length < farthest;
        if (isNews && (budget.isSpent() || !space.graph.explore(turn, space.walls, space.doors, budget,
                                                                std::min(farthest, TurnGraph::REACH))))
            return false;
        firsts[step] = next;
        if (isNews)
            spreadFrom(turn, space, doorLosses, budget);
    }
    return true;
}

/// The list in which candidates of some cost wait; all that cost very much wait in the last one.
std::size_t WayFlood::stepOf(float cost)
{
    return std::min(static_cast<std::size_t>(cost / STEP), STEPS - 1);
}

/// Takes a way where it is nearer than the one known so far.
void WayFlood::reach(std::uint32_t turn, float cost, const WayTo &way)
{
    if (!(cost < costs[turn]))
        return;
    costs[turn] = cost;
    ways[turn] = way;
    std::uint32_t &first = firsts[stepOf(cost)];
    candidates.push_back(Candidate{cost, turn, first});
    first = static_cast<std::uint32_t>(candidates.size()) - 1;
}

void WayFlood::spreadFrom(std::uint32_t turn, const SoundSpace &space, const std::vector<WayLoss> &doorLosses,
                          WorkBudget &budget)
{
    const WayTo from = ways[turn];
    const float cost = costs[turn];
    const Turn &corner = space.graph.getTurn(turn);
    for (const TurnEdge &edge : space.graph.edgesOf(turn))
    {
        budget.spendLook();
        if (cost + edge.length >= costs[edge.to] || !corner.isTaut(from.direction, edge.direction))
            continue;
        WayTo on = from;
        WayLoss passed{edge.loss, 0.f};
        for (const std::uint32_t door : space.graph.doorsOf(edge))
        {
            passed += doorLosses[door];
            on.door = door;
        }
        on.before = turn;
        on.length += edge.length;
        on.loss += passed;
        on.loss += lossOfTurn(from.direction, edge.direction);
        on.direction = edge.direction;
        reach(edge.to, cost + edge.length + passed.decibels * metresADecibel, on);
    }
}

void WaysFrom::begin(const PlanPoint &root_, int floor_, const SoundSpace &space, float farthest_)
{
    root = root_;
    floor = floor_;
    turnCount = space.graph.getCount();
    stage = LOOKING;
    nextLook = 0;
    nextBlock = 0;
    farthest = farthest_;
    seen.clear();
    seen.reserve(turnCount);
    space.doors.lossesAt(root, doorLosses);
}

bool WaysFrom::spread(const SoundSpace &space, WorkBudget &budget)
{
    if (stage == LOOKING)
    {
        if (!lookAround(space, budget))
            return false;
        for (WayFlood &flood : floods)
            flood.begin(seen, turnCount, farthest);
        stage = SPREADING;
    }
    for (; stage < WHOLE; ++stage)
        if (!floods[stage - SPREADING].spread(space, doorLosses, budget))
            return false;
    return true;
}

/// Looks at the turns that the root may see; false where the budget was spent first.
bool WaysFrom::lookAround(const SoundSpace &space, WorkBudget &budget)
{
    const std::span<const TurnGraph::Block> blocks = space.graph.getBlocks();
    const float reach = std::min(farthest, TurnGraph::REACH);
    for (; nextBlock < blocks.size(); ++nextBlock)
    {
        const TurnGraph::Block &block = blocks[nextBlock];
        budget.spendLook();
        if ((block.middle - root).length() - block.radius > reach)
            continue;
        for (nextLook = std::max(nextLook, block.first); nextLook < block.last; ++nextLook)
        {
            if (budget.isSpent())
                return false;
            lookAt(nextLook, space, budget);
        }
    }
    return true;
}

/// Notes a turn where the root sees it.
void WaysFrom::lookAt(std::uint32_t number, const SoundSpace &space, WorkBudget &budget)
{
    budget.spendLook();
    const Turn &turn = space.graph.getTurn(number);
    const PlanPoint way = turn.place - root;
    const float reach = std::min(farthest, TurnGraph::REACH);
    if (turn.floor != floor || way.dot(way) > reach * reach || !turn.mayBendTo(root))
        return;
    budget.spendLine();
    if (!space.walls.isFree(root, turn.place, floor))
        return;
    SeenTurn sight{number, way.length(), WayLoss(), SeenTurn::NO_DOOR, way.unit()};
    space.doors.forEachPassed(root, turn.place, floor,
                              [&](std::size_t door)
                              {
                                  sight.loss += doorLosses[door];
                                  sight.door = static_cast<std::uint32_t>(door);
                              });
    seen.push_back(sight);
}
