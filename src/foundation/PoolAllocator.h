// PoolAllocator: blocks of one size, cut from pages and kept on a free list.
#pragma once

#include "foundation/Allocators.h"

#include <cstddef>
#include <exception>
#include <string>

/// PoolAllocator statistical info.
struct PoolAllocatorStats
{
    std::size_t ObjectSize_ = 0;    ///< bytes of a block
    std::size_t FreeObjects_ = 0;   ///< blocks on the free list
    std::size_t ObjectsInUse_ = 0;  ///< blocks handed out
    std::size_t PagesInUse_ = 0;    ///< pages allocated
    std::size_t PageSize_ = 0;      ///< bytes of a page
    std::size_t MostObjects_ = 0;   ///< most blocks ever in use together
    std::size_t Allocations_ = 0;   ///< requests served
    std::size_t Deallocations_ = 0; ///< blocks taken back
};

/// Exception thrown by the object allocator when things go wrong.
class OAException : public std::exception
{
public:
    enum OA_EXCEPTION
    {
        E_NO_MEMORY = 0,      ///< out of physical memory
        E_NO_PAGES = 1,       ///< out of logical memory
        E_BAD_ADDRESS = 2,    ///< block address is not on a page
        E_BAD_BOUNDARY = 3,   ///< block address is on a page but not on a block boundary
        E_MULTIPLE_FREE = 4,  ///< block has already been freed
        E_CORRUPTED_BLOCK = 5 ///< block has been corrupted: pad bytes have been overwritten
    };

    OAException(OA_EXCEPTION code, const std::string &message) : error_code_(code), message_(message) {}
    OA_EXCEPTION code() const noexcept { return error_code_; }
    const char *what() const noexcept override { return message_.c_str(); }

private:
    OA_EXCEPTION error_code_;
    std::string message_;
};

/// This allows us to easily treat raw objects as nodes in a linked list.
struct GenericObject
{
    GenericObject *Next;
};

/// A very memory-efficient memory manager.
///
/// Hands out blocks of up to one size in constant time; a freed block is the next to be handed out. Pages go back to
/// the system only by FreeEmptyPages() and at destruction. Not for use by several threads.
class PoolAllocator : public IAllocator
{
public:
    static constexpr std::size_t DEFAULT_OBJECTS_PER_PAGE = 30;
    static constexpr std::size_t DEFAULT_MAX_PAGES = 0;

    static constexpr unsigned char UNALLOCATED_PATTERN = 0xAA;
    static constexpr unsigned char ALLOCATED_PATTERN = 0xBB;
    static constexpr unsigned char FREED_PATTERN = 0xCC;
    static constexpr unsigned char PAD_PATTERN = 0xDD;
    static constexpr unsigned char ALIGN_PATTERN = 0xEE;

    /// possible return values for CheckCanaries
    enum DeadCanaries
    {
        BothCanariesLived = 0,
        LeftCanaryDied = 1,
        RightCanaryDied = 2,
        BothCanariesDied = 3
    };

    /// Allocates the first page at once.
    /// @param ObjectSize  bytes of a block, at least a pointer's
    /// @param maxPages    0 for no limit
    explicit PoolAllocator(std::size_t ObjectSize, std::size_t maxPages = DEFAULT_MAX_PAGES);
    ~PoolAllocator() override;
    PoolAllocator(const PoolAllocator &) = delete;
    PoolAllocator &operator=(const PoolAllocator &) = delete;

    /// A block; null, and a realSize of 0, for a size above the pool's.
    /// @throws OAException when a page is needed and cannot be had
    AllocationResult ballocate(std::size_t size) override;
    /// Takes back a block of this pool, which is not checked.
    int deallocate(void *Object) override;

    /// Gives back every page none of whose blocks is in use.
    /// @return number of pages given back
    /// @cost proportional to the blocks on the free list and the pages
    std::size_t FreeEmptyPages();

    /// Checks that a block is one of this pool's, in use and with its pads intact; for debugging.
    /// @throws OAException saying what is wrong with it
    /// @cost proportional to the pages
    void verifyBlock(const void *block) const;

    std::size_t getObjectSize() const { return objectSize; }
    const PoolAllocatorStats &getStats() const { return stats; }

private:
    void AllocatePage();
    void PrepBlock(char *dataStart, unsigned char dataSignature, bool fillAlignment);
    DeadCanaries CheckCanaries(const char *block) const;
    bool checkAllocatedBit(const char *block) const;
    void setAllocatedBit(char *block, bool allocated);
    bool isBlockFree(const char *block) const;
    bool isBlockOnPage(const GenericObject *page, const char *block) const;
    char *getBlockOnPageByIndex(GenericObject *page, std::size_t index) const;
    bool isPageEmpty(GenericObject *page) const;
    GenericObject *findPage(const char *block) const;

    PoolAllocatorStats stats;
    GenericObject *freeList = nullptr; ///< blocks not in use, last freed first
    GenericObject *pageList = nullptr; ///< pages, last allocated first
    std::size_t objectSize;            ///< bytes of a block
    std::size_t distanceToFirstBlock;  ///< from a page's address to its first block
    std::size_t totalBlockSize;        ///< from one block to the next
    std::size_t objectsPerPage = DEFAULT_OBJECTS_PER_PAGE;
    std::size_t maxPages;                         ///< 0 for no limit
    bool debugOn = true;                          ///< pads of new pages get their patterns, which verifyBlock looks for
    std::size_t padBytes = sizeof(void *);        ///< left and right pad of a block
    std::size_t blockHeaderSize = sizeof(void *); ///< 0 would mean no headers
    std::size_t alignment = 16;                   ///< of what follows an AllocationHeader in a block
    std::size_t firstBlockAlignSize = 0;
    std::size_t interBlockAlignSize; ///< between the right pad of a block and the next block's header
};
