// PathMemory: the memory of path searches, counted under a category of its own.
#pragma once

#include "foundation/Allocators.h"

#include <cstddef>
#include <memory>
#include <type_traits>

/// What searches for paths keep from one to the next.
extern AllocationCategory PathAllocation;

/// An array that grows and is never copied, under `PathAllocation`.
///
/// What grows is made anew and zero: what stood in the array is lost.
template <class T>
class PathArray
{
    static_assert(std::is_trivially_destructible_v<T>);

public:
    PathArray() = default;
    ~PathArray() { deallocate(entries); }
    PathArray(const PathArray &) = delete;
    PathArray &operator=(const PathArray &) = delete;

    /// Makes room for as many entries; nothing happens where it is there already.
    void fit(std::size_t count)
    {
        if (count <= room)
            return;
        deallocate(entries);
        entries = static_cast<T *>(ballocate(MallocAllocator(), PathAllocation, sizeof(T), count));
        room = entries ? count : 0;
        std::uninitialized_value_construct_n(entries, room);
    }

    std::size_t getRoom() const { return room; }
    T *data() { return entries; }
    T &operator[](std::size_t index) { return entries[index]; }
    const T &operator[](std::size_t index) const { return entries[index]; }

private:
    T *entries = nullptr;
    std::size_t room = 0;
};
