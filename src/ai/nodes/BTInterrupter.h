// BTInterrupter: ends its child at somebody's wish.
#pragma once

#include "ai/nodes/BTDecorator.h"

/// Passes its child's ticks on until it is asked to interrupt it; that tick terminates the child and is SC_Undefined.
///
/// The request is any result but SC_Undefined; being terminated, or carrying it out, forgets it. Copies carry none.
class BTInterrupter : public BTDecorator
{
    KV_REFLECTED(BTInterrupter)
public:
    BTInterrupter() = default;

    StatusCode run() override;
    /// Forgets a request, and ends what is going on in the child.
    void terminate() override;
    ErrorReturn<Handle<BTTask>> clone() override { return cloneWithChildren(); }
    /// Asks for the interruption with the next tick; SC_Undefined takes it back.
    void setResult(StatusCode desiredResult) { interruptResult = desiredResult; }
    /// The request; SC_Undefined for none.
    StatusCode getResult() const { return interruptResult; }

private:
    StatusCode interruptResult = SC_Undefined;
};
