// What the audio port offers beyond the published operations: rendering, lists and counters.
#include "port/fmod/FmodExtras.h"

#include "port/fmod/events/AudioEventSystem.h"
#include "port/fmod/Notices.h"
#include "port/fmod/output/MemoryHost.h"
#include "port/fmod/project/ProjectParser.h"
#include "port/fmod/samples/SampleFile.h"
#include "port/win32/HostPath.h"
#include "port/win32/WholeFile.h"

#include <AL/alc.h>
#include <AL/alext.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <system_error>
#include <unordered_set>

namespace port
{

namespace
{

constexpr int MOST_FRAMES = 882;  ///< rendered at a time: changes are taken in as often as in a running game
constexpr float CAPTURED = 32768; ///< values of 16 bits
constexpr float FOREIGN_LOUDNESS = 0.05F;

struct Settings
{
    AudioOutput output;
    std::uint64_t seed = 1;
    std::vector<std::string> overlays;
    EventSystemMaker maker = nullptr;
};

Settings &settings()
{
    static Settings current;
    return current;
}

/// Low-level systems whose event system is gone, which are still to be released by their holders.
std::vector<std::unique_ptr<AudioSystem>> &lowLevelSystems()
{
    static std::vector<std::unique_ptr<AudioSystem>> all;
    return all;
}

/// Whether systems and events are a test's own, of which nothing here knows.
bool areForeign()
{
    return settings().maker != nullptr;
}

AudioEventSystem &ours(FMOD::EventSystem &system)
{
    return static_cast<AudioEventSystem &>(system);
}

void roundTo16Bits(std::vector<float> &values)
{
    for (float &value : values)
        value = std::clamp(std::round(value * CAPTURED), -CAPTURED, CAPTURED - 1) / CAPTURED;
}

} // namespace

void AudioEventSystem::render(double seconds, std::vector<float> &stereo)
{
    stereo.clear();
    if (!memory || !mixer)
        return;
    memory->wake();
    const auto frames = memory->takeFrames(seconds);
    stereo.resize(static_cast<std::size_t>(frames) * 2);
    for (long done = 0; done < frames;)
    {
        if (done > 0 || !output.isOpen())
            step();
        const int count = static_cast<int>(std::min<long>(MOST_FRAMES, frames - done));
        if (output.isOpen())
            memory->render(output.getDevice(), stereo.data() + done * 2, count);
        else
            memory->pass(count);
        done += count;
    }
    roundTo16Bits(stereo);
}

void AudioEventSystem::pass(double seconds)
{
    if (!memory)
        return;
    std::vector<float> unheard;
    if (output.isOpen())
        render(seconds, unheard);
    else
        memory->pass(memory->takeFrames(seconds));
}

void AudioEventSystem::listHeard(std::vector<HeardEvent> &heard) const
{
    heard.clear();
    for (const auto &event : events)
    {
        if (!event->chosen)
            continue;
        const EventData &data = *event->getPlan().data;
        heard.push_back({event.get(), data.name.c_str(), data.caption.c_str(), event->loudness(), data.leastCaption,
                         event->apparentPosition(), event->getPlan().placed, event->getStartOrder()});
    }
    std::sort(heard.begin(), heard.end(),
              [](const HeardEvent &a, const HeardEvent &b)
              { return a.loudness != b.loudness ? a.loudness > b.loudness : a.startOrder < b.startOrder; });
}

AudioCounters AudioEventSystem::getCounters() const
{
    AudioCounters counters;
    for (const auto &event : events)
        counters.playing += event->isUnderWay();
    counters.voices = mixer ? mixer->countChosen() : 0;
    counters.stolen = mixer ? mixer->countStolen() : 0;
    counters.devices = output.getOpenedCount();
    counters.silent = !output.isOpen();
    return counters;
}

void setAudioOutput(const AudioOutput &output)
{
    settings().output = output;
}

void setEventSystemMaker(EventSystemMaker maker)
{
    settings().maker = maker;
}

void setAudioSeed(std::uint64_t seed)
{
    settings().seed = seed;
}

void setAudioOverlays(const std::vector<std::string> &folders)
{
    settings().overlays = folders;
}

void renderAudio(FMOD::EventSystem &system, double seconds, std::vector<float> &stereo)
{
    if (!areForeign())
        ours(system).render(seconds, stereo);
}

void passAudioTime(FMOD::EventSystem &system, double seconds)
{
    if (!areForeign())
        ours(system).pass(seconds);
}

void setSoundPath(FMOD::Event &event, const SoundPath &path)
{
    if (!areForeign())
        static_cast<AudioEvent &>(event).tellPath(path);
}

void listHeard(FMOD::EventSystem &system, std::vector<HeardEvent> &heard)
{
    if (!areForeign())
        ours(system).listHeard(heard);
}

float loudnessAtAMetre(FMOD::Event &event)
{
    return areForeign() ? FOREIGN_LOUDNESS : static_cast<AudioEvent &>(event).loudnessAtAMetre();
}

std::vector<EventFacts> listEvents(FMOD::EventProject &project)
{
    std::vector<EventFacts> facts;
    if (areForeign())
        return facts;
    for (const EventPlan &plan : static_cast<AudioProject &>(project).getPlans())
        facts.push_back({plan.group, plan.data->name, plan.data->caption, plan.data->category, plan.data->leastCaption,
                         plan.endless, plan.placed});
    return facts;
}

std::vector<std::string> projectProblems(const char *folder, const char *filename)
{
    if (areForeign())
        return {};
    const std::string path = hostPath(folder);
    std::string text;
    if (const std::string reason = readWholeFile((path + filename).c_str(), MOST_PROJECT_BYTES, text); !reason.empty())
        return {shownPath(path + filename) + ": " + reason};
    const std::string name = shownPath(path + filename);
    ProjectData data = parseProject(text, name);
    std::unordered_set<std::string> looked;
    const auto look = [&](const std::string &sample, int line)
    {
        if (!looked.insert(sample).second)
            return;
        std::string why = explainMissingFile((path + sample).c_str());
        std::error_code unknown;
        if (why.empty() && !std::filesystem::is_regular_file(path + sample, unknown))
            why = "it is no ordinary file";
        if (!why.empty() || !SampleFile(path + sample, why).isOpen())
            data.problems.push_back(name + ":" + std::to_string(line) + ": " + sample + ": " + why);
    };
    for (const GroupData &group : data.groups)
        for (const EventData &event : group.events)
        {
            for (const LayerData &layer : event.layers)
                for (const SampleData &sample : layer.samples)
                    look(sample.path, sample.line);
            for (const SegmentData &segment : event.music.segments)
                look(segment.path, segment.line);
        }
    return data.problems;
}

void setReverbZones(FMOD::EventSystem &system, const FMOD_REVERB_PROPERTIES &first,
                    const FMOD_REVERB_PROPERTIES &second, float share)
{
    if (!areForeign())
        ours(system).getLowLevel().getRooms().setZones(first, second, share);
}

AudioCounters audioCounters(FMOD::EventSystem &system)
{
    return areForeign() ? AudioCounters() : ours(system).getCounters();
}

bool setHeadRelated(FMOD::EventSystem &system, bool on)
{
    return !areForeign() && ours(system).setHeadRelated(on);
}

void setMono(FMOD::EventSystem &system, bool on)
{
    if (!areForeign())
        ours(system).setMono(on);
}

std::vector<std::string> audioDevices()
{
    std::vector<std::string> names;
    if (areForeign())
        return names;
    const ALCenum all =
        alcIsExtensionPresent(nullptr, "ALC_ENUMERATE_ALL_EXT") ? ALC_ALL_DEVICES_SPECIFIER : ALC_DEVICE_SPECIFIER;
    // One text behind the other, an empty one behind the last.
    for (const ALCchar *name = alcGetString(nullptr, all); name && *name; name += names.back().size() + 1)
        names.emplace_back(name);
    return names;
}

void setAudioDevice(FMOD::EventSystem &system, const std::string &name)
{
    if (!areForeign())
        ours(system).chooseDevice(name);
}

} // namespace port

FMOD_RESULT FMOD_EventSystem_Create(FMOD::EventSystem **eventSystem)
{
    if (!eventSystem)
        return FMOD_ERR_INVALID_PARAM;
    const port::Settings &wanted = port::settings();
    if (wanted.maker)
        return wanted.maker(eventSystem);
    auto &lowLevel = port::lowLevelSystems();
    std::erase_if(lowLevel, [](const auto &each) { return each->isClosed(); });
    lowLevel.push_back(std::make_unique<port::AudioSystem>());
    auto *const made = new port::AudioEventSystem(wanted.output, *lowLevel.back(), wanted.seed);
    made->setOverlays(wanted.overlays);
    *eventSystem = made;
    return FMOD_OK;
}
