// TurnGraph: the corners of a map's walls that sound turns around, and which of them see each other.
#pragma once

#include "physics/acoustics/DoorPlan.h"
#include "physics/acoustics/PlanPoint.h"
#include "physics/acoustics/WallPlan.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// A place at which a way may turn: before the outer corner of a wall, or at the end of a passage.
struct Turn
{
    PlanPoint place;
    PlanPoint away;  ///< from the wall along one of its sides, length 1
    PlanPoint aside; ///< from the wall along the other one
    int floor = 0;
    std::uint32_t passageTo = NONE; ///< the other end of the passage; NONE for a corner
    float passageLength = 0.f;      ///< metres
    float passageLoss = 0.f;        ///< decibels

    static constexpr std::uint32_t NONE = ~0u;

    /// Whether a shortest way may come from a place, or lead there: not to where the corner need not be turned around.
    bool mayBendTo(const PlanPoint &other) const;
    /// Whether a way that comes along one direction and leaves along another one bends around the wall, not off it.
    bool isTaut(const PlanPoint &before, const PlanPoint &behind) const;
};

/// From one turn to another one that it sees, or at the other end of its passage.
struct TurnEdge
{
    std::uint32_t to;
    std::uint32_t firstDoor; ///< of the doorways that it passes
    std::uint32_t doorCount;
    float length;        ///< metres
    PlanPoint direction; ///< length 1; none for a passage
    float loss;          ///< of the passage, decibels
};

/// What has been spent on finding ways, and how much may be.
///
/// A line of sight is one unit, and so are some cheaper looks together.
class WorkBudget
{
public:
    explicit WorkBudget(int units) : left(units * LOOKS_A_UNIT), given(left) {}
    /// As much as it takes.
    static WorkBudget unlimited() { return WorkBudget(1 << 24); }

    void spendLine() { left -= LOOKS_A_UNIT; }
    void spendLook() { --left; }
    bool isSpent() const { return left <= 0; }
    int getSpent() const { return (given - left) / LOOKS_A_UNIT; }

private:
    static constexpr int LOOKS_A_UNIT = 16;

    int left;
    int given;
};

/// Corners, and the lines of sight between them, which are found when somebody first asks.
///
/// Shortest ways turn around outer corners of walls alone, so that ways are as exact as the walls and need no cells.
/// Owns its turns, borrows walls and doors for the call.
class TurnGraph
{
public:
    /// The most corners of a map; further ones are not turned around.
    static constexpr std::size_t MOST_TURNS = 1 << 15;
    /// The longest line of sight that counts, metres.
    static constexpr float REACH = 64.f;

    struct Passage
    {
        Vec4 ends[2];
        int floors[2];
        float loss; ///< decibels
    };

    /// Finds the corners of some walls, and takes the ends of passages.
    void build(const WallPlan &walls, std::span<const Passage> passages);

    /// Neighbouring turns, for a first look at many.
    struct Block
    {
        std::uint32_t first;
        std::uint32_t last; ///< one past
        PlanPoint middle;
        float radius; ///< metres
    };

    std::size_t getCount() const { return turns.size(); }
    std::span<const Block> getBlocks() const { return blocks; }
    const Turn &getTurn(std::uint32_t number) const { return turns[number]; }
    /// Finds what a turn sees within so many metres; a budget that is spent leaves that begun.
    /// @return whether `edgesOf` knows it
    bool explore(std::uint32_t number, const WallPlan &walls, const DoorPlan &doors, WorkBudget &budget,
                 float reach = REACH);
    bool isExplored(std::uint32_t number) const { return exploredTo[number] > 0.f; }
    /// What a turn sees, once it is explored, at least as far as that was asked for.
    std::span<const TurnEdge> edgesOf(std::uint32_t number) const
    {
        return std::span(edges).subspan(firstEdges[number], edgeCounts[number]);
    }
    std::span<const std::uint32_t> doorsOf(const TurnEdge &edge) const
    {
        return std::span(passedDoors).subspan(edge.firstDoor, edge.doorCount);
    }

private:
    void addCorners(const WallBox &wall, const WallPlan &walls, int floor);
    void addPassage(const Passage &passage);
    void sortCorners();
    void addBlock(std::uint32_t first, std::uint32_t last);
    void begin(std::uint32_t number, float reach);
    bool lookAround(const WallPlan &walls, const DoorPlan &doors, WorkBudget &budget);
    void lookAt(std::uint32_t number, std::uint32_t other, const WallPlan &walls, const DoorPlan &doors,
                WorkBudget &budget);
    void end();
    bool isSeenFrom(std::uint32_t other, std::uint32_t number) const;

    std::vector<Turn> turns;
    std::vector<Block> blocks;
    std::vector<TurnEdge> edges;            ///< turn by turn, in the order of exploring
    std::vector<std::uint32_t> firstEdges;  ///< by turn
    std::vector<std::uint32_t> edgeCounts;  ///< by turn
    std::vector<float> exploredTo;          ///< metres, by turn; 0 for not at all
    std::vector<std::uint32_t> passedDoors; ///< edge by edge
    std::uint32_t exploring = Turn::NONE;   ///< the turn whose edges are being found
    float exploringTo = 0.f;                ///< metres
    std::size_t nextBlock = 0;              ///< that it looks at next
    std::uint32_t nextLook = 0;             ///< the turn that it looks at next
    std::uint32_t beganAt = 0;              ///< its first edge
};
