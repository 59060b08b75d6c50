// BTRandomSequence: ticks its children in an order of chance until one fails.
#pragma once

#include "ai/nodes/BTTask.h"
#include "ai/nodes/WalkedTasks.h"

/// A sequence whose children are shuffled anew each time it begins.
///
/// `activeTask` walks the shuffled list. Chance is the engine's own, so a run repeats.
class BTRandomSequence : public BTTask
{
    KV_REFLECTED(BTRandomSequence)
public:
    BTRandomSequence() = default;

    StatusCode run() override;
    /// Ends what is going on, and has the next tick shuffle.
    void terminate() override;
    ErrorReturn<Handle<BTTask>> clone() override { return cloneWithChildren(); }
    /// Shuffles the children and begins at the first of them.
    void reshuffleChildren();

    /// Whether the next tick shuffles first.
    bool getShouldReshuffle() const { return shuffled.shouldReshuffle; }
    void setShouldReshuffle(bool val) { shuffled.shouldReshuffle = val; }
    const TaskList &getWalkedTasks() const override { return shuffled.shuffledChildren; }

private:
    ShuffledTasks shuffled;
};
