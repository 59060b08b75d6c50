#include "port/fmod/samples/SampleBank.h"

#include "port/fmod/Notices.h"
#include "port/win32/HostPath.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <system_error>

namespace port
{

namespace
{
constexpr double LONG_SECONDS = 10;
constexpr std::size_t FRAMES_AHEAD = 16384; ///< a millisecond or two of work
} // namespace

int SampleBank::add(const std::string &path, const std::string &named)
{
    const auto [entry, isNew] = numbers.try_emplace(path, static_cast<int>(samples.size()));
    if (!isNew)
        return entry->second;
    Sample sample;
    sample.path = path;
    sample.named = named;
    std::error_code none;
    if (!std::filesystem::is_regular_file(path, none))
    {
        sample.looked = true;
        const std::string missing = explainMissingFile(path.c_str());
        tellAudio(named + ": " + (missing.empty() ? "'" + path + "' is no file." : missing), true);
    }
    samples.push_back(std::move(sample));
    return entry->second;
}

void SampleBank::tell(int sample, const std::string &fault) const
{
    const Sample &bad = samples[static_cast<std::size_t>(sample)];
    tellAudio(bad.named + ": '" + shownPath(bad.path) + "' " + fault, true);
}

void SampleBank::tellCut(int sample) const
{
    char seconds[32];
    std::snprintf(seconds, sizeof(seconds), "%.2f", samples[static_cast<std::size_t>(sample)].shape.seconds());
    tell(sample, std::string("is cut off after ") + seconds + " s; that much is played.");
}

const SampleShape &SampleBank::shapeOf(int sample)
{
    Sample &asked = samples[static_cast<std::size_t>(sample)];
    if (asked.looked)
        return asked.shape;
    asked.looked = true;
    std::string why;
    const SampleFile file(asked.path, why);
    if (!file.isOpen())
        tell(sample, "cannot be played: " + why + ".");
    else
        asked.shape = file.getShape();
    if (file.isCut())
        tellCut(sample);
    return asked.shape;
}

bool SampleBank::isLong(int sample)
{
    return shapeOf(sample).seconds() > LONG_SECONDS;
}

std::unique_ptr<SampleBank::Reading> SampleBank::beginReading(int sample, SampleUse use)
{
    Sample &read = samples[static_cast<std::size_t>(sample)];
    std::string why;
    auto begun = std::make_unique<Reading>(sample, use, read.path, why);
    if (begun->file.isOpen())
        return begun;
    read.shape.frames = 0;
    tell(sample, "cannot be played any more: " + why + ".");
    return nullptr;
}

void SampleBank::readOn(Reading &reading, std::size_t frames)
{
    Sample &read = samples[static_cast<std::size_t>(reading.sample)];
    const auto channels = static_cast<std::size_t>(read.shape.channels);
    const long left = std::max(0L, read.shape.frames - static_cast<long>(reading.frames));
    const std::size_t wantedFrames = std::min(frames, static_cast<std::size_t>(left));
    reading.values.resize((reading.frames + wantedFrames) * channels);
    const std::size_t count = reading.file.read(reading.values.data() + reading.frames * channels, wantedFrames);
    reading.frames += count;
    if (count == wantedFrames)
        return;
    reading.values.resize(reading.frames * channels);
    read.shape.frames = static_cast<long>(reading.frames);
    tellCut(reading.sample);
}

bool SampleBank::isComplete(const Reading &reading) const
{
    return static_cast<long>(reading.frames) >= samples[static_cast<std::size_t>(reading.sample)].shape.frames;
}

ALuint SampleBank::upload(Reading &reading)
{
    Sample &read = samples[static_cast<std::size_t>(reading.sample)];
    ALuint &buffer = read.buffers[reading.use.index()];
    if (reading.frames == 0)
        return 0;
    if (!reading.use.whole)
        taperEnds(reading.values, read.shape);
    bool stereo = read.shape.channels == 2;
    if (stereo && reading.use.placed)
    {
        tell(reading.sample, "has two channels, but its event has a place in the world: it is played as one.");
        mixDown(reading.values);
        stereo = false;
    }
    alGenBuffers(1, &buffer);
    alBufferData(buffer, stereo ? AL_FORMAT_STEREO16 : AL_FORMAT_MONO16, reading.values.data(),
                 static_cast<ALsizei>(reading.values.size() * sizeof(std::int16_t)), read.shape.rate);
    return buffer;
}

ALuint SampleBank::bufferOf(int sample, SampleUse use)
{
    const ALuint buffer = samples[static_cast<std::size_t>(sample)].buffers[use.index()];
    if (buffer || shapeOf(sample).frames == 0)
        return buffer;
    const bool isBegun = ahead && ahead->sample == sample && ahead->use.index() == use.index();
    const std::unique_ptr<Reading> reading = isBegun ? std::move(ahead) : beginReading(sample, use);
    if (!reading)
        return 0;
    readOn(*reading, static_cast<std::size_t>(shapeOf(sample).frames));
    return upload(*reading);
}

void SampleBank::want(int sample, SampleUse use)
{
    Sample &asked = samples[static_cast<std::size_t>(sample)];
    if (asked.buffers[use.index()] || asked.wanted[use.index()])
        return;
    asked.wanted[use.index()] = true;
    wanted.push_back({sample, use});
}

std::unique_ptr<SampleBank::Reading> SampleBank::beginWanted()
{
    while (!wanted.empty())
    {
        const Wanted next = wanted.front();
        wanted.pop_front();
        Sample &asked = samples[static_cast<std::size_t>(next.sample)];
        asked.wanted[next.use.index()] = false;
        if (!asked.buffers[next.use.index()] && shapeOf(next.sample).frames > 0 && !isLong(next.sample))
            return beginReading(next.sample, next.use);
    }
    return nullptr;
}

void SampleBank::readAhead()
{
    if (!ahead)
        ahead = beginWanted();
    if (!ahead)
        return;
    readOn(*ahead, FRAMES_AHEAD);
    if (!isComplete(*ahead))
        return;
    upload(*ahead);
    ahead.reset();
}

void SampleBank::dropBuffers()
{
    for (Sample &sample : samples)
        for (ALuint &buffer : sample.buffers)
            if (buffer)
            {
                alDeleteBuffers(1, &buffer);
                buffer = 0;
            }
}

void SampleBank::forgetBuffers()
{
    for (Sample &sample : samples)
        sample.buffers.fill(0);
}

} // namespace port
