// Buffer: vertex and index memory, locked for writing.
#pragma once

#include "port/d3d9/Resource.h"

#include <cstdint>
#include <epoxy/gl.h>

namespace port
{

/// Memory of fixed size in the graphics library; the part that vertex and index buffers share.
class BufferMemory
{
public:
    BufferMemory(UINT length, DWORD usage);
    ~BufferMemory();
    BufferMemory(const BufferMemory &) = delete;
    BufferMemory &operator=(const BufferMemory &) = delete;

    /// False when the graphics memory is used up.
    bool isValid() const { return valid; }
    HRESULT lock(Device &device, UINT offset, UINT size, void **data, DWORD flags);
    HRESULT unlock();
    GLuint id() const { return buffer; }
    /// Told apart from every other buffer that ever was, unlike the id, which the library gives out again.
    std::uint64_t serial() const { return serialNumber; }

private:
    UINT length;
    DWORD usage;
    GLuint buffer = 0;
    std::uint64_t serialNumber;
    bool valid = false;
    bool locked = false;
};

class VertexBuffer final : public ResourceOf<IDirect3DVertexBuffer9>
{
public:
    VertexBuffer(Device &device, UINT length, DWORD usage, D3DPOOL pool);
    HRESULT Lock(UINT offset, UINT size, void **data, DWORD flags) override;
    HRESULT Unlock() override { return memory.unlock(); }
    bool isValid() const { return memory.isValid(); }
    const BufferMemory &getMemory() const { return memory; }

private:
    void onNamed() override;
    BufferMemory memory;
};

class IndexBuffer final : public ResourceOf<IDirect3DIndexBuffer9>
{
public:
    IndexBuffer(Device &device, UINT length, DWORD usage, D3DFORMAT format, D3DPOOL pool);
    HRESULT Lock(UINT offset, UINT size, void **data, DWORD flags) override;
    HRESULT Unlock() override { return memory.unlock(); }
    bool isValid() const { return memory.isValid(); }
    const BufferMemory &getMemory() const { return memory; }
    bool isWide() const { return wide; }

private:
    void onNamed() override;
    BufferMemory memory;
    bool wide; ///< 32-bit indices
};

} // namespace port
