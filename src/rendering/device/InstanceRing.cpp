#include "rendering/device/InstanceRing.h"

#include "rendering/device/DeviceCalls.h"

ErrorReturn<void *> InstanceRing::lock(IDirect3DDevice9 &device, unsigned needed)
{
    const ErrorCode grown = grow(device, needed);
    if (!grown.succeeded())
        return grown;
    unsigned offset = lastEnd;
    DWORD flags = D3DLOCK_NOOVERWRITE;
    if (offset + needed > size)
    {
        offset = 0;
        flags = D3DLOCK_DISCARD;
        lastEnd = 0;
    }
    void *place = nullptr;
    const ErrorCode locked = verified(buffer->Lock(offset, needed, &place, flags));
    if (!locked.succeeded())
        return locked;
    currentStart = offset;
    lastEnd += needed;
    return place;
}

ErrorCode InstanceRing::grow(IDirect3DDevice9 &device, unsigned needed)
{
    if (buffer && size >= needed)
        return ErrorCode::SUCCESS;
    release();
    const ErrorCode result = verified(
        device.CreateVertexBuffer(needed, D3DUSAGE_DYNAMIC | D3DUSAGE_WRITEONLY, 0, D3DPOOL_DEFAULT, &buffer, nullptr));
    if (result.succeeded())
        size = needed;
    return result;
}

ErrorCode InstanceRing::unlock()
{
    if (!buffer)
        return ErrorCode::LOST_ASSET;
    const ErrorCode result = dxCall(buffer->Unlock());
    KV_ASSERT(result.succeeded(), "%s\n\n%s", "failed to unlock instance buffer", result.getErrorString().toCString());
    return result;
}

void InstanceRing::release()
{
    releaseAndForget(buffer);
    size = 0;
    lastEnd = 0;
}
