// Filters: the decorators that turn their child's result into another one, and do nothing else.
#pragma once

#include "ai/nodes/BTDecorator.h"

/// Ticks its child until that fails: SC_Failure then, SC_NeedMoreTime for anything else.
class BTUntilFail : public BTDecorator
{
    KV_REFLECTED(BTUntilFail)
public:
    BTUntilFail() = default;

    StatusCode run() override { return runPlanned(); }
    ErrorReturn<Handle<BTTask>> clone() override { return cloneWithChildren(); }

private:
    void describeTo(TaskStep &step) const override { step.kind = TaskStep::UNTIL_FAIL; }
};

/// Ticks its child until that succeeds: SC_Success then, SC_NeedMoreTime for anything else.
class BTUntilSucceed : public BTDecorator
{
    KV_REFLECTED(BTUntilSucceed)
public:
    BTUntilSucceed() = default;

    StatusCode run() override { return runPlanned(); }
    ErrorReturn<Handle<BTTask>> clone() override { return cloneWithChildren(); }

private:
    void describeTo(TaskStep &step) const override { step.kind = TaskStep::UNTIL_SUCCEED; }
};

/// Swaps success and failure. SC_NeedMoreTime stays, all else is SC_Undefined.
class BTInverter : public BTDecorator
{
    KV_REFLECTED(BTInverter)
public:
    BTInverter() = default;

    StatusCode run() override { return runPlanned(); }
    ErrorReturn<Handle<BTTask>> clone() override { return cloneWithChildren(); }

private:
    void describeTo(TaskStep &step) const override { step.kind = TaskStep::INVERTER; }
};

/// Turns failure into success. SC_NeedMoreTime stays, all else is SC_Undefined.
class BTFailFilter : public BTDecorator
{
    KV_REFLECTED(BTFailFilter)
public:
    BTFailFilter() = default;

    StatusCode run() override { return runPlanned(); }
    ErrorReturn<Handle<BTTask>> clone() override { return cloneWithChildren(); }

private:
    void describeTo(TaskStep &step) const override { step.kind = TaskStep::FAIL_FILTER; }
};
