#include "support/AllocationCount.h"

#include "foundation/Allocators.h"

#include <cstdlib>
#include <new>

namespace
{

thread_local std::size_t heapAllocations = 0;

void *allocate(std::size_t size, std::size_t alignment)
{
    ++heapAllocations;
    const std::size_t rounded = (size + alignment - 1) / alignment * alignment;
    void *block = std::aligned_alloc(alignment, rounded ? rounded : alignment);
    if (!block)
        throw std::bad_alloc();
    return block;
}

} // namespace

void *operator new(std::size_t size)
{
    return allocate(size, alignof(std::max_align_t));
}

void *operator new(std::size_t size, std::align_val_t alignment)
{
    return allocate(size, static_cast<std::size_t>(alignment));
}

void *operator new(std::size_t size, const std::nothrow_t &) noexcept
{
    try
    {
        return allocate(size, alignof(std::max_align_t));
    }
    catch (const std::bad_alloc &)
    {
        return nullptr;
    }
}

void operator delete(void *block, const std::nothrow_t &) noexcept
{
    std::free(block);
}

void operator delete(void *block) noexcept
{
    std::free(block);
}

void operator delete(void *block, std::size_t) noexcept
{
    std::free(block);
}

void operator delete(void *block, std::align_val_t) noexcept
{
    std::free(block);
}

void operator delete(void *block, std::size_t, std::align_val_t) noexcept
{
    std::free(block);
}

std::size_t heapAllocationsOf(const std::function<void()> &step, int times)
{
    const std::size_t before = heapAllocations;
    for (int i = 0; i < times; ++i)
        step();
    return heapAllocations - before;
}

std::size_t allocationsOf(const std::function<void()> &step, int times)
{
    const auto blocks = []
    {
        std::size_t count = 0;
        for (auto *category = AllocationCategory::getFirst(); category; category = category->getNext())
            count += category->allocationsEver;
        return count;
    };
    const std::size_t before = blocks();
    const std::size_t heap = heapAllocationsOf(step, times);
    return heap + blocks() - before;
}
