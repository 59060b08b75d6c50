// UniformRing: shader constants on their way to the GPU, written one behind the other.
#pragma once

#include <cstddef>
#include <epoxy/gl.h>

namespace port
{

struct FrameStats;

/// The shader constants of one uniform block.
///
/// One buffer that blocks are appended to and that is replaced when it is full, so no write waits for the GPU. Only
/// the last block written is certain to stay readable, so each binding point has a ring of its own.
class UniformRing
{
public:
    UniformRing(GLuint binding, std::size_t size);
    ~UniformRing();
    UniformRing(const UniformRing &) = delete;
    UniformRing &operator=(const UniformRing &) = delete;

    /// Copies a block in and binds it; it must fit the ring.
    void write(const void *data, std::size_t length, FrameStats &stats);

private:
    GLuint binding;
    std::size_t size; ///< bytes
    GLuint buffer = 0;
    std::size_t position = 0;
    std::size_t alignment = 256; ///< of block starts, as the driver wants it
};

} // namespace port
