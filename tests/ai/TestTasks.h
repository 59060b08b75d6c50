// Leaves that play a part: the results of their ticks are written down beforehand, and what happens goes in a journal.
#pragma once

#include "ai/actions/Action.h"

#include <string>
#include <vector>

/// A leaf that gives one result after the other, the last one again and again, and notes its ticks and terminates.
///
/// The part is a letter a tick: S, F, N, U and I for the codes; x and n terminate the root first and then give
/// SC_Success or SC_NeedMoreTime. The journal gets the leaf's name, with "~" before it for a terminate.
class PlayedTask : public BTTask
{
    KV_REFLECTED(PlayedTask)
public:
    PlayedTask() = default;

    StatusCode run() override;
    void terminate() override;
    ErrorReturn<Handle<BTTask>> clone() override;

    std::string part = "S";
    std::string journalName;
    std::string *journal = nullptr;
    Handle<BTTask> root;
    std::size_t played = 0;
};

/// An action whose steps give one result after the other, with letters for C(omplete), F(ailed), P(rogress), I(nvalid).
class PlayedAction : public Action
{
    KV_REFLECTED(PlayedAction)
public:
    PlayedAction() = default;

    ActionStatus update(Seconds frameTime) override;
    void reset() override;
    void terminate() override;
    Handle<Action> clone() override { return cloneAction(); }

    std::string part = "P";
    std::string journal;
    Seconds time = 0;
    std::size_t played = 0;
};
