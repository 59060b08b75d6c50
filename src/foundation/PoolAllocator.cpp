// PoolAllocator: pages, their layout and the free list.
//
// A page is a link to the next page and then its blocks; a block is a header, a pad, the object, a pad and the bytes
// that align the next block, whose header shares them. The flag that says whether a block is in use is the last byte
// of its header, just before the left pad.
#include "foundation/PoolAllocator.h"

#include "foundation/Logger.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

#ifdef KV_SANITIZE
#include <sanitizer/asan_interface.h>
#else
#define ASAN_POISON_MEMORY_REGION(address, size) (static_cast<void>(address), static_cast<void>(size))
#define ASAN_UNPOISON_MEMORY_REGION(address, size) (static_cast<void>(address), static_cast<void>(size))
#endif

namespace
{

std::size_t bytesToAlign(std::size_t size, std::size_t alignment)
{
    return alignment - (size & (alignment - 1));
}

bool holdsOnly(const char *bytes, std::size_t length, unsigned char pattern)
{
    return std::all_of(bytes, bytes + length, [pattern](char c) { return static_cast<unsigned char>(c) == pattern; });
}

} // namespace

PoolAllocator::PoolAllocator(std::size_t ObjectSize, std::size_t maxPages)
    : objectSize(std::max(ObjectSize, sizeof(GenericObject))), maxPages(maxPages)
{
    interBlockAlignSize = bytesToAlign(objectSize, alignment);
    distanceToFirstBlock = sizeof(GenericObject) + firstBlockAlignSize + blockHeaderSize + padBytes;
    totalBlockSize = objectSize + 2 * padBytes + interBlockAlignSize;
    stats.ObjectSize_ = objectSize;
    stats.PageSize_ = totalBlockSize * objectsPerPage - interBlockAlignSize + sizeof(GenericObject) + blockHeaderSize;
    AllocatePage();
}

PoolAllocator::~PoolAllocator()
{
    Logger().writeLine(Logger_::I_DEBUG, "Destroying pool allocator\n");
    while (GenericObject *const page = pageList)
    {
        ASAN_UNPOISON_MEMORY_REGION(page, stats.PageSize_);
        pageList = page->Next;
        delete[] reinterpret_cast<char *>(page);
    }
}

IAllocator::AllocationResult PoolAllocator::ballocate(std::size_t size)
{
    if (size > objectSize)
        return {nullptr, 0, this};
    if (!freeList)
        AllocatePage();

    GenericObject *const object = freeList;
    freeList = object->Next;
    --stats.FreeObjects_;
    char *const block = reinterpret_cast<char *>(object);
    ASAN_UNPOISON_MEMORY_REGION(block, objectSize);
    setAllocatedBit(block, true);
    ++stats.Allocations_;
    ++stats.ObjectsInUse_;
    stats.MostObjects_ = std::max(stats.MostObjects_, stats.ObjectsInUse_);
    return {block, totalBlockSize, this};
}

int PoolAllocator::deallocate(void *Object)
{
    auto *const object = static_cast<GenericObject *>(Object);
    char *const block = static_cast<char *>(Object);
    setAllocatedBit(block, false);
    object->Next = freeList;
    freeList = object;
    // All but the link, which this class goes on using.
    ASAN_POISON_MEMORY_REGION(block + sizeof(GenericObject), objectSize - sizeof(GenericObject));
    --stats.ObjectsInUse_;
    ++stats.FreeObjects_;
    ++stats.Deallocations_;
    return 1;
}

void PoolAllocator::AllocatePage()
{
    if (maxPages != 0 && stats.PagesInUse_ >= maxPages)
        throw OAException(OAException::E_NO_PAGES,
                          "allocate_new_page: The maximum number of pages has been allocated.");
    GenericObject *page = nullptr;
    try
    {
        page = reinterpret_cast<GenericObject *>(new char[stats.PageSize_]);
    }
    catch (const std::bad_alloc &failure)
    {
        throw OAException(OAException::E_NO_MEMORY, std::string("Call to new failed: ") + failure.what());
    }
    page->Next = pageList;
    pageList = page;

    for (std::size_t index = 0; index < objectsPerPage; ++index)
    {
        char *const block = getBlockOnPageByIndex(page, index);
        if (debugOn)
            PrepBlock(block, UNALLOCATED_PATTERN, index + 1 < objectsPerPage);
        setAllocatedBit(block, false);
        auto *const object = reinterpret_cast<GenericObject *>(block);
        object->Next = freeList;
        freeList = object;
        ++stats.FreeObjects_;
        ASAN_POISON_MEMORY_REGION(block + sizeof(GenericObject), objectSize - sizeof(GenericObject));
    }
    ++stats.PagesInUse_;
}

void PoolAllocator::PrepBlock(char *dataStart, unsigned char dataSignature, bool fillAlignment)
{
    std::memset(dataStart, dataSignature, objectSize);
    std::memset(dataStart - padBytes, PAD_PATTERN, padBytes);
    std::memset(dataStart + objectSize, PAD_PATTERN, padBytes);
    if (fillAlignment)
        std::memset(dataStart + objectSize + padBytes, ALIGN_PATTERN, interBlockAlignSize);
}

PoolAllocator::DeadCanaries PoolAllocator::CheckCanaries(const char *block) const
{
    int dead = BothCanariesLived;
    if (!holdsOnly(block - padBytes, padBytes, PAD_PATTERN))
        dead |= LeftCanaryDied;
    if (!holdsOnly(block + objectSize, padBytes, PAD_PATTERN))
        dead |= RightCanaryDied;
    return static_cast<DeadCanaries>(dead);
}

bool PoolAllocator::checkAllocatedBit(const char *block) const
{
    return (block[-static_cast<std::ptrdiff_t>(padBytes) - 1] & 1) != 0;
}

void PoolAllocator::setAllocatedBit(char *block, bool allocated)
{
    if (blockHeaderSize != 0)
        block[-static_cast<std::ptrdiff_t>(padBytes) - 1] = allocated;
}

bool PoolAllocator::isBlockFree(const char *block) const
{
    if (blockHeaderSize != 0)
        return !checkAllocatedBit(block);
    for (const GenericObject *free = freeList; free; free = free->Next)
        if (reinterpret_cast<const char *>(free) == block)
            return true;
    return false;
}

bool PoolAllocator::isBlockOnPage(const GenericObject *page, const char *block) const
{
    const auto start = reinterpret_cast<std::uintptr_t>(page);
    const auto address = reinterpret_cast<std::uintptr_t>(block);
    return address >= start && address < start + stats.PageSize_;
}

char *PoolAllocator::getBlockOnPageByIndex(GenericObject *page, std::size_t index) const
{
    return reinterpret_cast<char *>(page) + distanceToFirstBlock + index * totalBlockSize;
}

bool PoolAllocator::isPageEmpty(GenericObject *page) const
{
    for (std::size_t index = 0; index < objectsPerPage; ++index)
        if (!isBlockFree(getBlockOnPageByIndex(page, index)))
            return false;
    return true;
}

GenericObject *PoolAllocator::findPage(const char *block) const
{
    for (GenericObject *page = pageList; page; page = page->Next)
        if (isBlockOnPage(page, block))
            return page;
    return nullptr;
}

std::size_t PoolAllocator::FreeEmptyPages()
{
    std::vector<GenericObject *> empty;
    GenericObject **link = &pageList;
    while (GenericObject *const page = *link)
    {
        if (isPageEmpty(page))
        {
            empty.push_back(page);
            *link = page->Next;
        }
        else
            link = &page->Next;
    }
    std::sort(empty.begin(), empty.end());

    const auto isOnEmptyPage = [&](GenericObject *object)
    {
        const auto after = std::upper_bound(empty.begin(), empty.end(), object);
        return after != empty.begin() && isBlockOnPage(after[-1], reinterpret_cast<char *>(object));
    };
    GenericObject **freeLink = &freeList;
    while (GenericObject *const object = *freeLink)
    {
        if (isOnEmptyPage(object))
            *freeLink = object->Next;
        else
            freeLink = &object->Next;
    }
    for (GenericObject *const page : empty)
    {
        ASAN_UNPOISON_MEMORY_REGION(page, stats.PageSize_);
        delete[] reinterpret_cast<char *>(page);
    }
    stats.FreeObjects_ -= empty.size() * objectsPerPage;
    stats.PagesInUse_ -= empty.size();
    return empty.size();
}

void PoolAllocator::verifyBlock(const void *block) const
{
    const char *const bytes = static_cast<const char *>(block);
    GenericObject *const page = findPage(bytes);
    if (!page)
        throw OAException(OAException::E_BAD_ADDRESS, "verifyBlock: The block is on no page of this pool.");
    const char *const first = getBlockOnPageByIndex(page, 0);
    if (bytes < first || static_cast<std::size_t>(bytes - first) % totalBlockSize != 0)
        throw OAException(OAException::E_BAD_BOUNDARY, "verifyBlock: The address is not the start of a block.");
    if (isBlockFree(bytes))
        throw OAException(OAException::E_MULTIPLE_FREE, "verifyBlock: The block has already been freed.");
    if (debugOn && CheckCanaries(bytes) != BothCanariesLived)
        throw OAException(OAException::E_CORRUPTED_BLOCK, "verifyBlock: The pad bytes have been overwritten.");
}
