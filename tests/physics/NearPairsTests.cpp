#include "PhysicsWorld.h"

#include "physics/grid/NearPairs.h"

#include <gtest/gtest.h>

#include <set>

namespace
{

typedef std::pair<Handle<BoundingVolume>, Handle<BoundingVolume>> HandlePair;

/// Volumes of all sizes, strewn over a grid of 20 x 15 cells of 2 m and beyond its edges, some of them twice.
struct StrewnVolumes
{
    StrewnVolumes(PhysicsWorld &world, Chance &chance)
    {
        for (VolumeListGrid *lists : {&moving, &fixed})
        {
            lists->resize(20, 15);
            for (int i = 0; i < 90; ++i)
            {
                const Handle<BoundingVolume> volume = world.box(BoundingVolume::BV_BOX, Vec4()).handle();
                lists->expectSeveral(volume);
                for (int copy = 0; copy < (i % 9 ? 1 : 2); ++copy)
                    add(*lists, volume, chance);
            }
        }
    }

    void add(VolumeListGrid &lists, const Handle<BoundingVolume> &volume, Chance &chance)
    {
        const float largest = std::exp2(chance(-3, 4)); // up to a third of the grid
        VolumeOutline outline;
        outline.volume = volume.lookup().ptr;
        Vec4 reach, centre(chance(-5, 45), chance(0, 3), chance(-5, 35), 1);
        for (int axis = 0; axis < 3; ++axis)
        {
            reach[axis] = chance(0.2f, 1) * largest;
            outline.centre[axis] = centre[axis];
            outline.reach[axis] = reach[axis];
        }
        lists.add(volume, CellRect::between((centre - reach * 2) * 0.5f, (centre + reach * 2) * 0.5f, 20, 15), outline);
    }

    /// The pairs that are near, by a walk over all cells.
    std::vector<HandlePair> walk()
    {
        std::vector<HandlePair> found;
        std::set<std::pair<VolumeListGrid::Slot, VolumeListGrid::Slot>> seen[2];
        for (int cell = 0; cell < 20 * 15; ++cell)
        {
            const auto slots = moving.slots(cell);
            const auto look = [&](const VolumeListGrid &others, VolumeListGrid::Slot one, VolumeListGrid::Slot two)
            {
                const VolumeOutline &a = moving.outlineIn(one), &b = others.outlineIn(two);
                if (a.isNear(b) && seen[&others == &fixed].insert({one, two}).second && a.volume != b.volume)
                    found.push_back({getHandle(a.volume), getHandle(b.volume)});
            };
            for (std::size_t i = 0; i < slots.size(); ++i)
            {
                for (std::size_t j = i + 1; j < slots.size(); ++j)
                    look(moving, slots[i], slots[j]);
                for (const VolumeListGrid::Slot slot : fixed.slots(cell))
                    look(fixed, slots[i], slot);
            }
        }
        return found;
    }

    VolumeListGrid moving, fixed;
};

} // namespace

TEST(NearPairs, AreThoseOfAWalkOverAllCellsInItsOrder)
{
    PhysicsWorld world;
    std::size_t count = 0;
    for (unsigned seed = 1; seed <= 12; ++seed)
    {
        Chance chance(seed);
        StrewnVolumes volumes(world, chance);
        NearPairs pairs;
        std::vector<HandlePair> found;
        for (const NearPairs::Pair &pair : pairs.find(volumes.moving, volumes.fixed, Vec4(), 2.f))
            found.push_back({pair.one, pair.two});
        volumes.moving.refresh();
        ASSERT_EQ(found, volumes.walk()) << "seed " << seed;
        count += found.size();
    }
    EXPECT_GT(count, 1000u);
}
