// Handle: a checked reference to an object of the tree, by number.
#pragma once

#include "foundation/KVString.h"
#include "object/tree/ObjectMap.h"

#include <cstddef>
#include <functional>
#include <type_traits>

class Object;
class Variant;

/// Refers to an object by its number, which is never reused: a handle to an object that died resolves to nothing.
///
/// Safe to keep over frames and to test at any time. 0 is the invalid handle and the default. The number alone is
/// stored, so a handle of any class has the same 32-bit representation; the class is the static one only.
template <class T = Object>
class Handle : public IStringizable
{
public:
    /// What a lookup gives: the object, or null. Borrowed for the statement, never kept over a frame's end.
    struct Result
    {
        T *ptr = nullptr;

        explicit operator bool() const { return ptr != nullptr; }
        T *operator->() const { return ptr; }
        T &operator*() const { return *ptr; }
        bool operator==(const Result &rhs) const { return ptr == rhs.ptr; }
        bool operator!=(const Result &rhs) const { return ptr != rhs.ptr; }
    };

    constexpr Handle() = default;

    /// A handle to a derived class serves as a handle to its base.
    template <class Derived>
    requires(!std::is_same_v<T, Derived> &&
             (std::is_same_v<std::remove_const_t<T>, Object> ||
              std::is_convertible_v<Derived *, T *>)) constexpr Handle(const Handle<Derived> &rhs)
        : value(rhs.getNumber())
    {
    }

    /// The object, or null if it has been cremated. A murdered object resolves until then. Cost: one table probe.
    Result lookup() const { return Result{static_cast<T *>(ObjectMap_::find(value))}; }
    /// The object of a handle that is known to resolve.
    T *lookupNoCheck() const { return static_cast<T *>(ObjectMap_::find(value)); }
    /// Whether the object still exists; true for a murdered one that is not cremated yet.
    bool isValid() const { return ObjectMap_::find(value) != nullptr; }

    /// The object's number; 0 for the invalid handle.
    constexpr machine_word getNumber() const { return value; }

    constexpr bool operator==(const Handle &rhs) const { return value == rhs.value; }
    constexpr bool operator!=(const Handle &rhs) const { return value != rhs.value; }
    constexpr bool operator<(const Handle &rhs) const { return value < rhs.value; }

    /// "Handle<class>(object)", or "Handle<class>(<invalid>)" where it does not resolve.
    String toString() const;

private:
    template <class>
    friend class Handle;
    friend class ObjectMap_;
    friend class Variant;
    template <class To, class From>
    friend Handle<To> unchecked_handle_cast(const Handle<From> &h);

    explicit constexpr Handle(machine_word val) : value(val) {}

    machine_word value = 0;
};

static_assert(sizeof(Handle<>) == 4, "handles cross files and the reflection layer as 32-bit numbers");

template <class T>
std::size_t hash_value(const Handle<T> &h)
{
    return h.getNumber();
}

template <class T>
struct std::hash<Handle<T>>
{
    std::size_t operator()(const Handle<T> &h) const { return h.getNumber(); }
};

/// The text of a handle whose static class has this name; see Handle::toString.
String handleToString(const String &className, const Handle<Object> &h);

/// Copies the number and changes the static class; the caller vouches for the object's class.
template <class To, class From>
Handle<To> unchecked_handle_cast(const Handle<From> &h)
{
    return Handle<To>(h.getNumber());
}

#include "object/tree/HandleCasts.h"
