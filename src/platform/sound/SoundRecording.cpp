#include "platform/sound/SoundRecording.h"

#include "foundation/Logger.h"
#include "port/win32/WholeFile.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace
{
constexpr std::size_t FRAME_BYTES = 4; ///< two channels of 16 bit
constexpr std::size_t MOST_BYTES = std::size_t(SoundRecording::SAMPLE_RATE) * FRAME_BYTES * 3600;

void appendNumber(std::string &bytes, std::uint32_t number, int count)
{
    for (int i = 0; i < count; ++i)
        bytes += static_cast<char>(number >> 8 * i & 0xFF);
}

/// The head of a WAV file: the lengths, and how its samples are to be read.
std::string headFor(std::size_t sampleBytes)
{
    constexpr std::uint32_t formatBytes = 16, headBytes = 36, plainNumbers = 1, channels = 2;
    const auto length = static_cast<std::uint32_t>(sampleBytes);
    std::string head = "RIFF";
    appendNumber(head, headBytes + length, 4);
    head += "WAVEfmt ";
    appendNumber(head, formatBytes, 4);
    appendNumber(head, plainNumbers, 2);
    appendNumber(head, channels, 2);
    appendNumber(head, SoundRecording::SAMPLE_RATE, 4);
    appendNumber(head, SoundRecording::SAMPLE_RATE * FRAME_BYTES, 4);
    appendNumber(head, FRAME_BYTES, 2);
    appendNumber(head, 16, 2);
    head += "data";
    appendNumber(head, length, 4);
    return head;
}
} // namespace

SoundRecording::~SoundRecording()
{
    if (isRunning())
        current = nullptr;
}

void SoundRecording::start(const String &file)
{
    target = file;
    samples.clear();
    tooLong = false;
    current = this;
}

void SoundRecording::add(std::span<const float> stereo)
{
    if (samples.size() + 2 * stereo.size() > MOST_BYTES)
    {
        if (!tooLong)
            KV_LOGF(Logger_::I_ERROR, "The sound of this run is longer than an hour; %s will end there.",
                    target.toCString());
        tooLong = true;
        return;
    }
    for (const float sample : stereo)
    {
        const float cut = std::clamp(std::isfinite(sample) ? sample : 0.f, -1.f, 1.f);
        appendNumber(samples, static_cast<std::uint32_t>(std::lround(cut * 32767.f)), 2);
    }
}

bool SoundRecording::finish()
{
    if (!current)
        return true;
    const bool written = current->write() && !current->tooLong;
    current = nullptr;
    return written;
}

bool SoundRecording::write() const
{
    const std::string problem = port::writeWholeFile(target.toCString(), headFor(samples.size()) + samples);
    if (problem.empty())
        return true;
    KV_LOGF(Logger_::I_ERROR, "The sound %s could not be written: %s", target.toCString(), problem.c_str());
    return false;
}
