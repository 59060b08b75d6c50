#include "port/fmod/events/AudioEventSystem.h"

#include "port/fmod/Notices.h"
#include "port/fmod/output/MemoryHost.h"
#include "port/fmod/project/ProjectOverlay.h"
#include "port/fmod/project/ProjectParser.h"
#include "port/win32/HostPath.h"
#include "port/win32/WholeFile.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <thread>

namespace port
{

namespace
{

constexpr int MOST_CHANNELS = 200; ///< the library has 256 sources

std::unique_ptr<AudioHost> makeHost(const AudioOutput &output)
{
    if (output.kind == AudioOutput::MEMORY)
        return std::make_unique<MemoryHost>(output.sampleRate);
    return makeDeviceHost();
}

bool isFinite(const FMOD_VECTOR *vector)
{
    return !vector || (std::isfinite(vector->x) && std::isfinite(vector->y) && std::isfinite(vector->z));
}

} // namespace

AudioEventSystem::AudioEventSystem(const AudioOutput &wanted, AudioSystem &lowLevel, std::uint64_t seed)
    : lowLevel(lowLevel), output(makeHost(wanted), wanted.headRelated), chance(seed)
{
    memory = dynamic_cast<MemoryHost *>(&output.getHost());
    mono = wanted.mono;
    output.getHost().choose(wanted.device);
}

AudioEventSystem::~AudioEventSystem()
{
    unload();
    lowLevel.close();
}

FMOD_RESULT AudioEventSystem::getSystemObject(FMOD::System **system)
{
    if (!system)
        return FMOD_ERR_INVALID_PARAM;
    *system = &lowLevel;
    return FMOD_OK;
}

FMOD_RESULT AudioEventSystem::init(int maxChannels, FMOD_INITFLAGS, void *, FMOD_EVENT_INITFLAGS)
{
    if (mixer)
        return FMOD_ERR_INITIALIZED;
    if (maxChannels < 1)
        return FMOD_ERR_INVALID_PARAM;
    const int channels = std::min(maxChannels, MOST_CHANNELS);
    pool.emplace(channels, output.getHost().getLatency());
    mixer.emplace(*pool, channels);
    setMono(mono);
    lowLevel.noteInit();
    lastTime = output.getHost().getTime();
    followDevice();
    return FMOD_OK;
}

FMOD_RESULT AudioEventSystem::setMediaPath(const char *path)
{
    folder = hostPath(path);
    if (!folder.empty() && folder.back() != '/')
        folder += '/';
    return FMOD_OK;
}

FMOD_RESULT AudioEventSystem::load(const char *filename, FMOD_EVENT_LOADINFO *, FMOD::EventProject **project)
{
    if (!project || !filename)
        return FMOD_ERR_INVALID_PARAM;
    *project = nullptr;
    const std::string path = folder + hostPath(filename);
    ProjectData data;
    if (const FMOD_RESULT result = readProject(path, data); result != FMOD_OK)
        return result;
    layOver(data, hostPath(filename));
    const std::string ownFolder = path.substr(0, path.rfind('/') + 1);
    projects.push_back(std::make_unique<AudioProject>(*this, std::move(data), ownFolder, shownPath(path), categories));
    *project = projects.back().get();
    return FMOD_OK;
}

FMOD_RESULT AudioEventSystem::readProject(const std::string &path, ProjectData &data) const
{
    std::string text;
    if (const std::string reason = readWholeFile(path.c_str(), MOST_PROJECT_BYTES, text); !reason.empty())
    {
        tellAudio("The sound project " + shownPath(path) + " cannot be read: " + reason, true);
        return FMOD_ERR_FILE_NOTFOUND;
    }
    if (text.find('\0') != std::string::npos)
    {
        tellAudio("The sound project " + shownPath(path) + " is not text.", true);
        return FMOD_ERR_FORMAT;
    }
    data = parseProject(text, shownPath(path));
    for (const std::string &problem : data.problems)
        tellAudio(problem, true);
    return FMOD_OK;
}

void AudioEventSystem::layOver(ProjectData &project, const std::string &file) const
{
    // A sample is stood in for once: the last folder's comes first.
    for (auto overlay = overlays.rbegin(); overlay != overlays.rend(); ++overlay)
        overlaySamples(project, *overlay + "/");
    for (const std::string &overlay : overlays)
    {
        const std::string overlayFolder = overlay + "/", path = overlayFolder + file;
        ProjectData other;
        std::error_code none;
        if (std::filesystem::is_regular_file(path, none) && readProject(path, other) == FMOD_OK)
            overlayProject(project, std::move(other), overlayFolder, shownPath(path));
    }
}

FMOD_RESULT AudioEventSystem::getCategory(const char *name, FMOD::EventCategory **category)
{
    if (!category || !name)
        return FMOD_ERR_INVALID_PARAM;
    *category = categories.find(name);
    return *category ? FMOD_OK : FMOD_ERR_EVENT_NOTFOUND;
}

FMOD_RESULT AudioEventSystem::set3DListenerAttributes(int index, const FMOD_VECTOR *position,
                                                      const FMOD_VECTOR *velocity, const FMOD_VECTOR *forward,
                                                      const FMOD_VECTOR *up)
{
    if (index != 0)
        return FMOD_ERR_INVALID_PARAM;
    if (!isFinite(position) || !isFinite(velocity) || !isFinite(forward) || !isFinite(up))
        return FMOD_ERR_INVALID_FLOAT;
    listener.position = position ? *position : listener.position;
    listener.forward = forward ? *forward : listener.forward;
    listener.up = up ? *up : listener.up;
    listener.changed = true;
    return FMOD_OK;
}

AudioEvent &AudioEventSystem::addEvent(EventPlan &plan)
{
    events.push_back(std::make_unique<AudioEvent>(plan));
    if (mixer)
        mixer->reserve(events.size());
    for (const LayerPlan &layer : plan.layers)
        for (const TrackEntry &entry : layer.entries)
            if (!layer.streams)
                plan.bank->want(entry.sample, plan.useOf(entry));
    return *events.back();
}

void AudioEventSystem::setMono(bool on)
{
    mono = on;
    if (pool)
        pool->setMono(on);
    lowLevel.getRooms().setMono(on);
}

void AudioEventSystem::openSources()
{
    pool->open(output.getEffects(), lowLevel.getRooms());
    lowLevel.getRooms().open(output.getEffects());
    listener.changed = true;
}

void AudioEventSystem::followDevice()
{
    if (!pool)
        return;
    Output::Change change = output.watch();
    if (change == Output::LOST)
    {
        pool->forget();
        lowLevel.getRooms().forget();
        for (const auto &project : projects)
            project->getBank().forgetBuffers();
        change = output.watch();
    }
    if (change == Output::OPENED)
        openSources();
}

void AudioEventSystem::applyListener()
{
    if (!listener.changed)
        return;
    listener.changed = false;
    // The library's z points backwards.
    const FMOD_VECTOR &at = listener.position, &ahead = listener.forward, &up = listener.up;
    const ALfloat orientation[] = {ahead.x, ahead.y, -ahead.z, up.x, up.y, -up.z};
    alListener3f(AL_POSITION, at.x, at.y, -at.z);
    alListenerfv(AL_ORIENTATION, orientation);
}

void AudioEventSystem::hear(float lowpass, double now)
{
    const EffectCalls &calls = output.getEffects();
    if (calls.deferUpdates)
        calls.deferUpdates();
    applyListener();
    lowLevel.getRooms().apply();
    mixer->hear(events, lowpass, now, memory != nullptr);
    if (calls.processUpdates)
        calls.processUpdates();
    for (const auto &project : projects)
        project->getBank().readAhead();
}

void AudioEventSystem::step()
{
    followDevice();
    const double now = output.getHost().getTime();
    const double seconds = std::max(0.0, now - lastTime);
    lastTime = now;
    std::erase_if(events, [](const auto &event) { return event->isReleased(); });
    const GlideStep glide(static_cast<float>(seconds));
    for (const auto &event : events)
        event->advance(seconds, glide, chance);
    mixer->choose(events);
    const float lowpass = lowLevel.advanceLowpass(glide);
    if (output.isOpen())
        hear(lowpass, now);
}

FMOD_RESULT AudioEventSystem::update()
{
    if (!mixer)
        return FMOD_ERR_UNINITIALIZED;
    step();
    return FMOD_OK;
}

/// Stops what is heard without a click, and waits until it is.
void AudioEventSystem::silenceAll()
{
    const int heard = pool ? pool->countInUse() : 0;
    for (const auto &event : events)
        event->stop(true);
    if (!output.isOpen())
        return;
    const double latency = output.getHost().getLatency();
    pool->tend(output.getHost().getTime());
    if (heard > 0 && latency > 0)
        std::this_thread::sleep_for(std::chrono::duration<double>(latency));
    pool->stopAll();
}

void AudioEventSystem::orphanEvents(const AudioProject *project)
{
    for (const auto &event : events)
        if (!event->isOrphan() && (!project || project->owns(event->getPlan())))
            event->orphan();
}

void AudioEventSystem::removeProject(AudioProject &project)
{
    followDevice();
    silenceAll();
    orphanEvents(&project);
    if (output.isOpen())
        project.getBank().dropBuffers();
    std::erase_if(projects, [&](const auto &each) { return each.get() == &project; });
}

FMOD_RESULT AudioEventSystem::unload()
{
    while (!projects.empty())
        removeProject(*projects.back());
    return FMOD_OK;
}

FMOD_RESULT AudioEventSystem::release()
{
    delete this;
    return FMOD_OK;
}

} // namespace port
