#include "port/fmod/events/EventPlan.h"

#include <algorithm>
#include <cmath>

namespace port
{

namespace
{

constexpr int MIDDLE_PRIORITY = 128;
constexpr float PRIORITY_STEP = 32; ///< for a factor of two

std::string placeOf(const std::string &file, int line)
{
    return file + ":" + std::to_string(line);
}

std::string pathOf(const std::string &folder, const std::string &path)
{
    return path.starts_with('/') ? path : folder + path;
}

LayerPlan planLayer(const LayerData &data, bool loops, SampleBank &bank, const std::string &folder,
                    const std::string &file)
{
    LayerPlan plan;
    plan.volume = data.volume;
    plan.pitch = data.pitch;
    plan.delay = data.delay;
    plan.streams = data.stream;
    const bool seamless = loops && data.samples.size() == 1;
    plan.repeats = loops && !seamless;
    for (const SampleData &sample : data.samples)
    {
        const int index = static_cast<int>(plan.entries.size());
        plan.entries.push_back(
            {bank.add(pathOf(folder, sample.path), placeOf(file, sample.line)), seamless ? index : -1});
        plan.weights.push_back(sample.weight);
    }
    return plan;
}

LayerPlan planTension(const SegmentData &segment, SampleBank &bank, const std::string &folder, const std::string &file)
{
    LayerPlan plan;
    plan.streams = true;
    plan.followsTension = true;
    plan.tension = segment.tension;
    plan.entries.push_back({bank.add(pathOf(folder, segment.path), placeOf(file, segment.line)), 0});
    return plan;
}

/// Whether each segment has one that follows, so that no more than all of them lead back to one of them.
bool isEndless(const std::vector<TrackEntry> &chain)
{
    int entry = 0;
    for (std::size_t i = 0; i < chain.size() && entry >= 0; ++i)
        entry = chain[static_cast<std::size_t>(entry)].next;
    return entry >= 0;
}

/// The chain of segments that leads, and a layer for each that follows the tension.
void planMusic(EventPlan &plan, const std::string &folder, const std::string &file)
{
    const MusicData &music = plan.data->music;
    plan.beat = 60 / static_cast<double>(music.beatsPerMinute);
    LayerPlan leading;
    leading.streams = true;
    std::vector<const SegmentData *> chain;
    for (const SegmentData &segment : music.segments)
        if (!segment.isLayer)
            chain.push_back(&segment);
    for (const SegmentData *segment : chain)
    {
        const auto next = std::find_if(chain.begin(), chain.end(),
                                       [&](const SegmentData *each) { return each->name == segment->next; });
        leading.entries.push_back({plan.bank->add(pathOf(folder, segment->path), placeOf(file, segment->line)),
                                   next == chain.end() ? -1 : static_cast<int>(next - chain.begin())});
    }
    if (leading.entries.empty())
        return;
    plan.endless = isEndless(leading.entries);
    plan.layers.push_back(std::move(leading));
    for (const SegmentData &segment : music.segments)
        if (segment.isLayer)
            plan.layers.push_back(planTension(segment, *plan.bank, folder, file));
}

} // namespace

EventPlan makePlan(const EventData &data, SampleBank &bank, const std::string &folder, const std::string &file)
{
    EventPlan plan;
    plan.data = &data;
    plan.bank = &bank;
    plan.weight = std::exp2(static_cast<float>(MIDDLE_PRIORITY - data.priority) / PRIORITY_STEP);
    for (std::size_t i = 0; i < data.parameters.size(); ++i)
    {
        plan.placed = plan.placed || data.parameters[i].name == "distance";
        if (data.parameters[i].name == "tension")
            plan.tensionParameter = static_cast<int>(i);
    }
    plan.endless = data.loop;
    if (data.music.beatsPerMinute > 0)
        planMusic(plan, folder, file);
    else
        for (const LayerData &layer : data.layers)
            plan.layers.push_back(planLayer(layer, data.loop, bank, folder, file));
    return plan;
}

} // namespace port
