#include "port/fmod/SoundWorld.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <numbers>
#include <sndfile.h>
#include <unistd.h>

namespace
{

float rootMean(const std::vector<float> &stereo, std::size_t side)
{
    double sum = 0;
    for (std::size_t i = side; i < stereo.size(); i += 2)
        sum += static_cast<double>(stereo[i]) * stereo[i];
    return stereo.empty() ? 0 : static_cast<float>(std::sqrt(2 * sum / static_cast<double>(stereo.size())));
}

} // namespace

float Heard::left() const
{
    return rootMean(stereo, 0);
}

float Heard::right() const
{
    return rootMean(stereo, 1);
}

float Heard::level() const
{
    return std::hypot(left(), right());
}

float Heard::at(float hz) const
{
    double real = 0, imaginary = 0;
    const std::size_t frames = stereo.size() / 2;
    for (std::size_t i = 0; i < frames; ++i)
    {
        const double phase = 2 * std::numbers::pi * hz * static_cast<double>(i) / SoundWorld::RATE;
        const double value = stereo[2 * i] + stereo[2 * i + 1];
        real += value * std::cos(phase);
        imaginary += value * std::sin(phase);
    }
    return frames ? static_cast<float>(2 * std::hypot(real, imaginary) / static_cast<double>(frames)) : 0;
}

float Heard::largestStep() const
{
    float largest = 0;
    for (std::size_t i = 2; i < stereo.size(); ++i)
        largest = std::max(largest, std::abs(stereo[i] - stereo[i - 2]));
    return largest;
}

Heard Heard::part(double from, double seconds) const
{
    const auto frame = [this](double at)
    { return std::min(stereo.size(), 2 * static_cast<std::size_t>(at * SoundWorld::RATE)); };
    const auto begin = stereo.begin();
    return {
        {begin + static_cast<std::ptrdiff_t>(frame(from)), begin + static_cast<std::ptrdiff_t>(frame(from + seconds))}};
}

Heard &Heard::operator+=(const Heard &more)
{
    stereo.insert(stereo.end(), more.stereo.begin(), more.stereo.end());
    return *this;
}

std::vector<float> sine(float hz, double from, double to, float amplitude, int channels)
{
    std::vector<float> values;
    for (long i = std::lround(from * SoundWorld::RATE); i < std::lround(to * SoundWorld::RATE); ++i)
        values.insert(values.end(), static_cast<std::size_t>(channels),
                      amplitude * static_cast<float>(std::sin(2 * std::numbers::pi * hz * i / SoundWorld::RATE)));
    return values;
}

std::vector<float> twoHalves()
{
    std::vector<float> values = sine(441, 0, 1);
    const std::vector<float> second = sine(882, 1, 2);
    values.insert(values.end(), second.begin(), second.end());
    return values;
}

SoundWorld::SoundWorld()
    : folder(std::filesystem::temp_directory_path() /
             ("kvSound" + std::to_string(getpid()) + testing::UnitTest::GetInstance()->current_test_info()->name()))
{
    std::filesystem::create_directories(folder);
    port::setAudioNotice([this](const std::string &text, bool) { notices.push_back(text); });
    port::setAudioOutput({port::AudioOutput::MEMORY, RATE, false});
    port::setAudioSeed(1);
}

SoundWorld::~SoundWorld()
{
    end();
    port::setAudioNotice({});
    std::filesystem::remove_all(folder);
}

void SoundWorld::end()
{
    if (!system)
        return;
    system->release();
    system = nullptr;
}

void SoundWorld::sound(const std::string &name, const std::vector<float> &values, int channels, int rate) const
{
    SF_INFO info = {};
    info.samplerate = rate;
    info.channels = channels;
    info.format = name.ends_with(".ogg") ? SF_FORMAT_OGG | SF_FORMAT_VORBIS : SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    SNDFILE *sound = sf_open(path(name).c_str(), SFM_WRITE, &info);
    ASSERT_NE(sound, nullptr) << sf_strerror(nullptr);
    // In pieces: the library's encoder overflows its stack on long ones.
    const auto frames = static_cast<sf_count_t>(values.size()) / channels;
    for (sf_count_t done = 0; done < frames; done += 4096)
        sf_writef_float(sound, values.data() + done * channels, std::min<sf_count_t>(4096, frames - done));
    sf_close(sound);
}

void SoundWorld::tone(const std::string &name, float hz, double seconds, int channels, float amplitude, int rate) const
{
    const double stretch = static_cast<double>(rate) / RATE;
    sound(name, sine(static_cast<float>(hz / stretch), 0, seconds * stretch, amplitude, channels), channels, rate);
}

void SoundWorld::file(const std::string &name, const std::string &bytes) const
{
    std::ofstream(folder / name, std::ios::binary) << bytes;
}

void SoundWorld::load(const std::string &text)
{
    file("test.fev", "project test 1\n" + text);
    if (!system)
    {
        ASSERT_EQ(FMOD_EventSystem_Create(&system), FMOD_OK);
        ASSERT_EQ(system->init(64, 26, nullptr), FMOD_OK);
        system->setMediaPath((folder.string() + "\\").c_str());
    }
    ASSERT_EQ(system->load("test.fev", nullptr, &project), FMOD_OK);
    project->getGroup("test/sfx", false, &group);
}

FMOD::Event &SoundWorld::event(const std::string &name)
{
    FMOD::Event *event = nullptr;
    EXPECT_EQ(group->getEvent(name.c_str(), FMOD_EVENT_DEFAULT, &event), FMOD_OK) << name;
    return *event;
}

FMOD::Event &SoundWorld::play(const std::string &name)
{
    FMOD::Event &started = event(name);
    started.start();
    return started;
}

void SoundWorld::set(FMOD::Event &event, const char *name, float value)
{
    FMOD::EventParameter *parameter = nullptr;
    ASSERT_EQ(event.getParameter(name, &parameter), FMOD_OK) << name;
    parameter->setValue(value);
}

void SoundWorld::place(FMOD::Event &event, float x, float y, float z)
{
    const FMOD_VECTOR at = {x, y, z};
    event.set3DAttributes(&at, nullptr);
}

bool SoundWorld::plays(FMOD::Event &event)
{
    FMOD_EVENT_STATE state = 0;
    event.getState(&state);
    return (state & FMOD_EVENT_STATE_PLAYING) != 0;
}

Heard SoundWorld::render(double seconds)
{
    Heard all;
    Heard frame;
    for (long left = std::lround(seconds / FRAME); left > 0; --left)
    {
        system->update();
        port::renderAudio(*system, FRAME, frame.stereo);
        all += frame;
    }
    return all;
}

void SoundWorld::pass(double seconds)
{
    for (long left = std::lround(seconds / FRAME); left > 0; --left)
    {
        system->update();
        port::passAudioTime(*system, FRAME);
    }
}

void SoundWorld::update()
{
    system->update();
}

std::vector<port::HeardEvent> SoundWorld::heard() const
{
    std::vector<port::HeardEvent> list;
    port::listHeard(*system, list);
    return list;
}

int SoundWorld::told(const std::string &text) const
{
    return static_cast<int>(std::count_if(notices.begin(), notices.end(),
                                          [&](const std::string &notice)
                                          { return notice.find(text) != std::string::npos; }));
}
