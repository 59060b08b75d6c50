#include "physics/volumes/Collision.h"

AllocationCategory physicsAllocationCategory("physics");

namespace
{

/// Blocks of contacts that are over. A frame needs about as many as the one before.
struct SpareBlocks
{
    static constexpr std::size_t MOST = 1024; ///< more than a level needs where nothing is heaped up

    void *blocks[MOST];
    std::size_t count;
};

constinit SpareBlocks spare{};

} // namespace

/// A block for a contact of a size; null when there is no memory.
void *Collision::takeBlock(std::size_t size)
{
    if (spare.count > 0 && getHeaderFromAllocation(spare.blocks[spare.count - 1])->blockSize == size)
        return spare.blocks[--spare.count];
    return ballocate(DefaultAllocator(), physicsAllocationCategory, size);
}

void Collision::release(Collision *collision)
{
    void *const block = dynamic_cast<void *>(collision);
    destroyObject(collision);
    if (spare.count < SpareBlocks::MOST)
        spare.blocks[spare.count++] = block;
    else
        deallocate(block);
}

void Collision::dropLast(std::vector<Collision *> &list)
{
    release(list.back());
    list.pop_back();
}
