#include "port/fmod/samples/SampleFile.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <sndfile.h>
#include <string_view>

namespace port
{

namespace
{

constexpr int LEAST_RATE = 8000, MOST_RATE = 192000;
constexpr double MOST_SECONDS = 1800;
constexpr std::size_t BLOCK = 4096;    ///< frames
constexpr int OFF_MIDDLE = 150;        ///< what an end may lie beside the middle line without being heard
constexpr double RISE_SECONDS = 0.001; ///< short enough for the hardest attack
constexpr double FALL_SECONDS = 0.004;

std::string judge(const SF_INFO &info)
{
    if (info.samplerate < LEAST_RATE || info.samplerate > MOST_RATE)
        return "its rate of " + std::to_string(info.samplerate) + " Hz is not in 8000..192000";
    if (info.channels < 1 || info.channels > 2)
        return "it has " + std::to_string(info.channels) + " channels where one or two are expected";
    if (info.frames <= 0)
        return "it has no length";
    if (static_cast<double>(info.frames) / info.samplerate > MOST_SECONDS)
        return "it is longer than half an hour";
    return {};
}

/// One of the kinds that samples come in. The library knows more, not all of which are silent about damage.
bool isKnownKind(const std::string &path)
{
    char head[4] = {};
    std::ifstream(path, std::ios::binary).read(head, sizeof(head));
    const std::string_view kind(head, sizeof(head));
    return kind == "OggS" || kind == "RIFF" || kind == "fLaC";
}

} // namespace

struct SampleFile::Handle
{
    explicit Handle(const std::string &path)
        : sound(isKnownKind(path) ? sf_open(path.c_str(), SFM_READ, &info) : nullptr)
    {
    }
    ~Handle()
    {
        if (sound)
            sf_close(sound);
    }
    Handle(const Handle &) = delete;
    Handle &operator=(const Handle &) = delete;

    /// Frames up to the end, by reading them; no more than may be.
    sf_count_t countFrames()
    {
        std::vector<float> unheard(BLOCK * static_cast<std::size_t>(std::max(1, info.channels)));
        const auto most = static_cast<sf_count_t>(MOST_SECONDS * MOST_RATE);
        sf_count_t all = 0;
        for (sf_count_t count = 1; count > 0 && all < most; all += count)
            count = sf_readf_float(sound, unheard.data(), static_cast<sf_count_t>(BLOCK));
        return all;
    }

    SF_INFO info = {};
    SNDFILE *sound;
};

SampleFile::SampleFile(const std::string &path, std::string &why) : file(std::make_unique<Handle>(path))
{
    if (file->sound && file->info.frames == SF_COUNT_MAX)
    {
        // A file without its end does not tell its length.
        const sf_count_t frames = file->countFrames();
        file = std::make_unique<Handle>(path);
        file->info.frames = frames;
        cut = true;
    }
    why = file->sound ? judge(file->info) : "it is no Ogg, WAV or FLAC file that can be read";
    if (!why.empty())
    {
        file.reset();
        return;
    }
    shape = {file->info.samplerate, file->info.channels, static_cast<long>(file->info.frames)};
    block.resize(BLOCK * static_cast<std::size_t>(shape.channels));
}

SampleFile::~SampleFile() = default;

std::size_t SampleFile::read(std::int16_t *into, std::size_t frames)
{
    std::size_t done = 0;
    while (done < frames)
    {
        const auto wanted = static_cast<sf_count_t>(std::min(BLOCK, frames - done));
        const sf_count_t count = sf_readf_float(file->sound, block.data(), wanted);
        if (count <= 0)
            break;
        const std::size_t values = static_cast<std::size_t>(count * shape.channels);
        for (std::size_t i = 0; i < values; ++i)
            *into++ = static_cast<std::int16_t>(std::lround(std::clamp(block[i], -1.0F, 1.0F) * 32767));
        done += static_cast<std::size_t>(count);
    }
    return done;
}

bool SampleFile::seek(long frame)
{
    return sf_seek(file->sound, frame, SEEK_SET) == frame;
}

void mixDown(std::vector<std::int16_t> &stereo)
{
    const std::size_t frames = stereo.size() / 2;
    for (std::size_t i = 0; i < frames; ++i)
        stereo[i] = static_cast<std::int16_t>((stereo[2 * i] + stereo[2 * i + 1]) / 2);
    stereo.resize(frames);
}

void taperEnds(std::vector<std::int16_t> &samples, const SampleShape &shape)
{
    const auto channels = static_cast<std::size_t>(shape.channels);
    const std::size_t frames = samples.size() / channels;
    const auto lengthOf = [&](double seconds)
    { return std::min(frames, static_cast<std::size_t>(seconds * shape.rate)); };
    const auto scale = [&](std::size_t frame, float share)
    {
        for (std::size_t c = 0; c < channels; ++c)
        {
            std::int16_t &value = samples[frame * channels + c];
            value = static_cast<std::int16_t>(std::lround(static_cast<float>(value) * share));
        }
    };
    const auto isOff = [&](std::size_t frame) { return std::abs(samples[frame * channels]) > OFF_MIDDLE; };
    if (frames == 0)
        return;
    const std::size_t rise = isOff(0) ? lengthOf(RISE_SECONDS) : 0;
    for (std::size_t i = 0; i < rise; ++i)
        scale(i, static_cast<float>(i) / static_cast<float>(rise));
    const std::size_t fall = isOff(frames - 1) ? lengthOf(FALL_SECONDS) : 0;
    for (std::size_t i = 0; i < fall; ++i)
        scale(frames - 1 - i, static_cast<float>(i) / static_cast<float>(fall));
}

} // namespace port
