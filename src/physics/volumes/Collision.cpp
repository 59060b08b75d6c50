#include "physics/volumes/Collision.h"

AllocationCategory physicsAllocationCategory("physics");

void Collision::release(Collision *collision)
{
    void *const block = dynamic_cast<void *>(collision);
    destroyObject(collision);
    deallocate(block);
}

void Collision::dropLast(std::vector<Collision *> &list)
{
    release(list.back());
    list.pop_back();
}
