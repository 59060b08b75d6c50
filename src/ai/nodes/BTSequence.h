// BTSequence: ticks its children in order until one fails.
#pragma once

#include "ai/nodes/BTTask.h"

/// Works its children off from the first to the last, and remembers how far it has come.
///
/// Passes on to the next child once a frame at most. SC_Failure without children. One that was terminated, be it from
/// within its own tick or before, succeeds with the next child that returns, whatever that says.
class BTSequence : public BTTask
{
    KV_REFLECTED(BTSequence)
public:
    BTSequence() = default;

    StatusCode run() override { return runPlanned(); }
    /// Ends what is going on, and begins again at the first child.
    void terminate() override;
    ErrorReturn<Handle<BTTask>> clone() override { return cloneWithChildren(); }

private:
    void describeTo(TaskStep &step) const override { step.kind = TaskStep::SEQUENCE; }
};
