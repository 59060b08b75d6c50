// StreamQueue: blocks of a stream, handed to a source ahead of its playing.
#pragma once

#include "port/fmod/samples/SampleStream.h"

#include <AL/al.h>

#include <array>

namespace port
{

/// Some two seconds of a stream: what the game may stop for, as to load a level, without a gap in the music.
class StreamQueue
{
public:
    /// Makes the device's buffers; its context is current.
    explicit StreamQueue(SampleStream stream);
    /// Frees them; the source has let go of them.
    ~StreamQueue();
    StreamQueue(const StreamQueue &) = delete;
    StreamQueue &operator=(const StreamQueue &) = delete;

    /// Queues a few blocks, enough to begin with.
    void begin(ALuint source);
    /// Takes back what was played and reads as much and a block more.
    void tend(ALuint source);
    /// Everything was read, and no more comes.
    bool isAtEnd() const { return stream.isAtEnd(); }

private:
    static constexpr std::size_t BLOCKS = 22;
    bool queueOne(ALuint source);

    SampleStream stream;
    std::array<ALuint, BLOCKS> buffers{};
    std::array<ALuint, BLOCKS> idle{}; ///< the first idleCount are not queued
    std::size_t idleCount = BLOCKS;
    std::vector<std::int16_t> block;
};

} // namespace port
