#include "tools/bars/ValueGraph.h"

#include "port/tweakbar/TweakBar.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr Seconds USUAL = 10.0;
constexpr Seconds LONGEST = 86400.0;
} // namespace

ValueGraph::ValueGraph(Seconds seconds)
    : stepLength((seconds > 0.0 ? std::min(seconds, LONGEST) : USUAL) / static_cast<Seconds>(STEPS))
{
    lows.fill(NOTHING);
    highs.fill(NOTHING);
}

void ValueGraph::step()
{
    present = (present + 1) % STEPS;
    lows[present] = highs[present] = latest;
}

void ValueGraph::add(double value, Seconds elapsed)
{
    if (elapsed > 0.0)
        inStep += std::min(elapsed, stepLength * static_cast<Seconds>(STEPS));
    for (; inStep >= stepLength; inStep -= stepLength)
        step();
    latest = static_cast<float>(value);
    if (!std::isfinite(latest))
        lows[present] = highs[present] = NOTHING;
    else
    {
        lows[present] = std::fmin(lows[present], latest);
        highs[present] = std::fmax(highs[present], latest);
    }
}

void ValueGraph::show(TwGraph &graph)
{
    const std::size_t oldest = (present + 1) % STEPS;
    std::rotate_copy(lows.begin(), lows.begin() + static_cast<std::ptrdiff_t>(oldest), lows.end(), shownLows.begin());
    std::rotate_copy(highs.begin(), highs.begin() + static_cast<std::ptrdiff_t>(oldest), highs.end(),
                     shownHighs.begin());
    graph = {shownLows.data(), shownHighs.data(), static_cast<unsigned>(STEPS), latest, -1.0f};
}
