// BTSelector: ticks its children in order until one succeeds.
#pragma once

#include "ai/nodes/BTTask.h"

/// Looks for a child that succeeds, from the first on, and remembers how far it has come.
///
/// Passes on to the next child once a frame at most: after a failure it needs more time, and the next tick is the next
/// child's. SC_Undefined without children.
class BTSelector : public BTTask
{
    KV_REFLECTED(BTSelector)
public:
    BTSelector() = default;

    StatusCode run() override { return runPlanned(); }
    /// Ends what is going on, and begins again at the first child.
    void terminate() override;
    ErrorReturn<Handle<BTTask>> clone() override { return cloneWithChildren(); }

private:
    void describeTo(TaskStep &step) const override { step.kind = TaskStep::SELECTOR; }
};
