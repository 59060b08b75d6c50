// ValueGraph: what a number was over the last seconds.
#pragma once

#include "foundation/TimeTypes.h"

#include <array>
#include <limits>

struct TwGraph;

/// Lowest and highest values of even steps of time, the oldest of which fall out.
class ValueGraph
{
public:
    /// @param seconds  how much time it shows; one that is none, or not above 0, counts as 10
    explicit ValueGraph(Seconds seconds);

    /// Notes what the number is after some more time; one that is no number leaves a gap.
    void add(double value, Seconds elapsed);
    /// Points a bar's graph at the values.
    void show(TwGraph &graph);

private:
    static constexpr std::size_t STEPS = 240;
    static constexpr float NOTHING = std::numeric_limits<float>::quiet_NaN();

    void step();

    Seconds stepLength;
    Seconds inStep = 0.0;
    std::size_t present = 0; ///< index of the step that is being filled
    float latest = NOTHING;
    std::array<float, STEPS> lows;
    std::array<float, STEPS> highs;
    std::array<float, STEPS> shownLows; ///< in the order of time
    std::array<float, STEPS> shownHighs;
};
