#include "port/d3d9/UniformRing.h"

#include "port/d3d9/D3D9Extras.h"

#include <cstring>

namespace port
{

UniformRing::UniformRing(GLuint binding, std::size_t size) : binding(binding), size(size)
{
    GLint wanted = 0;
    glGetIntegerv(GL_UNIFORM_BUFFER_OFFSET_ALIGNMENT, &wanted);
    if (wanted > 0)
        alignment = static_cast<std::size_t>(wanted);
    glCreateBuffers(1, &buffer);
    glNamedBufferData(buffer, static_cast<GLsizeiptr>(size), nullptr, GL_STREAM_DRAW);
}

UniformRing::~UniformRing()
{
    glDeleteBuffers(1, &buffer);
}

void UniformRing::write(const void *data, std::size_t length, FrameStats &stats)
{
    GLbitfield access = GL_MAP_WRITE_BIT | GL_MAP_UNSYNCHRONIZED_BIT;
    if (position + length > size)
    {
        position = 0;
        access = GL_MAP_WRITE_BIT | GL_MAP_INVALIDATE_BUFFER_BIT;
    }
    const auto offset = static_cast<GLintptr>(position), bytes = static_cast<GLsizeiptr>(length);
    if (void *target = glMapNamedBufferRange(buffer, offset, bytes, access))
    {
        std::memcpy(target, data, length);
        glUnmapNamedBuffer(buffer);
    }
    glBindBufferRange(GL_UNIFORM_BUFFER, binding, buffer, offset, bytes);
    position = (position + length + alignment - 1) / alignment * alignment;
    ++stats.uploads;
    stats.uploadBytes += length;
    ++stats.stateChanges;
}

} // namespace port
