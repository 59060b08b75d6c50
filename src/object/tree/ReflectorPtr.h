// ReflectorPtr: counted reference to anything that can be looked at or called by name.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <utility>

class IReflectedThing;

/// Marks the constructor that refers to a thing of the static table without counting.
struct StaticThing
{
};

/// Counted reference to a reflected thing: a class, a function, an enum, a script callable, a message, a bound call.
///
/// Null is allowed and is the default. Things of the static table are not counted, so that copying a reference to
/// them touches no memory but its own; bound calls and script callables die with their last reference.
class ReflectorPtr
{
public:
    constexpr ReflectorPtr() = default;
    constexpr ReflectorPtr(std::nullptr_t) {}
    /// Refers to a thing of the static table; usable in constant initialisers.
    constexpr ReflectorPtr(StaticThing, const IReflectedThing *thing) : irt(thing) {}
    inline ReflectorPtr(const IReflectedThing *thing);
    inline ReflectorPtr(const ReflectorPtr &rhs);
    constexpr ReflectorPtr(ReflectorPtr &&rhs) noexcept : irt(std::exchange(rhs.irt, nullptr)) {}
    constexpr ~ReflectorPtr()
    {
        if (irt)
            release();
    }

    inline ReflectorPtr &operator=(const ReflectorPtr &rhs);
    ReflectorPtr &operator=(ReflectorPtr &&rhs) noexcept
    {
        std::swap(irt, rhs.irt);
        return *this;
    }

    const IReflectedThing *operator->() const { return irt; }
    const IReflectedThing &operator*() const { return *irt; }
    const IReflectedThing *get() const { return irt; }

    bool operator==(const ReflectorPtr &rhs) const { return irt == rhs.irt; }
    bool operator!=(const ReflectorPtr &rhs) const { return irt != rhs.irt; }
    /// Orders by address: an order for containers, not one to show.
    bool operator<(const ReflectorPtr &rhs) const { return irt < rhs.irt; }
    bool operator!() const { return !irt; }
    explicit operator bool() const { return irt != nullptr; }

private:
    inline void acquire() const;
    inline void release() const;

    const IReflectedThing *irt = nullptr;
};

inline std::size_t hash_value(const ReflectorPtr &p)
{
    return reinterpret_cast<std::uintptr_t>(p.get()) >> 4;
}

template <>
struct std::hash<ReflectorPtr>
{
    std::size_t operator()(const ReflectorPtr &p) const { return hash_value(p); }
};

#include "object/tree/IReflectedThing.h"
