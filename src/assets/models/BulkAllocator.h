// BulkAllocator: memory for vertex and index vectors that are about to be filled by one read.
#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <utility>

/// Memory for one big block: huge pages from 4 MiB up, the ordinary heap below. Throws std::bad_alloc.
void *allocateBulk(std::size_t bytes);

/// Gives back a block of allocateBulk; `bytes` must be the size it was asked for with.
void freeBulk(void *block, std::size_t bytes) noexcept;

/// Allocator whose elements start unwritten: resizing a vector of it touches no memory.
///
/// Only for trivial element types; whoever resizes such a vector writes every element that is read later.
template <class T>
struct BulkAllocator
{
    using value_type = T;

    BulkAllocator() = default;
    template <class U>
    BulkAllocator(const BulkAllocator<U> &) noexcept
    {
    }

    T *allocate(std::size_t count)
    {
        if (count > static_cast<std::size_t>(-1) / sizeof(T))
            throw std::bad_array_new_length();
        return static_cast<T *>(allocateBulk(count * sizeof(T)));
    }
    void deallocate(T *block, std::size_t count) noexcept { freeBulk(block, count * sizeof(T)); }

    /// Default initialisation in place of the usual zeroing.
    template <class U>
    void construct(U *place) noexcept
    {
        ::new (static_cast<void *>(place)) U;
    }
    template <class U, class... Args>
    void construct(U *place, Args &&...args)
    {
        ::new (static_cast<void *>(place)) U{std::forward<Args>(args)...};
    }

    template <class U>
    bool operator==(const BulkAllocator<U> &) const noexcept
    {
        return true;
    }
};
