// TaskStep: how a plan ticks one node, and what its ticks change of it.
#pragma once

#include "ai/plans/TaskTypes.h"

#include <cstdint>

/// What ticks change of a node.
struct TaskState
{
    static constexpr std::uint8_t NOT_TICKED = 255;

    TaskListIt active = 0;                ///< the node's activeTask
    std::uint8_t lastResult = NOT_TICKED; ///< a StatusCode
    bool terminated = false;
};

/// How a node is ticked, and where its parent and its children stand.
struct TaskStep
{
    enum Kind : std::uint8_t
    {
        SELECTOR,
        SEQUENCE, ///< the last that walks its children
        INVERTER,
        FAIL_FILTER,
        UNTIL_FAIL,
        UNTIL_SUCCEED, ///< the last whose children a plan ticks, too
        OTHER,         ///< by its own `run`
        ASK,           ///< a native condition without a child
        ACT,           ///< a native action
        ELSEWHERE,     ///< stands at another place of the tree already
        MISSING,       ///< a child that does not exist
        TOO_DEEP       ///< stands deeper than any node should
    };

    BTConditionFn ask = nullptr; ///< of a native condition
    BTActionFn act = nullptr;    ///< of a native action
    std::uint32_t first = 0;     ///< index of the first child's step; the others follow
    std::uint32_t count = 0;     ///< of children
    std::uint32_t parent = 0;    ///< index of the parent's step
    Kind kind = OTHER;

    /// Whether a plan ticks the node's children, too.
    bool takesChildren() const { return kind <= UNTIL_SUCCEED; }
    /// Which of its children a node ticks: those that walk them the active one, all others the first.
    std::uint32_t turnOf(const TaskState &state) const { return kind <= SEQUENCE ? state.active : 0; }
    /// Whether what a child gave ends all that goes on below the node.
    bool isEndedBy(const TaskState &state, StatusCode given) const
    {
        return kind == SEQUENCE && given == SC_InvalidHandle && !state.terminated;
    }
    /// What a node makes of its child's result.
    StatusCode take(TaskState &state, StatusCode given) const;

    bool operator==(const TaskStep &) const = default;

private:
    StatusCode filtered(StatusCode given) const;
    StatusCode advance(TaskState &state, StatusCode atTheEnd) const;
    static StatusCode begin(TaskState &state, StatusCode result);
};

inline StatusCode TaskStep::take(TaskState &state, StatusCode given) const
{
    if (kind == SEQUENCE && state.terminated) [[unlikely]]
    {
        state.terminated = false;
        return SC_Success;
    }
    if (given == SC_NeedMoreTime)
        return given;
    if (kind == SEQUENCE)
        return given == SC_Failure ? begin(state, given) : advance(state, SC_Success);
    if (kind != SELECTOR)
        return filtered(given);
    if (given == SC_Success)
        return begin(state, given);
    return given == SC_Failure ? advance(state, given) : SC_NeedMoreTime;
}

/// What a node that keeps nothing in mind makes of a child that has finished.
inline StatusCode TaskStep::filtered(StatusCode given) const
{
    const bool succeeded = given == SC_Success, failed = given == SC_Failure;
    switch (kind)
    {
    case INVERTER:
        return succeeded ? SC_Failure : failed ? SC_Success : SC_Undefined;
    case FAIL_FILTER:
        return succeeded || failed ? SC_Success : SC_Undefined;
    case UNTIL_FAIL:
        return failed ? SC_Failure : SC_NeedMoreTime;
    default:
        return succeeded ? SC_Success : SC_NeedMoreTime;
    }
}

/// Has a node stand at its next child; behind the last one it begins again, with a result.
inline StatusCode TaskStep::advance(TaskState &state, StatusCode atTheEnd) const
{
    return ++state.active < count ? SC_NeedMoreTime : begin(state, atTheEnd);
}

/// Has a node stand at its first child again, with a result.
inline StatusCode TaskStep::begin(TaskState &state, StatusCode result)
{
    state.active = 0;
    return result;
}
