#include "rendering/device/InstanceRing.h"

#include "rendering/device/DeviceCalls.h"

ErrorReturn<void *> InstanceRing::lock(IDirect3DDevice9 &device, unsigned needed)
{
    const ErrorCode grown = grow(device, needed);
    if (!grown.succeeded())
        return grown;
    unsigned offset = lastInstanceEndByte;
    DWORD flags = D3DLOCK_NOOVERWRITE;
    if (offset + needed > instanceBufferSize)
    {
        offset = 0;
        flags = D3DLOCK_DISCARD;
        lastInstanceEndByte = 0;
    }
    void *place = nullptr;
    const ErrorCode locked = verified(instanceBuffer->Lock(offset, needed, &place, flags));
    if (!locked.succeeded())
        return locked;
    currentInstanceStart = offset;
    lastInstanceEndByte += needed;
    return place;
}

ErrorCode InstanceRing::grow(IDirect3DDevice9 &device, unsigned needed)
{
    if (instanceBuffer && instanceBufferSize >= needed)
        return ErrorCode::SUCCESS;
    release();
    const ErrorCode result = verified(device.CreateVertexBuffer(needed, D3DUSAGE_DYNAMIC | D3DUSAGE_WRITEONLY, 0,
                                                                D3DPOOL_DEFAULT, &instanceBuffer, nullptr));
    if (result.succeeded())
        instanceBufferSize = needed;
    return result;
}

ErrorCode InstanceRing::unlock()
{
    if (!instanceBuffer)
        return ErrorCode::LOST_ASSET;
    const ErrorCode result = dxCall(instanceBuffer->Unlock());
    KV_ASSERT(result.succeeded(), "%s\n\n%s", "failed to unlock instance buffer", result.getErrorString().toCString());
    return result;
}

void InstanceRing::release()
{
    releaseAndForget(instanceBuffer);
    instanceBufferSize = 0;
    lastInstanceEndByte = 0;
}
