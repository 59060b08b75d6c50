// Collision: a contact that was found and waits to be resolved.
#pragma once

#include "foundation/Allocators.h"
#include "object/tree/Handle.h"

#include <cstddef>
#include <vector>

class BoundingVolume;

/// For contacts, which live for a part of one frame.
extern AllocationCategory physicsAllocationCategory;

/// A contact of two volumes.
///
/// Lives from its detection to its resolution in the same frame, in the list of the grid that found it.
class Collision
{
public:
    Collision() = default;
    Collision(const Collision &) = delete;
    Collision &operator=(const Collision &) = delete;
    virtual ~Collision() = default;

    /// resolves a collision
    virtual void resolve() = 0;

    /// Makes a contact of a class, counted under the physics category; null when there is no memory.
    template <class T>
    static T *make()
    {
        void *const block = takeBlock(sizeof(T));
        return block ? constructObject<T>(block) : nullptr;
    }
    /// Ends a contact that `make` made. Its block is kept for those of the frames to come.
    static void release(Collision *collision);
    /// Frees the last contact of a list and takes it out.
    static void dropLast(std::vector<Collision *> &list);

    Handle<BoundingVolume> volumes[2];
    bool comesLast = false; ///< resolved after those of the frame that do not: nothing moves one of the two

private:
    static void *takeBlock(std::size_t size);
};
