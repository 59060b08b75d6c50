// WayFlood: the ways from one place to all corners of a map.
#pragma once

#include "physics/acoustics/DoorPlan.h"
#include "physics/acoustics/TurnGraph.h"
#include "physics/acoustics/WallPlan.h"

#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

/// What a map's sound goes through, borrowed for a call.
struct SoundSpace
{
    TurnGraph &graph;
    const WallPlan &walls;
    const DoorPlan &doors;
};

/// A turn as a place sees it.
struct SeenTurn
{
    std::uint32_t turn;
    float length;        ///< metres
    WayLoss loss;        ///< of the doors between
    std::uint32_t door;  ///< the last of them; NO_DOOR for none
    PlanPoint direction; ///< to the turn, length 1

    static constexpr std::uint32_t NO_DOOR = ~0u;
};

/// The way from a flood's root to one turn.
struct WayTo
{
    float length = 0.f;                     ///< metres
    WayLoss loss;                           ///< of doors, passages and the turns before this one
    std::uint32_t first = Turn::NONE;       ///< the turn nearest to the root
    std::uint32_t before = Turn::NONE;      ///< the turn before this one; NONE for the root
    std::uint32_t door = SeenTurn::NO_DOOR; ///< the last one on it
    PlanPoint direction;                    ///< of its last part, length 1; none behind a passage
};

/// Spreads from its root over the corners of a map, nearest first, a part of it in each call.
///
/// What counts as near is the length of the way and, as somebody wants it, the loss of the doors on it: the shortest
/// way may lead through closed doors while a longer one stands open, and both are heard.
class WayFlood
{
public:
    /// The longest way that is followed, metres.
    static constexpr float FARTHEST = 72.f;

    /// @param metresADecibel  how much farther a way may be for each decibel less that its doors take
    explicit WayFlood(float metresADecibel) : metresADecibel(metresADecibel) {}

    /// Begins anew from a place that sees some turns, and follows ways up to a length, metres.
    void begin(const std::vector<SeenTurn> &seen, std::size_t turnCount, float farthest);
    /// Spreads on.
    /// @param doorLosses  what each door takes
    /// @return whether the flood is whole; false where the budget was spent first
    bool spread(const SoundSpace &space, const std::vector<WayLoss> &doorLosses, WorkBudget &budget);

    /// What the way to a turn costs: metres, and what stands for losses; infinite where there is no way.
    float costOf(std::uint32_t turn) const { return costs[turn]; }
    const WayTo &wayTo(std::uint32_t turn) const { return ways[turn]; }
    float getMetresADecibel() const { return metresADecibel; }

    /// What turning around a corner takes, by the directions before and behind it.
    static WayLoss lossOfTurn(const PlanPoint &before, const PlanPoint &behind);

private:
    /// A turn that may spread on.
    struct Candidate
    {
        float cost; ///< out of date where the turn has a lower one by now
        std::uint32_t turn;
        std::uint32_t next; ///< of the same step; NO_CANDIDATE for none
    };
    static constexpr std::uint32_t NO_CANDIDATE = ~0u;
    static constexpr std::size_t STEPS = 512;
    static constexpr float STEP =
        0.5f; ///< metres of cost that share a list: a little out of order costs less than order

    static std::size_t stepOf(float cost);
    void forget(std::size_t turnCount);
    void reach(std::uint32_t turn, float cost, const WayTo &way);
    void spreadFrom(std::uint32_t turn, const SoundSpace &space, const std::vector<WayLoss> &doorLosses,
                    WorkBudget &budget);

    float metresADecibel;
    float farthest = FARTHEST;         ///< metres
    std::vector<float> costs;          ///< by turn
    std::vector<WayTo> ways;           ///< by turn
    std::vector<Candidate> candidates; ///< in the order of their coming
    std::uint32_t firsts[STEPS] = {};  ///< of the candidates, by step of cost
    std::size_t step = 0;              ///< of the candidates that spread now
};

/// All ways from a place: the shortest ones, and those that pass few closed doors.
class WaysFrom
{
public:
    static constexpr int FLOODS = 2;

    /// Begins anew from a place, for ways up to a length, metres.
    void begin(const PlanPoint &root, int floor, const SoundSpace &space, float farthest = WayFlood::FARTHEST);
    /// Goes on.
    /// @return whether all ways are found; false where the budget was spent first
    bool spread(const SoundSpace &space, WorkBudget &budget);

    const PlanPoint &getRoot() const { return root; }
    /// The longest ways that were looked for, metres.
    float getFarthest() const { return farthest; }
    int getFloor() const { return floor; }
    const WayFlood &getFlood(int number) const { return floods[number]; }
    /// What a door takes for who stands at the root.
    const WayLoss &lossOfDoor(std::size_t number) const { return doorLosses[number]; }

private:
    enum Stage
    {
        LOOKING,
        SPREADING,
        WHOLE = SPREADING + FLOODS
    };

    bool lookAround(const SoundSpace &space, WorkBudget &budget);
    void lookAt(std::uint32_t number, const SoundSpace &space, WorkBudget &budget);

    PlanPoint root;
    int floor = 0;
    float farthest = WayFlood::FARTHEST;
    std::size_t turnCount = 0;
    int stage = LOOKING;        ///< which flood spreads, from SPREADING on
    std::size_t nextBlock = 0;  ///< that the root looks at next
    std::uint32_t nextLook = 0; ///< the turn that the root looks at next
    std::vector<SeenTurn> seen;
    std::vector<WayLoss> doorLosses; ///< by door
    WayFlood floods[FLOODS] = {WayFlood(0.f), WayFlood(3.f)};
};
