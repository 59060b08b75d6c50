// InstanceRing: the one buffer through which batches tell the device of their instances.
#pragma once

#include "foundation/ErrorCode.h"

struct IDirect3DDevice9;
struct IDirect3DVertexBuffer9;

/// A dynamic vertex buffer, written strictly in order and from the front again when it is full.
///
/// Grows to the largest request so far, to the byte. Lies in default memory: released before the device is reset.
class InstanceRing
{
public:
    InstanceRing() = default;
    ~InstanceRing() { release(); }
    InstanceRing(const InstanceRing &) = delete;
    InstanceRing &operator=(const InstanceRing &) = delete;

    /// Opens room for so many bytes; the result is written front to back, then unlocked.
    ErrorReturn<void *> lock(IDirect3DDevice9 &device, unsigned needed);
    ErrorCode unlock();
    void release();

    /// Borrowed; null before the first lock.
    IDirect3DVertexBuffer9 *getBuffer() const { return instanceBuffer; }
    /// Byte at which the last locked range begins.
    unsigned getCurrentStart() const { return currentInstanceStart; }

private:
    ErrorCode grow(IDirect3DDevice9 &device, unsigned needed);

    IDirect3DVertexBuffer9 *instanceBuffer = nullptr;
    unsigned instanceBufferSize = 0;   ///< bytes
    unsigned currentInstanceStart = 0; ///< bytes: where the last locked range begins
    unsigned lastInstanceEndByte = 0;  ///< bytes: where it ends
};
