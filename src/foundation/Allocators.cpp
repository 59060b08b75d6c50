// Allocators: categories, the allocators behind blocks too large for pools, and the choice of a pool.
#include "foundation/Allocators.h"

#include "foundation/PoolAllocator.h"

#include <cstdint>
#include <cstdlib>
#include <limits>

static_assert(sizeof(AllocationHeader) == 5 * sizeof(void *), "a block is found from its header's size");

namespace
{

// What malloc returns is moved by this much, so that the address after the header is aligned to 16 bytes.
constexpr std::size_t MALLOC_SHIFT = 8;
static_assert((MALLOC_SHIFT + sizeof(AllocationHeader)) % 16 == 0);

AllocationCategory *firstCategory = nullptr;

// Block sizes of the default group, about a quarter apart. Made in ascending order, so that the first pool that takes
// a request is the one that wastes least.
constexpr std::size_t DEFAULT_BLOCK_SIZES[] = {
    48,  64,  80,  96,  112,  128,  160,  192,  224,  256,  320,  384,  448,
    512, 640, 768, 896, 1024, 1280, 1536, 1792, 2048, 2560, 3072, 3584, AllocatorGroup::LARGEST_POOLED_SIZE};

} // namespace

constinit AllocationCategory defaultAllocationCategory("default", AllocationCategory::BuiltIn());

/// Enlists the categories that must be usable before any static initialiser has run.
struct BuiltInCategories
{
    BuiltInCategories() { defaultAllocationCategory.enlist(); }
};
static const BuiltInCategories enlistBuiltInCategories;

void AllocationCategory::enlist() noexcept
{
    next = firstCategory;
    firstCategory = this;
}

const AllocationCategory *AllocationCategory::getFirst() noexcept
{
    return firstCategory;
}

IAllocator::AllocationResult MallocAllocator_::ballocate(std::size_t size)
{
    if (size > std::numeric_limits<std::size_t>::max() - MALLOC_SHIFT)
        return {nullptr, 0, this};
    char *const memory = static_cast<char *>(std::malloc(size + MALLOC_SHIFT));
    if (!memory)
        return {nullptr, 0, this};
    return {memory + MALLOC_SHIFT, size + MALLOC_SHIFT, this};
}

int MallocAllocator_::deallocate(void *object)
{
    if (object)
        std::free(static_cast<char *>(object) - MALLOC_SHIFT);
    return 1;
}

AllocatorGroup::AllocatorGroup() : firstTaker(LARGEST_POOLED_SIZE + 1, nullptr) {}

AllocatorGroup::~AllocatorGroup() = default;

void AllocatorGroup::addPool(std::size_t blockSize)
{
    if (blockSize > LARGEST_POOLED_SIZE)
        return;
    for (const auto &pool : allocators)
        if (pool->getObjectSize() == blockSize)
            return;
    allocators.push_back(std::make_unique<PoolAllocator>(blockSize));
}

PoolAllocator *AllocatorGroup::findPool(std::size_t size) const
{
    for (const auto &pool : allocators)
        if (size <= pool->getObjectSize())
            return pool.get();
    return nullptr;
}

IAllocator::AllocationResult AllocatorGroup::ballocate(std::size_t size)
{
    if (size > LARGEST_POOLED_SIZE)
        return MallocAllocator()->ballocate(size);
    PoolAllocator *&taker = firstTaker[size];
    if (!taker)
    {
        if (!findPool(size))
            addPool(size);
        taker = findPool(size);
    }
    return taker->ballocate(size);
}

int AllocatorGroup::deallocate(void *)
{
    return 0;
}

IAllocator *MallocAllocator()
{
    static MallocAllocator_ *const allocator = new MallocAllocator_;
    return allocator;
}

AllocatorGroup *DefaultAllocatorGroup()
{
    static AllocatorGroup *const group = []
    {
        auto *const made = new AllocatorGroup;
        for (const std::size_t size : DEFAULT_BLOCK_SIZES)
            made->addPool(size);
        return made;
    }();
    return group;
}

IAllocator *DefaultAllocator()
{
    return DefaultAllocatorGroup();
}

void *ballocate(IAllocator *allocator, AllocationCategory &category, std::size_t size, std::size_t count)
{
    std::size_t objectBytes = 0;
    std::size_t wanted = 0;
    if (__builtin_mul_overflow(size, count, &objectBytes) ||
        __builtin_add_overflow(objectBytes, sizeof(AllocationHeader), &wanted))
        return nullptr;
    const IAllocator::AllocationResult result = allocator->ballocate(wanted);
    if (!result.block)
        return nullptr;

    auto *const header = static_cast<AllocationHeader *>(result.block);
    *header = {result.realAllocator, &category, count, objectBytes, result.realSize};
    category.addAllocation(objectBytes, sizeof(AllocationHeader), result.realSize - wanted, 0);
    return getAllocationFromHeader(header);
}

void deallocate(void *block)
{
    if (!block)
        return;
    AllocationHeader *const header = getHeaderFromAllocation(block);
    header->category->removeAllocation(header->blockSize, sizeof(AllocationHeader),
                                       header->totalSize - header->blockSize - sizeof(AllocationHeader), 0);
    header->allocator->deallocate(header);
}
