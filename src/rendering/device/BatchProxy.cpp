#include "rendering/device/BatchProxy.h"

#include "foundation/Assertions.h"

#include <cstring>

void BatchProxy::addInstanceData(const void *data, std::size_t size)
{
    const bool fits = instanceCountRemaining > 0 && size <= instanceSize;
    KV_VERIFY(fits, "An instance record of %zu bytes does not fit: %zu records of %zu bytes are left.", size,
              instanceCountRemaining, instanceSize);
    if (!fits)
        return;
    std::memcpy(position, data, size);
    position += instanceSize;
    --instanceCountRemaining;
}

void BatchProxy::clearRemaining()
{
    std::memset(position, 0, instanceCountRemaining * instanceSize);
    position += instanceCountRemaining * instanceSize;
    instanceCountRemaining = 0;
}
