// StackTrace: where a call came from, captured as addresses and named on demand.
#pragma once

#include "foundation/ErrorCode.h"
#include "foundation/IStringizable.h"
#include "foundation/KVString.h"

#include <cstdint>

constexpr unsigned MAX_STACKTRACE_FRAMES = 62;

/// The callers at the moment of construction.
///
/// Capturing stores addresses only. Names and lines are looked up once per frame, when somebody asks.
class StackTrace : public IStringizable
{
public:
    struct Frame
    {
        void *address = nullptr; ///< return address
        String function;         ///< "Unknown function" where it has no symbol
        String file;             ///< "Unknown file" where no line is recorded
        int line = 0;
        bool dataRetrieved = false; ///< whether function, file and line were looked up
    };

    /// @param skip  callers to leave out; 1 starts at the function that constructs the trace
    explicit StackTrace(unsigned skip = 1);

    /// Logs the trace; the frames themselves go to the debug output only, not into the log's history.
    void dumpToConsole() const;

    std::uint32_t getHash() const { return hash; }
    unsigned getFrameCount() const { return numFrames; }
    /// Frame by index, innermost first, with its names looked up; OUT_OF_BOUNDS at getFrameCount() and above.
    ErrorReturn<Frame> getFrame(unsigned frame) const;
    /// One line "file(line): function" per frame.
    String toString() const;

private:
    std::uint32_t hash = 0;                      ///< equal for traces of the same addresses
    mutable Frame frames[MAX_STACKTRACE_FRAMES]; ///< names are filled in on demand
    std::uint16_t numFrames = 0;
};
