#include "port/d3d9/Buffer.h"

#include "port/d3d9/Device.h"

namespace port
{

BufferMemory::BufferMemory(UINT length, DWORD usage) : length(length), usage(usage)
{
    static std::uint64_t lastSerial = 0;
    serialNumber = ++lastSerial;
    while (glGetError() != GL_NO_ERROR)
    {
    }
    glCreateBuffers(1, &buffer);
    // Mutable storage, since a discarding lock replaces it.
    glNamedBufferData(buffer, length, nullptr, usage & D3DUSAGE_DYNAMIC ? GL_STREAM_DRAW : GL_STATIC_DRAW);
    valid = glGetError() == GL_NO_ERROR;
}

BufferMemory::~BufferMemory()
{
    glDeleteBuffers(1, &buffer);
}

HRESULT BufferMemory::lock(Device &device, UINT offset, UINT size, void **data, DWORD flags)
{
    const bool unsynchronised = flags & (D3DLOCK_NOOVERWRITE | D3DLOCK_DISCARD);
    if (!data || locked || offset > length || size > length - offset)
        return D3DERR_INVALIDCALL;
    if (unsynchronised && !(usage & D3DUSAGE_DYNAMIC))
        return D3DERR_INVALIDCALL;
    if (size == 0)
        size = length - offset;

    GLbitfield access = GL_MAP_WRITE_BIT;
    if (flags & D3DLOCK_DISCARD)
        access |= GL_MAP_INVALIDATE_BUFFER_BIT;
    else if (flags & D3DLOCK_NOOVERWRITE)
        access |= GL_MAP_UNSYNCHRONIZED_BIT;
    else if (!(usage & D3DUSAGE_WRITEONLY))
        access |= GL_MAP_READ_BIT;
    *data = glMapNamedBufferRange(buffer, offset, size, access);
    if (!*data)
        return D3DERR_OUTOFVIDEOMEMORY;
    locked = true;
    device.countUpload(size);
    return D3D_OK;
}

HRESULT BufferMemory::unlock()
{
    if (!locked)
        return D3DERR_INVALIDCALL;
    locked = false;
    // The driver may lose a mapping on a mode switch; what was written is then gone.
    return glUnmapNamedBuffer(buffer) ? D3D_OK : D3DERR_DRIVERINTERNALERROR;
}

VertexBuffer::VertexBuffer(Device &device, UINT length, DWORD usage, D3DPOOL pool)
    : ResourceOf(device, "vertex buffer", pool), memory(length, usage)
{
}

HRESULT VertexBuffer::Lock(UINT offset, UINT size, void **data, DWORD flags)
{
    return memory.lock(device, offset, size, data, flags);
}

void VertexBuffer::onNamed()
{
    glObjectLabel(GL_BUFFER, memory.id(), static_cast<GLsizei>(name.size()), name.data());
}

IndexBuffer::IndexBuffer(Device &device, UINT length, DWORD usage, D3DFORMAT format, D3DPOOL pool)
    : ResourceOf(device, "index buffer", pool), memory(length, usage), wide(format == D3DFMT_INDEX32)
{
}

HRESULT IndexBuffer::Lock(UINT offset, UINT size, void **data, DWORD flags)
{
    return memory.lock(device, offset, size, data, flags);
}

void IndexBuffer::onNamed()
{
    glObjectLabel(GL_BUFFER, memory.id(), static_cast<GLsizei>(name.size()), name.data());
}

} // namespace port
