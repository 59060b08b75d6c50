#include "assets/models/BulkAllocator.h"

#include "port/win32/VirtualMemory.h"

namespace
{

/// Below two large pages the heap wastes less.
constexpr std::size_t largeBlockSize = std::size_t(4) << 20;

} // namespace

void *allocateBulk(std::size_t bytes)
{
    if (bytes < largeBlockSize)
        return ::operator new(bytes);
    void *block = VirtualAlloc(nullptr, bytes, MEM_RESERVE | MEM_COMMIT | MEM_LARGE_PAGES, PAGE_READWRITE);
    if (!block)
        throw std::bad_alloc();
    return block;
}

void freeBulk(void *block, std::size_t bytes) noexcept
{
    if (bytes < largeBlockSize)
        ::operator delete(block);
    else
        VirtualFree(block, 0, MEM_RELEASE);
}
