// ProfilerTable: the scopes of the last frames as a tree with means.
#pragma once

#include "foundation/KVString.h"
#include "foundation/TimeTypes.h"

#include <array>
#include <cstddef>
#include <vector>

class ProfilerSystem;

/// Sums the profiler's events up, frame by frame, over a window of the last frames.
///
/// A row is a scope below one chain of scopes around it, so that what is called from two places has two rows. Rows
/// stay once they are there: in the steady state nothing is allocated.
class ProfilerTable
{
public:
    /// Frames that the means run over.
    static constexpr std::size_t WINDOW = 32;
    /// Rows at most; the time of further scopes shows in the row around them only.
    static constexpr std::size_t MAX_ROWS = 512;
    /// Index of no row.
    static constexpr int NONE = -1;

    /// One scope. Row 0 is the frame itself.
    struct Row
    {
        String profileKey;
        String verboseDesc;
        int parent = NONE;
        int firstChild = NONE;
        int nextSibling = NONE;
        TimerTicks frameTicks = 0;                 ///< of the frame being added
        int frameCalls = 0;                        ///< of the frame being added
        std::array<TimerTicks, WINDOW> ticks = {}; ///< by frame modulo the window
        std::array<int, WINDOW> calls = {};        ///< by frame modulo the window
        TimerTicks sumTicks = 0;                   ///< over the window
        int sumCalls = 0;                          ///< over the window
    };

    ProfilerTable();

    /// Takes in all frames that ended since the last call, or as many of them as the window and the rings hold.
    void update(const ProfilerSystem &profiler);

    const std::vector<Row> &getRows() const { return rows; }
    /// Frames that the sums hold, at most WINDOW.
    std::size_t getFrameCount() const { return framesHeld; }

private:
    struct OpenScope
    {
        std::uint64_t beginID;
        TimerTicks begin;
        int row;
    };

    void addFrame(const ProfilerSystem &profiler, int frame);
    void beginScope(const ProfilerSystem &profiler, std::uint64_t id);
    void endScope(std::uint64_t beginID, TimerTicks end);
    void moveWindow();
    int childOf(int parent, const String &profileKey, const String &verboseDesc);

    std::vector<Row> rows;
    std::vector<OpenScope> open; ///< scopes around the event at hand, outermost first
    int nextFrame = 0;           ///< the first one not taken in
    std::size_t windowSlot = 0;
    std::size_t framesHeld = 0;
};
