#include "port/d3d9/Resource.h"

#include "port/d3d9/Device.h"

#include <cstring>

namespace port
{

Resource::Resource(Device &device, const char *kind, D3DPOOL pool) : device(device), kind(kind), pool(pool)
{
    device.enlist(*this);
}

Resource::~Resource()
{
    device.delist(*this);
}

ULONG Resource::addUser()
{
    if (users == 0)
        device.AddRef();
    return ++users;
}

ULONG Resource::removeUser()
{
    const ULONG left = --users;
    if (left > 0)
        return left;
    // The device may go with its last user, and must outlive what it destroys.
    Device &owner = device;
    if (holders == 0)
        delete this;
    owner.Release();
    return 0;
}

void Resource::hold()
{
    ++holders;
}

void Resource::letGo()
{
    if (--holders == 0 && users == 0)
        delete this;
}

HRESULT Resource::setPrivateData(const GUID &identifier, const void *data, DWORD size)
{
    if (!data)
        return D3DERR_INVALIDCALL;
    if (std::memcmp(&identifier, &WKPDID_D3DDebugObjectName, sizeof(GUID)) != 0)
        return D3D_OK; // nobody but the caller knows what other data means, and nobody reads it back
    name.assign(static_cast<const char *>(data), size);
    while (!name.empty() && name.back() == '\0')
        name.pop_back();
    onNamed();
    return D3D_OK;
}

std::string Resource::describe() const
{
    return name.empty() ? std::string(kind) : std::string(kind) + " \"" + name + "\"";
}

} // namespace port
