#include "port/fmod/samples/SampleBank.h"

#include "port/fmod/Notices.h"
#include "port/win32/HostPath.h"

#include <cstdio>
#include <filesystem>
#include <system_error>

namespace port
{

namespace
{
constexpr double LONG_SECONDS = 10;
}

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

bool SampleBank::decode(int sample, std::vector<std::int16_t> &values)
{
    Sample &read = samples[static_cast<std::size_t>(sample)];
    std::string why;
    SampleFile file(read.path, why);
    if (!file.isOpen())
    {
        read.shape.frames = 0;
        tell(sample, "cannot be played any more: " + why + ".");
        return false;
    }
    const auto channels = static_cast<std::size_t>(read.shape.channels);
    values.resize(static_cast<std::size_t>(read.shape.frames) * channels);
    const std::size_t frames = file.read(values.data(), static_cast<std::size_t>(read.shape.frames));
    if (frames < static_cast<std::size_t>(read.shape.frames))
    {
        read.shape.frames = static_cast<long>(frames);
        tellCut(sample);
    }
    values.resize(frames * channels);
    return frames > 0;
}

ALuint SampleBank::bufferOf(int sample, SampleUse use)
{
    Sample &read = samples[static_cast<std::size_t>(sample)];
    ALuint &buffer = read.buffers[use.index()];
    std::vector<std::int16_t> values;
    if (buffer || shapeOf(sample).frames == 0 || !decode(sample, values))
        return buffer;
    if (!use.whole)
        taperEnds(values, read.shape);
    bool stereo = read.shape.channels == 2;
    if (stereo && use.placed)
    {
        tell(sample, "has two channels, but its event has a place in the world: it is played as one.");
        mixDown(values);
        stereo = false;
    }
    alGenBuffers(1, &buffer);
    alBufferData(buffer, stereo ? AL_FORMAT_STEREO16 : AL_FORMAT_MONO16, values.data(),
                 static_cast<ALsizei>(values.size() * sizeof(std::int16_t)), read.shape.rate);
    return buffer;
}

void SampleBank::want(int sample, SampleUse use)
{
    Sample &asked = samples[static_cast<std::size_t>(sample)];
    if (asked.buffers[use.index()] || asked.wanted[use.index()])
        return;
    asked.wanted[use.index()] = true;
    wanted.push_back({sample, use});
}

void SampleBank::readAhead()
{
    while (!wanted.empty())
    {
        const Wanted next = wanted.front();
        wanted.pop_front();
        Sample &asked = samples[static_cast<std::size_t>(next.sample)];
        asked.wanted[next.use.index()] = false;
        if (asked.buffers[next.use.index()] || isLong(next.sample))
            continue;
        bufferOf(next.sample, next.use);
        return;
    }
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
