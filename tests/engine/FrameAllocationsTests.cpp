#include "engine/transforms/ParentFollowerComponent.h"
#include "support/AllocationCount.h"
#include "support/TestComponent.h"
#include "support/TestLevel.h"

#include <gtest/gtest.h>

TEST(FrameAllocations, SteadyStateAllocatesNothing)
{
    TestLevel world;
    world.coordinator().setSubCoordinator(world.anotherCoordinator());
    world.transform(world.entity("parent"));
    const Handle<Entity> follower = world.entity("follower", world.coordinator().getChild(SCS("parent")));
    world.transform(follower);
    world.component<ParentFollowerComponent>(follower, "parentFollower");
    for (const char *key : {"cursor", "player", "director", "menu"})
        world.component<TestComponent>(world.entity(key), key);
    world.frame();
    world.frame();
    EXPECT_EQ(allocationsOf([&] { world.frame(); }, 10), 0u);
}
