#include "port/fmod/events/LayerVoice.h"

#include "port/fmod/output/SourcePool.h"

#include <algorithm>
#include <cmath>

namespace port
{

namespace
{

float drawn(const Varied &varied, Chance &chance)
{
    return varied.spread > 0 ? varied.value + varied.spread * chance.either() : varied.value;
}

} // namespace

void LayerVoice::choose(const LayerPlan &plan, SampleBank &bank, Chance &chance)
{
    const int last = plan.weights.size() > 1 ? entry : -1;
    const auto weightOf = [&](std::size_t index)
    {
        const bool plays = static_cast<int>(index) != last && bank.shapeOf(plan.entries[index].sample).frames > 0;
        return plays ? plan.weights[index] : 0;
    };
    float sum = 0;
    for (std::size_t i = 0; i < plan.weights.size(); ++i)
        sum += weightOf(i);
    float left = chance.unit() * sum;
    int chosen = last;
    for (std::size_t i = 0; i < plan.weights.size() && sum > 0; ++i)
    {
        const float weight = weightOf(i);
        if (weight > 0)
            chosen = static_cast<int>(i);
        if (weight > left)
            break;
        left -= weight;
    }
    entry = chosen;
}

void LayerVoice::begin(const LayerPlan &plan, SampleBank &bank, Chance &chance)
{
    if (plan.weights.empty())
        entry = plan.entries.empty() ? -1 : 0;
    else
        choose(plan, bank, chance);
    volume = std::clamp(drawn(plan.volume, chance), 0.0F, 1.0F);
    pitch = std::exp2(drawn(plan.pitch, chance) / 12);
    wait = plan.delay.value + (plan.delay.spread > 0 ? plan.delay.spread * chance.unit() : 0);
    position = 0;
    const bool plays = entry >= 0 && bank.shapeOf(entryOf(plan).sample).frames > 0;
    state = !plays ? ENDED : wait > 0 ? WAITING : SOUNDING;
}

void LayerVoice::end()
{
    state = ENDED;
    if (source)
        SourcePool::finish(source);
}

/// Goes on to the entry that the position lies in.
void LayerVoice::pass(const LayerPlan &plan, SampleBank &bank)
{
    for (;;)
    {
        const TrackEntry &current = entryOf(plan);
        const double length = bank.shapeOf(current.sample).seconds();
        if (position < length)
            return;
        if (current.next < 0 || length <= 0)
        {
            end();
            return;
        }
        position = current.next == entry ? std::fmod(position, length) : position - length;
        entry = current.next;
    }
}

void LayerVoice::advance(const LayerPlan &plan, SampleBank &bank, Chance &chance, double seconds)
{
    if (state == WAITING)
    {
        wait -= seconds;
        if (wait <= 0)
            state = SOUNDING;
        return;
    }
    if (state != SOUNDING)
        return;
    position += seconds * static_cast<double>(pitch * curvePitch);
    pass(plan, bank);
    if (state == ENDED && plan.repeats)
        begin(plan, bank, chance);
}

} // namespace port
