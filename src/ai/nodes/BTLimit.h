// BTLimit: lets its child be ticked a number of times.
#pragma once

#include "ai/nodes/BTDecorator.h"

/// Ticks its child so many times, fails once without ticking it, and begins again.
///
/// A copy has the default limit, whatever the limit of the original.
class BTLimit : public BTDecorator
{
    KV_REFLECTED(BTLimit)
public:
    BTLimit() = default;

    StatusCode run() override;
    /// Begins to count anew, and ends what is going on in the child.
    void terminate() override;
    ErrorReturn<Handle<BTTask>> clone() override { return cloneWithChildren(); }

    /// Ticks in a row.
    unsigned getRunLimit() const { return runLimit; }
    void setRunLimit(unsigned val) { runLimit = val; }
    /// Ticks since the count began.
    unsigned getRunSoFar() const { return runSoFar; }
    void setRunSoFar(unsigned val) { runSoFar = val; }

private:
    unsigned runLimit = 5;
    unsigned runSoFar = 0;
};
