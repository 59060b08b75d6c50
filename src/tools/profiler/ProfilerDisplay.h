// ProfilerDisplay: the profiler's table as texts and bars on the screen.
#pragma once

#include "tools/profiler/NumberTexts.h"
#include "tools/profiler/ProfilerTable.h"

#include "foundation/Vector.h"

class DebugCollectorComponent;

/// Draws the table of scopes through the debug collector.
///
/// The numbers change a few times a second, so that they can be read. Allocates nothing once its texts were seen.
class ProfilerDisplay
{
public:
    /// Takes in the frames that ended, and renews the lines when they are due.
    void update(const ProfilerSystem &profiler, TimerTicks ticksPerSecond);
    /// Draws the lines as they are.
    void draw(DebugCollectorComponent &collector) const;

private:
    /// One line of the table, made up.
    struct Line
    {
        String label;
        String milliseconds;
        String percent;
        String calls;
        float share = 0.0f; ///< of the frame, 0..1
        int depth = 0;      ///< scopes around it
    };

    /// A number of the heading with what it counts.
    struct Figure
    {
        String number;
        String label;
    };

    void renewLines(TimerTicks ticksPerSecond);
    void addLinesBelow(int row, int depth);
    Line makeLine(const ProfilerTable::Row &row, int depth);
    void renewHeading();
    void drawHeading(DebugCollectorComponent &collector) const;
    void drawLine(DebugCollectorComponent &collector, const Line &line, float y) const;

    ProfilerTable table;
    NumberTexts texts;
    std::vector<Line> lines;
    std::vector<Figure> heading;
    std::vector<int> sorted;        ///< scratch: the rows of each level that is under way, dearest first
    double millisecondsPerTick = 0; ///< a frame's share of a sum over the window included
    double frameMilliseconds = 0;
    int framesToRenewal = 0;
    int framesSeen = 0;
};
