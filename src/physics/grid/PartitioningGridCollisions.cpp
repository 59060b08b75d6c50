// PartitioningGrid: the pairs of volumes that share a cell.
#include "physics/grid/PartitioningGrid.h"

#include "physics/volumes/BoundingVolume.h"
#include "physics/volumes/Collision.h"
#include "physics/grid/Prefetch.h"

#include "engine/systems/RunningMark.h"

#include "foundation/Logger.h"
#include "foundation/ProfilerScope.h"

#include <algorithm>

namespace
{
const String &profilerCategory()
{
    static const String category = SCS("COLLISION");
    return category;
}

} // namespace

void PartitioningGrid::checkCollisions()
{
    static const String section = SCS("PartitioningGrid::checkCollisions");
    const ProfilerScope scope(profilerCategory(), section);
    if (walking) // called from a trigger's script
        return;
    const RunningMark mark(walking);
    const Vec4 nearCorner = position - size * 0.5f;
    for (const NearPairs::Pair &pair : nearPairs.find(grid, staticGrid, nearCorner, cellSize))
    {
        if (collisions.size() >= MOST_CONTACTS)
            return tellOfCrowd();
        if (const auto one = pair.one.lookup())
            one->colliding(pair.two, collisions);
    }
}

/// Says once that contacts are left for later frames, which happens only where bodies were heaped into each other.
void PartitioningGrid::tellOfCrowd()
{
    if (!crowdTold)
        KV_LOGF(Logger_::I_ERROR,
                "%d contacts in a frame: so many bodies stand in each other that the rest of them is not tested. Look "
                "for what puts them all in one place, a spawner perhaps.",
                static_cast<int>(MOST_CONTACTS));
    crowdTold = true;
}

void PartitioningGrid::resolveCollisions(double)
{
    static const String section = SCS("PartitioningGrid::resolveCollisions");
    const ProfilerScope scope(profilerCategory(), section);
    noteContacts();
    for (const bool last : {false, true}) // or what others push into a wall would stand in it until the next frame
        for (Collision *collision : collisions)
            if (collision->comesLast == last)
                collision->resolve();
    dropCollisions();
}

void PartitioningGrid::dropCollisions()
{
    for (Collision *collision : collisions)
        Collision::release(collision);
    collisions.clear();
}
