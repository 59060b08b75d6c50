#include "port/fmod/output/StreamQueue.h"

namespace port
{

namespace
{
constexpr std::size_t BLOCK_FRAMES = 4096; ///< read at a time: a tenth of a second costs well below a millisecond
constexpr int FIRST_BLOCKS = 4;
} // namespace

StreamQueue::StreamQueue(SampleStream stream) : stream(std::move(stream))
{
    alGenBuffers(BLOCKS, buffers.data());
    idle = buffers;
    block.reserve(BLOCK_FRAMES * 2);
}

StreamQueue::~StreamQueue()
{
    alDeleteBuffers(BLOCKS, buffers.data());
}

bool StreamQueue::queueOne(ALuint source)
{
    if (idleCount == 0 || stream.isAtEnd())
        return false;
    stream.read(block, BLOCK_FRAMES);
    if (block.empty())
        return false;
    const ALuint buffer = idle[--idleCount];
    alBufferData(buffer, stream.getChannels() == 2 ? AL_FORMAT_STEREO16 : AL_FORMAT_MONO16, block.data(),
                 static_cast<ALsizei>(block.size() * sizeof(std::int16_t)), stream.getRate());
    alSourceQueueBuffers(source, 1, &buffer);
    return true;
}

void StreamQueue::begin(ALuint source)
{
    for (int i = 0; i < FIRST_BLOCKS; ++i)
        queueOne(source);
}

void StreamQueue::tend(ALuint source)
{
    ALint processed = 0;
    alGetSourcei(source, AL_BUFFERS_PROCESSED, &processed);
    for (ALint i = 0; i < processed; ++i)
        alSourceUnqueueBuffers(source, 1, &idle[idleCount++]);
    // One more than was played, so that a slow game keeps up and a fast one fills the queue bit by bit.
    for (ALint i = 0; i <= processed; ++i)
        queueOne(source);
}

} // namespace port
