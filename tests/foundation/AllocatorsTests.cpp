// Allocators: counting by purpose, alignment, choice of a pool, and the pool's own book-keeping.
#include "foundation/Allocators.h"
#include "foundation/PoolAllocator.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace
{

AllocationCategory testCategory("allocator tests");

bool isAligned(const void *address)
{
    return reinterpret_cast<std::uintptr_t>(address) % 16 == 0;
}

OAException::OA_EXCEPTION codeOf(const PoolAllocator &pool, const void *block)
{
    try
    {
        pool.verifyBlock(block);
    }
    catch (const OAException &failure)
    {
        return failure.code();
    }
    ADD_FAILURE() << "the block was found to be in order";
    return OAException::E_NO_MEMORY;
}

struct ThrowsTheThirdTime
{
    ThrowsTheThirdTime()
    {
        if (++made == 3)
            throw std::runtime_error("third");
        ++alive;
    }
    ~ThrowsTheThirdTime() { --alive; }
    static inline int made = 0;
    static inline int alive = 0;
};

/// Takes no request.
class FullAllocator : public IAllocator
{
public:
    AllocationResult ballocate(std::size_t) override { return {nullptr, 0, this}; }
    int deallocate(void *) override { return 0; }
};

} // namespace

TEST(Allocation, IsAlignedAndCountedAtEverySize)
{
    std::vector<void *> blocks;
    std::size_t bytes = 0;
    const std::size_t everBefore = testCategory.allocationsEver;
    for (std::size_t size = 0; size < 6000; size += 37)
    {
        blocks.push_back(ballocate(DefaultAllocator(), testCategory, size));
        ASSERT_TRUE(isAligned(blocks.back())) << size;
        std::memset(blocks.back(), 0x5A, size);
        bytes += size;
    }
    EXPECT_EQ(testCategory.objectCount, blocks.size());
    EXPECT_EQ(testCategory.totalObjectSize, bytes);
    EXPECT_EQ(testCategory.totalHeaderOverhead, blocks.size() * sizeof(AllocationHeader));
    EXPECT_GT(testCategory.totalAllocatorOverhead, 0u);
    for (void *block : blocks)
        deallocate(block);
    deallocate(nullptr);
    EXPECT_EQ(testCategory.objectCount, 0u);
    EXPECT_EQ(testCategory.totalObjectSize, 0u);
    EXPECT_EQ(testCategory.totalHeaderOverhead, 0u);
    EXPECT_EQ(testCategory.totalAllocatorOverhead, 0u);
    EXPECT_EQ(testCategory.allocationsEver, everBefore + blocks.size());
}

TEST(Allocation, ReportsFailureUpwards)
{
    FullAllocator full;
    EXPECT_EQ(ballocate(&full, testCategory, 8), nullptr);
    EXPECT_EQ(ballocate(MallocAllocator(), testCategory, SIZE_MAX / 2, 3), nullptr);
    EXPECT_EQ(ballocate(MallocAllocator(), testCategory, SIZE_MAX - 44), nullptr);
    EXPECT_EQ(testCategory.objectCount, 0u);
}

TEST(Allocation, ArraysAreMadeAndDestroyedByTheCountOfTheirBlock)
{
    auto *const texts = allocate_and_construct<std::string>(DefaultAllocator(), testCategory, 5);
    EXPECT_EQ(getHeaderFromAllocation(texts)->count, 5u);
    texts[4] = "a text too long to be kept inside the object itself";
    destroyArray(texts);
    deallocate(texts);
}

TEST(Allocation, ThrowingConstructorLeavesNothingBehind)
{
    EXPECT_THROW(allocate_and_construct<ThrowsTheThirdTime>(DefaultAllocator(), testCategory, 4), std::runtime_error);
    EXPECT_EQ(ThrowsTheThirdTime::alive, 0);
    EXPECT_EQ(testCategory.objectCount, 0u);
}

TEST(AllocationCategory, AllPurposesCanBeWalked)
{
    std::set<std::string> names;
    for (const AllocationCategory *category = AllocationCategory::getFirst(); category; category = category->getNext())
        EXPECT_TRUE(names.insert(category->getName()).second) << category->getName();
    EXPECT_TRUE(names.count("default"));
    EXPECT_TRUE(names.count("allocator tests"));
}

TEST(AllocatorGroup, TriesItsPoolsInOrderAndFoundsOneWhereNoneTakesTheRequest)
{
    AllocatorGroup group;
    const auto big = group.ballocate(200);
    const auto small = group.ballocate(40);
    EXPECT_EQ(group.getPools().size(), 1u);
    EXPECT_EQ(small.realAllocator, big.realAllocator);
    const auto bigger = group.ballocate(201);
    EXPECT_EQ(group.getPools().size(), 2u);
    EXPECT_EQ(bigger.realAllocator, group.getPools()[1].get());
    EXPECT_EQ(group.ballocate(200).realAllocator, big.realAllocator);
}

TEST(AllocatorGroup, LeavesLargeBlocksToMalloc)
{
    AllocatorGroup group;
    const auto result = group.ballocate(AllocatorGroup::LARGEST_POOLED_SIZE + 1);
    EXPECT_EQ(result.realAllocator, MallocAllocator());
    EXPECT_TRUE(group.getPools().empty());
    result.realAllocator->deallocate(result.block);
}

TEST(PoolAllocator, ServesItsSizeAndNotOneByteMore)
{
    PoolAllocator pool(64);
    EXPECT_TRUE(pool.ballocate(64).block);
    const auto refused = pool.ballocate(65);
    EXPECT_EQ(refused.block, nullptr);
    EXPECT_EQ(refused.realSize, 0u);
    EXPECT_EQ(refused.realAllocator, &pool);
    EXPECT_EQ(pool.getStats().Allocations_, 1u);
}

TEST(PoolAllocator, EveryBlockIsAlignedBehindAHeaderAndNoTwoOverlap)
{
    for (const std::size_t size : {8, 9, 15, 16, 17, 24, 31, 100, 4096})
    {
        PoolAllocator pool(size);
        std::set<char *> blocks;
        for (int i = 0; i < 65; ++i)
        {
            const auto result = pool.ballocate(size);
            ASSERT_TRUE(isAligned(static_cast<char *>(result.block) + sizeof(AllocationHeader))) << size;
            EXPECT_EQ(result.realSize, size + 16 + 16 - size % 16);
            std::memset(result.block, 0x11, size);
            blocks.insert(static_cast<char *>(result.block));
        }
        EXPECT_EQ(blocks.size(), 65u);
        char *previous = nullptr;
        for (char *block : blocks)
        {
            EXPECT_TRUE(!previous || block >= previous + size + 16);
            EXPECT_NO_THROW(pool.verifyBlock(block));
            previous = block;
        }
    }
}

TEST(PoolAllocator, The31stBlockAddsASecondPage)
{
    PoolAllocator pool(32);
    for (int i = 0; i < 30; ++i)
        pool.ballocate(32);
    EXPECT_EQ(pool.getStats().PagesInUse_, 1u);
    EXPECT_EQ(pool.getStats().FreeObjects_, 0u);
    pool.ballocate(32);
    EXPECT_EQ(pool.getStats().PagesInUse_, 2u);
    EXPECT_EQ(pool.getStats().FreeObjects_, 29u);
    EXPECT_EQ(pool.getStats().MostObjects_, 31u);
    EXPECT_EQ(pool.getStats().PageSize_, 30 * (32 + 16 + 16) - 16 + 16u);
}

TEST(PoolAllocator, HandsOutTheBlockFreedLastFirst)
{
    PoolAllocator pool(32);
    void *const first = pool.ballocate(32).block;
    void *const second = pool.ballocate(32).block;
    EXPECT_EQ(pool.deallocate(first), 1);
    EXPECT_EQ(pool.deallocate(second), 1);
    EXPECT_EQ(pool.ballocate(1).block, second);
    EXPECT_EQ(pool.ballocate(1).block, first);
    EXPECT_EQ(pool.getStats().Deallocations_, 2u);
    EXPECT_EQ(pool.getStats().ObjectsInUse_, 2u);
}

TEST(PoolAllocator, RefusesPagesBeyondItsLimit)
{
    PoolAllocator pool(32, 1);
    for (int i = 0; i < 30; ++i)
        pool.ballocate(32);
    try
    {
        pool.ballocate(32);
        FAIL() << "a second page was given";
    }
    catch (const OAException &failure)
    {
        EXPECT_EQ(failure.code(), OAException::E_NO_PAGES);
        EXPECT_STREQ(failure.what(), "allocate_new_page: The maximum number of pages has been allocated.");
    }
}

TEST(PoolAllocator, GivesBackOnlyPagesWithoutBlocksInUse)
{
    PoolAllocator pool(32);
    std::vector<void *> blocks;
    for (int i = 0; i < 90; ++i)
        blocks.push_back(pool.ballocate(32).block);
    for (int i = 0; i < 90; ++i)
        if (i != 45)
            pool.deallocate(blocks[i]);
    std::memset(blocks[45], 0x77, 32);
    EXPECT_EQ(pool.FreeEmptyPages(), 2u);
    EXPECT_EQ(pool.getStats().PagesInUse_, 1u);
    EXPECT_EQ(pool.getStats().FreeObjects_, 29u);
    EXPECT_EQ(static_cast<char *>(blocks[45])[31], 0x77);
    for (int i = 0; i < 30; ++i)
        std::memset(pool.ballocate(32).block, 1, 32);
    EXPECT_EQ(pool.getStats().PagesInUse_, 2u);
}

TEST(PoolAllocator, VerificationTellsWhatIsWrongWithABlock)
{
    PoolAllocator pool(32);
    char *const block = static_cast<char *>(pool.ballocate(32).block);
    char *const neighbour = static_cast<char *>(pool.ballocate(32).block);
    EXPECT_EQ(codeOf(pool, &pool), OAException::E_BAD_ADDRESS);
    EXPECT_EQ(codeOf(pool, block + 8), OAException::E_BAD_BOUNDARY);
    pool.deallocate(neighbour);
    EXPECT_EQ(codeOf(pool, neighbour), OAException::E_MULTIPLE_FREE);
    block[32] = 0;
    EXPECT_EQ(codeOf(pool, block), OAException::E_CORRUPTED_BLOCK);
    block[32] = static_cast<char>(PoolAllocator::PAD_PATTERN);
    block[-1] = 0;
    EXPECT_EQ(codeOf(pool, block), OAException::E_CORRUPTED_BLOCK);
}
