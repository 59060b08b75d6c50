// DeviceCalls: how the answers of the device and its resources are taken.
#pragma once

#include "foundation/Assertions.h"
#include "foundation/ErrorCode.h"
#include "port/d3d9/d3d9.h"

/// Raises a minor assertion for a failure; a lost device is none, since the next frame brings it back.
inline ErrorCode verified(HRESULT hr)
{
    const ErrorCode result = dxCall(hr);
    KV_VERIFY(result.succeeded() || hr == D3DERR_DEVICELOST, result.getErrorString());
    return result;
}

/// Gives back the reference to a resource, if there is one.
template <class Resource>
void releaseAndForget(Resource *&resource)
{
    if (resource)
        resource->Release();
    resource = nullptr;
}
