// Allocators: blocks of memory that know their allocator and the purpose they are counted under.
#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <utility>
#include <vector>

class PoolAllocator;

/// Interface for memory allocators.
///
/// A block that an allocator hands out is placed so that what follows an AllocationHeader at its start is aligned for
/// any object.
class IAllocator
{
public:
    struct AllocationResult
    {
        void *block = nullptr;               ///< null when the request was not served
        std::size_t realSize = 0;            ///< bytes that the block takes, the allocator's own included
        IAllocator *realAllocator = nullptr; ///< who takes the block back
    };

    /// Allocate a memory block.
    virtual AllocationResult ballocate(std::size_t size) = 0;
    virtual ~IAllocator() = default;
    /// Deallocate a memory block.
    /// @return 1
    virtual int deallocate(void *object) = 0;
};

/// What one purpose has allocated; all categories of the program can be walked.
///
/// Counts live blocks and their bytes. A category lives as long as anything allocated under it, which for one of
/// static duration is the run.
class AllocationCategory
{
public:
    /// Marks a category that others use while the program's statics are still being made.
    struct BuiltIn
    {
    };

    /// @param name  static text that names the purpose in tools
    explicit AllocationCategory(const char *name) : name(name) { enlist(); }
    /// Stands before any code has run; `BuiltInCategories` adds it to those that can be walked.
    constexpr AllocationCategory(const char *name, BuiltIn) : name(name) {}
    ~AllocationCategory() = default;
    AllocationCategory(const AllocationCategory &) = delete;
    AllocationCategory &operator=(const AllocationCategory &) = delete;

    void addAllocation(std::size_t objectSize, std::size_t headerOverhead, std::size_t allocatorOverhead,
                       std::size_t alignmentOverhead) noexcept
    {
        ++objectCount;
        ++allocationsEver;
        totalObjectSize += objectSize;
        totalHeaderOverhead += headerOverhead;
        totalAllocatorOverhead += allocatorOverhead;
        totalAlignmentOverhead += alignmentOverhead;
    }
    void removeAllocation(std::size_t objectSize, std::size_t headerOverhead, std::size_t allocatorOverhead,
                          std::size_t alignmentOverhead) noexcept
    {
        --objectCount;
        totalObjectSize -= objectSize;
        totalHeaderOverhead -= headerOverhead;
        totalAllocatorOverhead -= allocatorOverhead;
        totalAlignmentOverhead -= alignmentOverhead;
    }

    const char *getName() const noexcept { return name; }
    /// First of the program's categories; follow getNext() until null.
    static const AllocationCategory *getFirst() noexcept;
    const AllocationCategory *getNext() const noexcept { return next; }

    std::size_t objectCount = 0;            ///< live blocks
    std::size_t totalObjectSize = 0;        ///< bytes that were asked for
    std::size_t totalHeaderOverhead = 0;    ///< bytes of allocation headers
    std::size_t totalAllocatorOverhead = 0; ///< bytes that the allocators added
    std::size_t totalAlignmentOverhead = 0; ///< bytes spent on alignment in front of the block
    std::size_t allocationsEver = 0;        ///< blocks ever made; a frame that leaves it unchanged allocated nothing

private:
    friend struct BuiltInCategories;
    void enlist() noexcept;

    const char *name;
    AllocationCategory *next = nullptr;
};

/// For objects whose maker names no purpose.
extern AllocationCategory defaultAllocationCategory;

/// Stands before each block, so that a pointer is enough to free it.
struct AllocationHeader
{
    IAllocator *allocator;
    AllocationCategory *category;
    std::size_t count;     ///< objects in the block
    std::size_t blockSize; ///< bytes of the objects
    std::size_t totalSize; ///< bytes that the allocator spent on the block
};

/// Allocates through the C library; takes any size.
class MallocAllocator_ : public IAllocator
{
public:
    AllocationResult ballocate(std::size_t size) override;
    int deallocate(void *object) override;
};

/// One pool per block size, tried in order; a request that none takes founds a pool of its size.
///
/// Requests above LARGEST_POOLED_SIZE go to the MallocAllocator, since a page holds 30 blocks.
class AllocatorGroup : public IAllocator
{
public:
    typedef std::vector<std::unique_ptr<PoolAllocator>> AllocatorList;

    /// Bytes of the largest block that is pooled; a page of such blocks takes about 120 KiB.
    static constexpr std::size_t LARGEST_POOLED_SIZE = 4096;

    AllocatorGroup();
    ~AllocatorGroup() override;

    /// Appends a pool to the list, unless a pool of it already takes blocks of this size.
    void addPool(std::size_t blockSize);

    /// @cost constant, but for the page that a pool may have to add
    AllocationResult ballocate(std::size_t size) override;
    /// Not for use: a block goes back to the pool that made it, which its header names.
    int deallocate(void *object) override;

    const AllocatorList &getPools() const { return allocators; }

private:
    PoolAllocator *findPool(std::size_t size) const;

    AllocatorList allocators; ///< in the order in which they are tried
    /// First pool that takes a size, by size; stays right as pools are only appended. Null: not looked up yet.
    std::vector<PoolAllocator *> firstTaker;
};

IAllocator *MallocAllocator();
/// The group that strings and objects without a better place are allocated from; never destroyed.
AllocatorGroup *DefaultAllocatorGroup();
IAllocator *DefaultAllocator();

/// Block for `count` objects of `size` bytes each, with its header filled in and counted.
/// @return address after the header, aligned for any object; null when the allocator has no block of the size. A pool
///         that cannot get a page throws OAException.
void *ballocate(IAllocator *allocator, AllocationCategory &category, std::size_t size, std::size_t count = 1);

/// Frees a block of the free function ballocate; null is ignored.
void deallocate(void *block);

inline AllocationHeader *getHeaderFromAllocation(void *allocation)
{
    return static_cast<AllocationHeader *>(allocation) - 1;
}

inline void *getAllocationFromHeader(AllocationHeader *header)
{
    return header + 1;
}

/// Default-constructs objects in a block.
/// @param count  0 for as many as the block was allocated for
/// @param start  index of the first
template <class T>
T *constructArray(void *blockStart, std::size_t count = 0, std::size_t start = 0)
{
    T *const first = static_cast<T *>(blockStart) + start;
    if (count == 0)
        count = getHeaderFromAllocation(blockStart)->count - start;
    std::uninitialized_value_construct_n(first, count);
    return first;
}

/// Destroys objects in a block, which stays allocated. Arguments as for constructArray.
template <class T>
void destroyArray(T *blockStart, std::size_t count = 0, std::size_t start = 0)
{
    if (count == 0)
        count = getHeaderFromAllocation(blockStart)->count - start;
    std::destroy_n(blockStart + start, count);
}

template <class T, class... Args>
T *constructObject(void *blockStart, Args &&...args)
{
    return ::new (blockStart) T(std::forward<Args>(args)...);
}

/// DO NOT USE WITH Object-DERIVED CLASSES!
///
/// Destroys one object; its block stays allocated.
template <class T>
void destroyObject(T *blockStart)
{
    std::destroy_at(blockStart);
}

/// Allocates and default-constructs objects.
/// @return the first object; null when the allocator fails
template <class T>
T *allocate_and_construct(IAllocator *allocator, AllocationCategory &category, std::size_t count = 1)
{
    static_assert(alignof(T) <= 16, "blocks are aligned to 16 bytes");
    void *const block = ballocate(allocator, category, sizeof(T), count);
    if (!block)
        return nullptr;
    try
    {
        return constructArray<T>(block, count);
    }
    catch (...)
    {
        deallocate(block);
        throw;
    }
}
