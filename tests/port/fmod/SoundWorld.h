// SoundWorld: a sound project of a test's own, rendered into memory and measured.
#pragma once

#include "port/fmod/FmodExtras.h"

#include <filesystem>
#include <string>
#include <vector>

/// What was heard: left and right in turns.
struct Heard
{
    std::vector<float> stereo;

    /// Loudness of one side or both, root of the mean square.
    float left() const;
    float right() const;
    float level() const;
    /// Loudness of one frequency, both sides together.
    float at(float hz) const;
    /// The largest difference from one value to the next of a side.
    float largestStep() const;
    Heard part(double from, double seconds) const;
    Heard &operator+=(const Heard &more);
};

/// A sine from one second of it to another, by which it can be cut and put together again.
std::vector<float> sine(float hz, double from, double to, float amplitude = 0.5F, int channels = 1);
/// A second of 441 Hz and one of 882 Hz, which tells where in it one is.
std::vector<float> twoHalves();

/// An event system over memory with samples and a project in a folder that goes with it.
class SoundWorld
{
public:
    static constexpr int RATE = 44100;
    static constexpr double FRAME = 1.0 / 60;

    SoundWorld();
    ~SoundWorld();
    SoundWorld(const SoundWorld &) = delete;
    SoundWorld &operator=(const SoundWorld &) = delete;

    /// Writes a sine; its length should be a whole number of waves for a loop.
    void tone(const std::string &name, float hz, double seconds, int channels = 1, float amplitude = 0.5F,
              int rate = RATE) const;
    /// Writes a file from its values.
    void sound(const std::string &name, const std::vector<float> &values, int channels = 1, int rate = RATE) const;
    void file(const std::string &name, const std::string &bytes) const;
    std::string path(const std::string &name) const { return (folder / name).string(); }

    /// Opens the system, unless it is, and loads a project; its group is "test/sfx".
    void load(const std::string &project);
    FMOD::Event &event(const std::string &name);
    /// An instance that plays.
    FMOD::Event &play(const std::string &name);
    static void set(FMOD::Event &event, const char *parameter, float value);
    static void place(FMOD::Event &event, float x, float y, float z);
    static bool plays(FMOD::Event &event);

    /// Frames of a sixtieth, each with an update.
    Heard render(double seconds);
    /// Updates and lets time pass without anybody hearing.
    void pass(double seconds);
    void update();
    port::AudioCounters counters() const { return port::audioCounters(*system); }
    std::vector<port::HeardEvent> heard() const;
    void end();

    FMOD::EventSystem *system = nullptr;
    FMOD::EventProject *project = nullptr;
    FMOD::EventGroup *group = nullptr;
    std::vector<std::string> notices;
    /// Notices that hold a text.
    int told(const std::string &text) const;

private:
    std::filesystem::path folder;
};
