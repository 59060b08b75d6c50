// AudioEventSystem: projects, events and the output they are heard through.
#pragma once

#include "port/fmod/FmodExtras.h"
#include "port/fmod/events/AudioProject.h"
#include "port/fmod/events/VoiceMixer.h"
#include "port/fmod/output/AudioSystem.h"
#include "port/fmod/output/Output.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace port
{

class MemoryHost;

/// Owns all that came from it. Everything that is asked takes effect at the next update, which alone calls the sound
/// library; so nothing here waits for a device.
class AudioEventSystem : public FMOD::EventSystem
{
public:
    AudioEventSystem(const AudioOutput &output, AudioSystem &lowLevel, std::uint64_t seed);
    ~AudioEventSystem() override;
    AudioEventSystem(const AudioEventSystem &) = delete;
    AudioEventSystem &operator=(const AudioEventSystem &) = delete;

    FMOD_RESULT getSystemObject(FMOD::System **system) override;
    FMOD_RESULT init(int maxChannels, FMOD_INITFLAGS flags, void *extraDriverData,
                     FMOD_EVENT_INITFLAGS eventFlags) override;
    FMOD_RESULT setMediaPath(const char *path) override;
    FMOD_RESULT load(const char *filename, FMOD_EVENT_LOADINFO *info, FMOD::EventProject **project) override;
    FMOD_RESULT getCategory(const char *name, FMOD::EventCategory **category) override;
    FMOD_RESULT set3DListenerAttributes(int listener, const FMOD_VECTOR *position, const FMOD_VECTOR *velocity,
                                        const FMOD_VECTOR *forward, const FMOD_VECTOR *up) override;
    FMOD_RESULT update() override;
    FMOD_RESULT unload() override;
    FMOD_RESULT release() override;

    AudioEvent &addEvent(EventPlan &plan);
    /// Ends its events and frees it.
    void removeProject(AudioProject &project);

    /// Has folders stand in for what projects bring that are loaded from now on, see `setAudioOverlays`.
    void setOverlays(std::vector<std::string> folders) { overlays = std::move(folders); }

    void render(double seconds, std::vector<float> &stereo);
    void pass(double seconds);
    void listHeard(std::vector<HeardEvent> &heard) const;
    AudioCounters getCounters() const;
    bool setHeadRelated(bool on) { return output.setHeadRelated(on); }
    void setMono(bool on);
    void chooseDevice(const std::string &name) { output.chooseDevice(name); }
    AudioSystem &getLowLevel() { return lowLevel; }

private:
    FMOD_RESULT readProject(const std::string &path, ProjectData &data) const;
    void layOver(ProjectData &project, const std::string &file) const;
    void step();
    void followDevice();
    void openSources();
    void hear(float lowpass, double now);
    void applyListener();
    void silenceAll();
    void orphanEvents(const AudioProject *project);

    AudioSystem &lowLevel;
    MemoryHost *memory = nullptr; ///< of the output, where it is memory
    Output output;
    CategoryTree categories;
    std::vector<std::unique_ptr<AudioProject>> projects;
    AudioEvents events; ///< in the order in which they were made
    std::optional<SourcePool> pool;
    std::optional<VoiceMixer> mixer;
    Chance chance;
    std::string folder;
    std::vector<std::string> overlays; ///< without a slash at their ends
    bool mono = false;                 ///< the same to both ears
    double lastTime = 0;               ///< s, host time of the last step
    struct Listener
    {
        FMOD_VECTOR position, forward{0, 0, 1}, up{0, 1, 0};
        bool changed = true;
    } listener;
};

} // namespace port
