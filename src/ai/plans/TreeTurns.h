// TreeTurns: what becomes of a tree by each result that each of its leaves may give.
#pragma once

#include "ai/plans/TaskStep.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// The ticks of a small tree worked out beforehand: one that stands where its own ticks have brought it goes on from a
/// leaf by what that gives alone, whatever lies between leaf and root.
///
/// Shared by all trees of a shape and never changed. Empty for large trees, which are walked. States stand by step.
class TreeTurns
{
public:
    /// For a place that no turn begins from.
    static constexpr std::uint8_t NOWHERE = 255;
    /// In place of a result, for a turn that is not known.
    static constexpr std::uint8_t UNKNOWN = 255;
    /// Nodes of a tree that is not walked each time.
    static constexpr std::size_t MOST_STEPS = 64;

    /// What a leaf's result leads to.
    struct Turn
    {
        std::uint64_t heeded = 0;      ///< a bit each step above the leaf that goes another way if it was terminated
        std::uint8_t next = NOWHERE;   ///< leaf at which the tree stands then, or NOWHERE
        std::uint8_t result = UNKNOWN; ///< the root's
    };

    explicit TreeTurns(const std::vector<TaskStep> &steps);

    /// The turn by a leaf's result; null where the tree has to be walked.
    const Turn *find(std::uint8_t leaf, StatusCode result) const
    {
        if (static_cast<std::size_t>(result) >= RESULTS) [[unlikely]]
            return nullptr;
        const Turn &turn = turns[leaf * RESULTS + result];
        return turn.result == UNKNOWN ? nullptr : &turn;
    }
    /// The leaf at which a tree stands; NOWHERE if that alone does not tell all of where it stands.
    std::uint8_t placeOf(const TaskState *states) const;
    /// A bit each step that goes another way once because it was terminated.
    std::uint64_t endedOf(const TaskState *states) const;
    /// Leaves behind in the leaf, and in all nodes above it, what a turn does; gives the root's result.
    std::uint8_t leaveBehind(std::uint32_t leaf, StatusCode result, TaskState *states) const;

private:
    static constexpr std::size_t RESULTS = SC_InvalidHandle + 1;

    bool isPlace(std::uint32_t at) const;
    Turn workOut(std::uint32_t leaf, StatusCode result) const;
    std::uint32_t leafBelow(const TaskState *states) const;

    const std::vector<TaskStep> &steps;
    std::vector<Turn> turns; ///< by leaf and result
};
