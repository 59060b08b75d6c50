// BTDecorator: a node with one child, of whose ticks and results it makes something else.
#pragma once

#include "ai/nodes/BTTask.h"

/// Base of the nodes with one child.
///
/// Neither sets nor uses `activeTask`; a terminate goes to the child and leaves no mark on the node itself.
class BTDecorator : public BTTask
{
    KV_REFLECTED(BTDecorator)
public:
    /// Which decorator `BTLib::BTCreateDecorator` makes.
    enum DecoratorType
    {
        DT_Limit = 0,
        DT_UntilFail = 1,
        DT_Inverter = 2,
        DT_Interrupter = 3, ///< the library makes none
        DT_UntilSucceed = 4,
        DT_WaitTimer = 5,
        DT_FailFilter = 6
    };

    BTDecorator() = default;

    /// Takes the first child it is given; a further one is dropped. Returns the handle it was given.
    Handle<BTTask> addChild(Handle<BTTask> child) override;
    /// Ends what is going on in the child.
    void terminate() override;

protected:
    /// The child; null where there is none or it has died.
    BTTask *findChild() const { return resolve(children, 0); }
    /// Says once that there is no child to tick. @return SC_InvalidHandle
    StatusCode reportNoChild() { return reportMissingChild(0); }
};
