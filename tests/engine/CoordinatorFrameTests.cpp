#include "engine/entities/SimpleManager.h"
#include "engine/TestSystems.h"
#include "support/TestComponent.h"
#include "support/TestLevel.h"

#include "object/reflection/Reflection.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{
/// A level whose components write one journal.
class Frame : public testing::Test
{
protected:
    Handle<TestComponent> runner(const char *key, const Handle<Object> &parent = Handle<Object>())
    {
        const Handle<Entity> owner = world.entity(key, parent);
        const Handle<TestComponent> h = world.component<TestComponent>(owner, key);
        h.lookup()->journal = &journal;
        h.lookup()->label = key;
        return h;
    }
    std::vector<std::string> runFrame()
    {
        journal.clear();
        world.frame();
        return journal;
    }

    TestLevel world;
    std::vector<std::string> journal;
};
} // namespace

TEST_F(Frame, ManagersRunByPriorityWhateverTheOrderOfTheirMaking)
{
    for (const char *key : {"tutorial", "parentFollower", "screenSpaceHelper", "player", "cursor", "steering"})
        runner(key);
    EXPECT_THAT(runFrame(),
                ElementsAre("cursor", "player", "screenSpaceHelper", "parentFollower", "steering", "tutorial"));
}

TEST_F(Frame, EqualPrioritiesRunInTheOrderOfFirstDemand)
{
    runner("tklogo");
    runner("cursor");
    EXPECT_THAT(runFrame(), ElementsAre("tklogo", "cursor"));
}

TEST_F(Frame, SystemGoesBeforeManagerOfItsPriority)
{
    runner("director");
    getSystem<TestGroundSystem>();
    systemJournal.clear();
    runner("player").lookup()->whenRun = [] { systemJournal.push_back("run player"); };
    handle_cast<TestComponent>(world.coordinator().getDescendantByPath(SCS("director/director"))).lookup()->whenRun = []
    { systemJournal.push_back("run director"); };
    runFrame();
    EXPECT_THAT(systemJournal, ElementsAre("run player", "run ground", "run director"));
}

TEST_F(Frame, SystemStartedInMidFrameRunsFromTheNextFrameOn)
{
    systemJournal.clear();
    runner("player").lookup()->whenRun = [] { getSystem<TestGroundSystem>(); };
    runFrame();
    EXPECT_THAT(systemJournal, ElementsAre("start ground"));
    runFrame();
    EXPECT_THAT(systemJournal, ElementsAre("start ground", "run ground"));
}

TEST_F(Frame, StoppedLevelRunsOnlyWhatRunsOnStop)
{
    for (const char *key : {"cursor", "player", "menu", "steering"})
        runner(key);
    world.coordinator().setLoopState(Coordinator::LOOP_STOP);
    EXPECT_THAT(runFrame(), ElementsAre("cursor", "menu"));
    EXPECT_EQ(world.coordinator().getTimer(SCS("master")).getFrameTime(), TestLevel::FRAME_TICKS)
        << "a stopped level's clocks go on";
}

TEST_F(Frame, StepRunsOneWholeFrameAndStops)
{
    runner("cursor");
    runner("player");
    world.coordinator().setLoopState(Coordinator::LOOP_STEP);
    EXPECT_THAT(runFrame(), ElementsAre("cursor", "player"));
    EXPECT_EQ(world.coordinator().getLoopState(), Coordinator::LOOP_STOP);
    EXPECT_THAT(runFrame(), ElementsAre("cursor"));
}

TEST_F(Frame, ChainedCoordinatorsAreFilteredByTheirOwnState)
{
    const Handle<Coordinator> second = world.anotherCoordinator();
    world.coordinator().setSubCoordinator(second);
    runner("player");
    runner("steering", second);
    runner("cursor", second);
    EXPECT_THAT(runFrame(), ElementsAre("cursor", "player", "steering"));
    world.coordinator().setLoopState(Coordinator::LOOP_STOP);
    EXPECT_THAT(runFrame(), ElementsAre("cursor", "steering"));
    EXPECT_EQ(second.lookup()->getTimer(SCS("master")).getValue(), 2 * TestLevel::FRAME_TICKS);
}

TEST_F(Frame, ChainThatWouldBeARingIsRefused)
{
    const Handle<Coordinator> second = world.anotherCoordinator();
    second.lookup()->setSubCoordinator(world.level);
    world.coordinator().setSubCoordinator(second);
    world.coordinator().setSubCoordinator(world.level);
    EXPECT_FALSE(world.coordinator().getSubCoordinator().isValid());
    world.frame();
}

TEST_F(Frame, ManagerMadeInMidFrameRunsInThatFrameIfItsTurnIsToCome)
{
    runner("director").lookup()->whenRun = [&]
    {
        if (journal.size() == 1)
        {
            runner("cursor");
            runner("steering");
        }
    };
    EXPECT_THAT(runFrame(), ElementsAre("director", "steering"));
    EXPECT_THAT(runFrame(), ElementsAre("cursor", "director", "steering"));
}

TEST_F(Frame, CallingItFromWithinIsAnErrorAndNotARecursion)
{
    runner("player").lookup()->whenRun = [&]
    {
        world.frame();
        world.coordinator().doFrame();
    };
    EXPECT_THAT(runFrame(), ElementsAre("player"));
}

TEST_F(Frame, KeyAskedForTwiceHasOneManagerAndOneTurn)
{
    const Handle<AbstractManager> manager = world.coordinator().getManager(SCS("player"));
    EXPECT_EQ(world.coordinator().getManager(SCS("player")), manager);
    EXPECT_EQ(manager.lookup()->getName(), SCS("playerManager"));
    EXPECT_EQ(manager.lookup()->getParent(), world.level);
    runner("player");
    EXPECT_THAT(runFrame(), ElementsAre("player"));
}

TEST_F(Frame, UnknownManagerKeyIsAnErrorWithTheNearestOne)
{
    EXPECT_FALSE(world.coordinator().getManager(SCS("phisics")).isValid());
    EXPECT_EQ(countLogLines("no manager key 'phisics'; did you mean 'physics'?"), 1u);
}

TEST_F(Frame, EveryKeyOfTheTableMakesAManagerOfItsClass)
{
    const std::pair<const char *, const char *> special[] = {{"sound", "SoundManager"},
                                                             {"physics", "PhysicsManager"},
                                                             {"boundingVolume", "BoundingVolumeManager"},
                                                             {"partitioning", "PartitioningManager"},
                                                             {"path", "PathManager"},
                                                             {"objectGroup", "ObjectGroupManager"}};
    for (const auto &[key, className] : special)
    {
        auto manager = world.coordinator().getManager(SCS(key)).lookup();
        ASSERT_TRUE(manager) << key;
        EXPECT_EQ(manager->getType()->getName(), SCS(className));
    }
    for (const char *key : {"editorProperties", "grid", "interactCounter", "light", "persist", "postOffice",
                            "scriptedEvent", "transform", "trigger", "viewer"})
    {
        auto manager = world.coordinator().getManager(SCS(key)).lookup();
        ASSERT_TRUE(manager) << key;
        EXPECT_EQ(manager->getType()->getName(), SCS("NullManager")) << key;
    }
}

TEST_F(Frame, DeadTimerIsReplaced)
{
    const Handle<TimeKeeper> first = world.coordinator().getTimerHandle(SCS("slow"));
    EXPECT_EQ(world.coordinator().getTimerHandle(SCS("slow")), first);
    first.lookup()->murder();
    world.frame();
    EXPECT_NE(world.coordinator().getTimerHandle(SCS("slow")), first);
}

TEST_F(Frame, FrameTimeAndFramesPerSecondAreTheSameNumber)
{
    world.frame();
    EXPECT_DOUBLE_EQ(world.coordinator().getLastFrameTime(), 1.0 / 64.0);
    EXPECT_DOUBLE_EQ(world.coordinator().getInstantFPS(), 1.0 / 64.0);
}

TEST_F(Frame, LevelThatDiedEndsTheGameInOrder)
{
    world.coordinator().murder();
    world.frame();
    EXPECT_EQ(countLogLines("There is no level to run"), 0u) << "the dying level still had this frame";
    world.frame();
    EXPECT_EQ(countLogLines("There is no level to run"), 1u);
}

TEST(FindMap, GivesTheMapThatHoldsThePointOrElseTheNearest)
{
    TestLevel world;
    const Handle<MapRootEntity> hall = world.map("hall", Vec4(0, 0, 0, 1), Vec4(10, 10, 10, 0));
    const Handle<MapRootEntity> cellar = world.map("cellar", Vec4(100, 0, 0, 1), Vec4(10, 10, 10, 0));
    const Handle<MapRootEntity> twin = world.map("twin", Vec4(102, 0, 0, 1), Vec4(10, 10, 10, 0));
    Coordinator &level = world.coordinator();
    EXPECT_EQ(level.findMap(Vec4(4.9f, 0, 0, 1)), hall);
    EXPECT_EQ(level.findMap(Vec4(99, 0, 0, 1)), cellar) << "of two that hold it, the earlier";
    EXPECT_EQ(level.findMap(Vec4(106, 0, 0, 1)), twin);
    EXPECT_EQ(level.findMap(Vec4(50, 0, 0, 1)), hall) << "equally far: the earlier";
    EXPECT_EQ(level.findMap(Vec4(50.5f, 0, 0, 1)), cellar);
    EXPECT_EQ(level.findMap(Vec4(5, 0, 0, 1)), hall) << "the box's own face is outside, but near";
}

TEST(FindMap, WithoutMapsSaysSo)
{
    TestLevel world;
    world.entity("no map");
    EXPECT_FALSE(world.coordinator().findMap(Vec4(0, 0, 0, 1)).isValid());
    EXPECT_EQ(countLogLines("Traveled to the fires of Mount Doom to find MapRootEntity. Nobody was home."), 1u);
}
