// RunningMark: sets a flag for the length of a scope.
#pragma once

/// Marks something as running for as long as it lives, so that the mark also goes when an exception passes.
class RunningMark
{
public:
    explicit RunningMark(bool &flag) : flag(flag) { flag = true; }
    ~RunningMark() { flag = false; }
    RunningMark(const RunningMark &) = delete;
    RunningMark &operator=(const RunningMark &) = delete;

private:
    bool &flag;
};
