#include "WalkWorld.h"

#include "ai/actions/ActAStar.h"
#include "ai/actions/ActPursue.h"
#include "ai/actions/ActWander.h"
#include "ai/actions/LeafFunctions.h"
#include "ai/nodes/BTAction.h"
#include "ai/perception/PerceptionComponent.h"
#include "ai/steering/SteeringComponent.h"
#include "ai/trees/BTComponent.h"
#include "ai/trees/BTLib.h"
#include "physics/grid/MapDataComponent.h"
#include "support/AllocationCount.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace
{
/// A creature with a path, and a leaf that has it planned.
struct Planner : PathWorld
{
    Planner() : PathWorld(8, 8), walker(creature(1, 1))
    {
        leaf.lookup()->setAction(construct<ActAStar>(BTAllocation));
        leaf.lookup()->setTreeParent(walker);
        level.frame();
    }
    StatusCode tick() { return leaf.lookup()->tick(); }

    Handle<Entity> walker;
    Handle<BTAction> leaf = construct<BTAction>(BTAllocation);
};
} // namespace

TEST(ActAStar, AsksOnceForAFreeCellAndTakesTheAnswer)
{
    Planner world;
    EXPECT_EQ(world.tick(), SC_NeedMoreTime);
    EXPECT_FALSE(world.path(world.walker).isRequestPending()) << "there is no target";
    world.main->setCellFloatValue(6, 6, 1.f);
    world.path(world.walker).setPathTarget(world.main->getCell(6, 6));
    EXPECT_EQ(world.tick(), SC_NeedMoreTime);
    EXPECT_FALSE(world.path(world.walker).isRequestPending()) << "the target is no free cell";

    world.path(world.walker).setPathTarget(world.main->getCell(5, 6));
    EXPECT_EQ(world.tick(), SC_NeedMoreTime);
    EXPECT_TRUE(world.path(world.walker).isRequestPending());
    world.settle(world.walker);
    EXPECT_EQ(world.tick(), SC_Success);
    EXPECT_EQ(world.path(world.walker).requestStatus(), PS_Unknown);
    EXPECT_EQ(world.tick(), SC_NeedMoreTime);
    EXPECT_TRUE(world.path(world.walker).isRequestPending()) << "it begins afresh";
}

TEST(ActAStar, FailsWhereThereIsNoPathAndIsUndefinedWithoutThePathComponent)
{
    Planner world;
    world.draw({"", "", "", "", "", "########"});
    world.path(world.walker).setPathTarget(world.main->getCell(6, 6));
    world.tick();
    world.settle(world.walker);
    EXPECT_EQ(world.tick(), SC_Failure);
    world.leaf.lookup()->setTreeParent(world.level.entity("other"));
    EXPECT_EQ(world.tick(), SC_Undefined);
}

TEST(LeafFunctions, GuideFromWaypointToWaypoint)
{
    PathWorld world(8, 8);
    const Handle<Entity> guided = world.creature(1, 1);
    EXPECT_EQ(GuideGetNextWayPoint(guided), AS_InvalidHandle) << "the map has no data";
    MapDataComponent &data = *world.level.component<MapDataComponent>(world.map, "mapData").lookup();
    data.setGuideWaypoints({world.main->getCell(2, 3), world.main->getCell(4, 5)});
    EXPECT_EQ(GuideGetNextWayPoint(guided), AS_Complete);
    EXPECT_EQ(world.path(guided).getPathTarget(), world.main->getCell(2, 3));
    EXPECT_EQ(GuideWayPointReached(guided), AS_Complete);
    EXPECT_EQ(GuideGetNextWayPoint(guided), AS_Complete);
    EXPECT_EQ(world.path(guided).getPathTarget(), world.main->getCell(4, 5));
    GuideWayPointReached(guided);
    EXPECT_EQ(GuideGetNextWayPoint(guided), AS_Failed);
    EXPECT_EQ(GuideWayPointReached(world.level.entity("outside")), AS_InvalidHandle);
}

TEST(LeafFunctions, KnowWhetherABodyMovesOverTheGround)
{
    WalkWorld world(4, 4);
    const Handle<Entity> box = world.crate(0, 0);
    RigidBody &body = *componentOf<RigidBody>(box, ComponentKeys::physics);
    for (const auto &[velocity, expected] :
         {std::pair(Vec4(0, 3, 0, 0), SC_Failure), std::pair(Vec4(0.01f, 0, -0.01f, 0), SC_Failure),
          std::pair(Vec4(-0.02f, 0, 0, 0), SC_Success), std::pair(Vec4(0, 0, 0.02f, 0), SC_Success)})
    {
        body.setVelocity(velocity);
        EXPECT_EQ(IsObjectMoving(box), expected) << velocity.toString().toCString();
    }
    EXPECT_EQ(IsObjectMoving(world.map), SC_InvalidHandle);
}

TEST(LeafFunctions, TellTheFrameOfATimer)
{
    TestLevel world;
    world.frame();
    EXPECT_EQ(getFrameTimeSeconds(world.level, SCS("master")).value, TestLevel::FRAME_TICKS / 4096.0);
    EXPECT_EQ(getFrameTimeSeconds(Handle<Coordinator>(), SCS("master")).code.getCode(), ErrorCode::BAD_HANDLE);
}

TEST(CreatureActions, AllThatMindsDoTogetherTakesNoMemory)
{
    WalkWorld world(20, 20);
    world.divide(0.f);
    const Handle<Entity> player = world.body("Player", BoundingVolume::BV_PLAYER, 2.7f, 3.3f, 5.7f, 6.3f);
    BTLib &library = getSystemDeref<BTLib>();
    const Handle<BTTask> hunt = library.BTCreateSequence(), live = library.BTCreateSelector();
    library.BTAddChild(hunt, library.BTCreateCondition(KnowsOfTarget));
    library.BTAddChild(hunt, library.BTCreateAction(construct<ActPursue>(BTAllocation)));
    library.BTAddChild(live, hunt);
    library.BTAddChild(live, library.BTCreateAction(construct<ActWander>(BTAllocation)));
    library.addBehaviorTree(SCS("Live"), live);

    std::vector<PathFollower *> creatures;
    for (int i = 0; i < 8; ++i)
    {
        creatures.push_back(&world.walker(-7.f + 2.f * static_cast<float>(i), i % 2 ? -5.f : 3.f, 0.25f));
        const Handle<Entity> creature = handle_cast<Entity>(creatures.back()->getParent());
        world.level.component<PerceptionComponent>(creature, "perception").lookup()->setSeesInDark(true);
        SteeringComponent &steering = *world.level.component<SteeringComponent>(creature, "steering").lookup();
        steering.setMaxSpeed(1.5f);
        steering.setMaxAccel(6);
        steering.setTimeToTarget(0.25f);
        steering.setSepThreshold(1.1f);
        BTComponent &mind = *world.level.component<BTComponent>(creature, "behaviors").lookup();
        mind.addBehavior(SCS("Live"));
        mind.setDefaultBehavior(SCS("Live"));
        mind.onLoadComplete();
    }
    int frame = 0, known = 0, onPaths = 0;
    const auto step = [&]
    {
        const float angle = static_cast<float>(++frame) * 0.01f;
        WalkWorld::move(player, 6.f * std::sin(angle), 6.f * std::cos(angle));
        world.frames(1);
        for (const PathFollower *const each : creatures)
        {
            known += componentOf<PerceptionComponent>(each->getParent(), ComponentKeys::perception)->getKnows();
            onPaths += each->getUnderWay();
        }
    };
    for (int i = 0; i < 20000; ++i)
        step();
    EXPECT_GT(known, 100);
    EXPECT_GT(onPaths, 100);
    EXPECT_EQ(heapAllocationsOf(step, 600), 0u);
}

TEST(CreatureActions, StrollWithoutTakingMemory)
{
    WalkWorld world(16, 16);
    BTLib &library = getSystemDeref<BTLib>();
    library.addBehaviorTree(SCS("Stroll"), library.BTCreateAction(construct<ActWander>(BTAllocation)));
    const Handle<Entity> creature = handle_cast<Entity>(world.walker(0, 0).getParent());
    BTComponent &mind = *world.level.component<BTComponent>(creature, "behaviors").lookup();
    mind.addBehavior(SCS("Stroll"));
    mind.setDefaultBehavior(SCS("Stroll"));
    mind.onLoadComplete();
    const Vec4 start = componentOf<TransformComponent>(creature, ComponentKeys::transform)->getPosition();
    float farthest = 0;
    for (int frame = 0; frame < 2000; ++frame)
    {
        world.frames(1);
        const Vec4 place = componentOf<TransformComponent>(creature, ComponentKeys::transform)->getPosition();
        farthest = std::max(farthest, (place - start).magnitude());
    }
    EXPECT_GT(farthest, 2.f);
    EXPECT_EQ(heapAllocationsOf([&] { mind.doFrame(); }, 1000), 0u);
}
