#include "physics/acoustics/TurnGraph.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace
{

constexpr float BEFORE = 0.05f; ///< metres between a corner and the place at which sound turns around it
/// Metres by which a place may seem not to need a turn: turns stand a little before their corners.
constexpr float SLACK = 0.11f;
constexpr float BLOCK = 12.f; ///< metres: a room or two

} // namespace

bool Turn::mayBendTo(const PlanPoint &other) const
{
    if (passageTo != NONE)
        return true;
    const PlanPoint way = other - place;
    return way.dot(away) <= SLACK || way.dot(aside) <= SLACK;
}

bool Turn::isTaut(const PlanPoint &before, const PlanPoint &behind) const
{
    constexpr float nearlyStraight = 0.1f; // as turns stand a little before their corners
    const float side = -before.cross(away + aside), bend = before.cross(behind);
    return passageTo != NONE || std::fabs(bend) < nearlyStraight || side * bend >= 0.f;
}

void TurnGraph::build(const WallPlan &walls, std::span<const Passage> passages)
{
    turns.clear();
    blocks.clear();
    edges.clear();
    passedDoors.clear();
    for (const WallBox &wall : walls.getWalls())
        for (int floor = 0; wall.floors >> floor != 0; ++floor)
            if (wall.floors >> floor & 1u)
                addCorners(wall, walls, floor);
    sortCorners();
    for (const Passage &passage : passages)
        addPassage(passage);
    firstEdges.assign(turns.size(), 0);
    exploredTo.assign(turns.size(), 0.f);
    edgeCounts.assign(turns.size(), 0);
    exploring = Turn::NONE;
}

/// Puts corners that are near each other side by side.
void TurnGraph::sortCorners()
{
    const auto squareOf = [](const Turn &turn)
    { return std::pair(std::floor(turn.place.z / BLOCK), std::floor(turn.place.x / BLOCK)); };
    std::stable_sort(turns.begin(), turns.end(),
                     [&](const Turn &one, const Turn &other) { return squareOf(one) < squareOf(other); });
    std::uint32_t first = 0;
    for (std::uint32_t number = 1; number <= turns.size(); ++number)
        if (number == turns.size() || squareOf(turns[number]) != squareOf(turns[first]))
        {
            addBlock(first, number);
            first = number;
        }
}

void TurnGraph::addBlock(std::uint32_t first, std::uint32_t last)
{
    PlanPoint low = turns[first].place, high = low;
    for (std::uint32_t number = first; number < last; ++number)
    {
        const PlanPoint place = turns[number].place;
        low = PlanPoint(std::min(low.x, place.x), std::min(low.z, place.z));
        high = PlanPoint(std::max(high.x, place.x), std::max(high.z, place.z));
    }
    blocks.push_back(Block{first, last, (low + high) * 0.5f, (high - low).length() * 0.5f});
}

void TurnGraph::addPassage(const Passage &passage)
{
    const auto first = static_cast<std::uint32_t>(turns.size());
    for (const int end : {0, 1})
    {
        Turn turn;
        turn.place = PlanPoint(passage.ends[end]);
        turn.floor = passage.floors[end];
        turn.passageTo = first + (end == 0 ? 1 : 0);
        turn.passageLength = (passage.ends[0] - passage.ends[1]).magnitude();
        turn.passageLoss = passage.loss;
        turns.push_back(turn);
        addBlock(first + static_cast<std::uint32_t>(end), first + static_cast<std::uint32_t>(end) + 1);
    }
}

/// Adds those corners of a wall that stand free: where another wall goes on, nothing is turned around.
void TurnGraph::addCorners(const WallBox &wall, const WallPlan &walls, int floor)
{
    for (const float one : {-1.f, 1.f})
        for (const float other : {-1.f, 1.f})
        {
            const PlanPoint away = wall.along * one, aside = wall.along.turned() * other;
            const PlanPoint corner = wall.middle + away * wall.halfAlong + aside * wall.halfAcross;
            const PlanPoint place = corner + away * BEFORE + aside * BEFORE;
            const bool isFree = !walls.isInside(place, floor) &&
                                !walls.isInside(corner + away * BEFORE - aside * BEFORE, floor) &&
                                !walls.isInside(corner - away * BEFORE + aside * BEFORE, floor);
            if (!isFree || turns.size() >= MOST_TURNS)
                continue;
            Turn turn;
            turn.place = place;
            turn.away = away;
            turn.aside = aside;
            turn.floor = floor;
            turns.push_back(turn);
        }
}

bool TurnGraph::explore(std::uint32_t number, const WallPlan &walls, const DoorPlan &doors, WorkBudget &budget,
                        float reach)
{
    if (exploredTo[number] >= reach)
        return true;
    if (exploring != Turn::NONE && (exploring != number || exploringTo < reach))
    {
        WorkBudget rest = WorkBudget::unlimited(); // somebody asks out of turn: what was begun is ended first
        lookAround(walls, doors, rest);
        end();
    }
    if (exploring == Turn::NONE)
        begin(number, reach);
    if (!lookAround(walls, doors, budget))
        return false;
    end();
    return true;
}

void TurnGraph::begin(std::uint32_t number, float reach)
{
    exploring = number;
    exploringTo = reach;
    nextBlock = 0;
    nextLook = 0;
    beganAt = static_cast<std::uint32_t>(edges.size());
    const Turn &turn = turns[number];
    if (turn.passageTo != Turn::NONE)
        edges.push_back(TurnEdge{turn.passageTo, 0, 0, turn.passageLength, PlanPoint(), turn.passageLoss});
}

/// Goes on with the turn that is being explored; false where the budget was spent first.
bool TurnGraph::lookAround(const WallPlan &walls, const DoorPlan &doors, WorkBudget &budget)
{
    const PlanPoint here = turns[exploring].place;
    for (; nextBlock < blocks.size(); ++nextBlock)
    {
        const Block &block = blocks[nextBlock];
        budget.spendLook();
        if ((block.middle - here).length() - block.radius > exploringTo)
            continue;
        for (nextLook = std::max(nextLook, block.first); nextLook < block.last; ++nextLook)
        {
            if (budget.isSpent())
                return false;
            lookAt(exploring, nextLook, walls, doors, budget);
        }
    }
    return true;
}

void TurnGraph::lookAt(std::uint32_t number, std::uint32_t other, const WallPlan &walls, const DoorPlan &doors,
                       WorkBudget &budget)
{
    budget.spendLook();
    const Turn &from = turns[number], &to = turns[other];
    const PlanPoint way = to.place - from.place;
    if (other == number || from.floor != to.floor || way.dot(way) > exploringTo * exploringTo ||
        !from.mayBendTo(to.place) || !to.mayBendTo(from.place))
        return;
    if (way.dot(way) <= exploredTo[other] * exploredTo[other])
    {
        if (!isSeenFrom(other, number)) // that was found the other way round
            return;
    }
    else
    {
        budget.spendLine();
        if (!walls.isFree(from.place, to.place, from.floor))
            return;
    }
    const auto firstDoor = static_cast<std::uint32_t>(passedDoors.size());
    doors.forEachPassed(from.place, to.place, from.floor,
                        [&](std::size_t door) { passedDoors.push_back(static_cast<std::uint32_t>(door)); });
    edges.push_back(TurnEdge{other, firstDoor, static_cast<std::uint32_t>(passedDoors.size()) - firstDoor, way.length(),
                             way.unit(), 0.f});
}

/// Whether a turn that has been explored sees another one, but for the other end of its passage.
bool TurnGraph::isSeenFrom(std::uint32_t other, std::uint32_t number) const
{
    const std::span<const TurnEdge> known = edgesOf(other);
    return std::any_of(known.begin(), known.end(),
                       [&](const TurnEdge &edge)
                       { return edge.to == number && edge.direction.dot(edge.direction) > 0.f; });
}

void TurnGraph::end()
{
    firstEdges[exploring] = beganAt;
    edgeCounts[exploring] = static_cast<std::uint32_t>(edges.size()) - beganAt;
    exploredTo[exploring] = exploringTo;
    exploring = Turn::NONE;
}
