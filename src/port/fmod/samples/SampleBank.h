// SampleBank: the project's samples, each file read once and kept as the device's buffers.
#pragma once

#include "port/fmod/samples/SampleFile.h"

#include <AL/al.h>

#include <array>
#include <deque>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace port
{

/// How a sample is played: each way has a buffer of its own.
struct SampleUse
{
    bool placed = false; ///< as one channel, which can come from somewhere
    bool whole = false;  ///< with its very first and last values, for loops; otherwise its ends are made quiet

    std::size_t index() const { return (placed ? 1U : 0U) + (whole ? 2U : 0U); }
};

/// Reads nothing before it is asked. What cannot be played is told once, with the line that names it, and stays silent.
class SampleBank
{
public:
    /// Takes a file in; the same path gives the same number. Tells where there is no such file.
    /// @param path   a host path
    /// @param named  where it is named, for texts, as "kaVel.fev:12"
    int add(const std::string &path, const std::string &named);

    /// What a sample holds; no frames where it cannot be played. Reads the file's head at the first ask.
    const SampleShape &shapeOf(int sample);
    /// Too long to be read as a whole, which would be felt as a hitch.
    bool isLong(int sample);
    /// The sample's buffer, read now if it was not yet; 0 where it cannot be played. Needs a current context.
    ALuint bufferOf(int sample, SampleUse use);
    /// Has a sample read in the time to come, by readAhead.
    void want(int sample, SampleUse use);
    /// Reads a piece of a sample that was wanted; does nothing where all are there. Needs a current context.
    void readAhead();
    /// Frees the device's buffers; they are made anew when needed. Needs a current context.
    void dropBuffers();
    /// Forgets buffers that went with their device.
    void forgetBuffers();

    const std::string &pathOf(int sample) const { return samples[static_cast<std::size_t>(sample)].path; }
    /// Tells that a sample has a fault, by its file and the line that names it.
    void tell(int sample, const std::string &fault) const;

private:
    struct Sample
    {
        std::string path;
        std::string named;
        SampleShape shape;
        bool looked = false; ///< its head was read
        std::array<ALuint, 4> buffers{};
        std::array<bool, 4> wanted{};
    };
    struct Wanted
    {
        int sample;
        SampleUse use;
    };
    void tellCut(int sample) const;
    /// A sample on its way from its file into a buffer.
    struct Reading
    {
        Reading(int sample, SampleUse use, const std::string &path, std::string &why)
            : sample(sample), use(use), file(path, why)
        {
        }

        const int sample;
        const SampleUse use;
        SampleFile file;
        std::vector<std::int16_t> values;
        std::size_t frames = 0; ///< that were read
    };
    std::unique_ptr<Reading> beginReading(int sample, SampleUse use);
    std::unique_ptr<Reading> beginWanted();
    void readOn(Reading &reading, std::size_t frames);
    bool isComplete(const Reading &reading) const;
    ALuint upload(Reading &reading);

    std::vector<Sample> samples;
    std::unordered_map<std::string, int> numbers;
    std::deque<Wanted> wanted;
    std::unique_ptr<Reading> ahead; ///< under way by readAhead
};

} // namespace port
