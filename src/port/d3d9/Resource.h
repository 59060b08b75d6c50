// Resource: what all objects in a device's memory share: two counts, a name, and their place in the device's list.
#pragma once

#include "port/d3d9/d3d9.h"

#include <cstddef>
#include <string>

namespace port
{

class Device;

/// Life of an object that belongs to a device.
///
/// Users hold counted references, and while one does, the device lives too. The device itself holds an object that
/// is bound or built in without counting as a user, so a bound object that its users released stays drawable and
/// does not hinder a Reset. With neither left the object destroys itself. One thread only.
class Resource
{
public:
    Resource(Device &device, const char *kind, D3DPOOL pool);
    virtual ~Resource();
    Resource(const Resource &) = delete;
    Resource &operator=(const Resource &) = delete;

    ULONG addUser();
    ULONG removeUser();
    /// Keeps the object for the device's own needs.
    void hold();
    void letGo();

    HRESULT setPrivateData(const GUID &identifier, const void *data, DWORD size);

    bool isUsed() const { return users > 0; }
    ULONG userCount() const { return users; }
    D3DPOOL getPool() const { return pool; }
    /// Kind, name if it has one, and what distinguishes it; for error texts.
    virtual std::string describe() const;

protected:
    Device &device;
    /// Lets the graphics library's debuggers know the name.
    virtual void onNamed() {}
    std::string name;

private:
    friend class Device;
    const char *kind;
    D3DPOOL pool;
    ULONG users = 0;
    ULONG holders = 0;
    std::size_t listIndex = 0; ///< place in the device's list of resources
};

/// The published base of an interface on top of Resource.
template <class Interface>
class ResourceOf : public Interface, public Resource
{
public:
    using Resource::Resource;
    ULONG AddRef() override { return addUser(); }
    ULONG Release() override { return removeUser(); }
    HRESULT SetPrivateData(const GUID &identifier, const void *data, DWORD size, DWORD) override
    {
        return setPrivateData(identifier, data, size);
    }
};

/// Keeps a resource for the device's own needs; empty by default.
template <class T>
class Held
{
public:
    Held() = default;
    Held(const Held &) = delete;
    Held &operator=(const Held &) = delete;
    ~Held() { set(nullptr); }

    void set(T *next)
    {
        if (next == resource)
            return;
        T *previous = resource;
        resource = next;
        if (next)
            next->hold();
        if (previous)
            previous->letGo();
    }
    T *get() const { return resource; }
    T *operator->() const { return resource; }
    explicit operator bool() const { return resource != nullptr; }

private:
    T *resource = nullptr;
};

} // namespace port
