#include "engine/time/BSTimeSource.h"
#include "engine/time/TimeSystem.h"
#include "support/TestLevel.h"

#include <gtest/gtest.h>

#include <limits>

namespace
{
Handle<TimeKeeper> makeKeeper(const TestLevel &world)
{
    return world.coordinator().getTimerHandle(SCS("test"));
}
} // namespace

TEST(TimeSystem, SixtyFramesASecondGiveWholeTicks)
{
    TestLevel world;
    TimeSystem &time = getSystemDeref<TimeSystem>();
    auto source = handle_cast<BSTimeSource>(time.getSource()).lookup();
    source->setFrameRate(60);
    EXPECT_EQ(time.newFrame(), 68);
    EXPECT_EQ(time.now(), 0);
    EXPECT_DOUBLE_EQ(time.toSeconds(1024), 0.25);
    EXPECT_EQ(time.toTicks(0.99999), 4095);

    source->setFrameRate(0);
    EXPECT_EQ(source->getFrameRate(), 60);
}

TEST(TimeSystem, UsesThePerformanceCounterUnlessTold)
{
    TestLevel world;
    TimeSystem &time = getSystemDeref<TimeSystem>();
    const Handle<TimeSource> fixed = time.getSource();
    time.setSource(SCS("QPCTimeSource"));
    EXPECT_EQ(time.getSource().lookup()->getType()->getName(), SCS("QPCTimeSource"));
    EXPECT_EQ(time.getSource().lookup()->getParent(), getSystem<TimeSystem>());
    EXPECT_TRUE(fixed.lookup()->isDying());
    const TimerTicks before = time.now();
    EXPECT_GE(time.now(), before);
    EXPECT_GE(time.newFrame(), 0);
}

TEST(TimeSystem, RefusesWhatIsNoTimeSource)
{
    TestLevel world;
    TimeSystem &time = getSystemDeref<TimeSystem>();
    const Handle<TimeSource> fixed = time.getSource();
    time.setSource(SCS("QPCTimeSauce"));
    EXPECT_EQ(countLogLines("no class 'QPCTimeSauce'; did you mean 'QPCTimeSource'?"), 1u);
    time.setSource(Entity::staticType);
    time.setSource(SCS("TimeSource"));
    EXPECT_EQ(countLogLines("TimeSource is abstract"), 1u);
    time.setSource(Handle<TimeSource>());
    EXPECT_EQ(time.getSource(), fixed);
    EXPECT_FALSE(fixed.lookup()->isDying());
}

TEST(TimeSystem, BuildsTheSourceAnewWhenItDied)
{
    TestLevel world;
    TimeSystem &time = getSystemDeref<TimeSystem>();
    const Handle<TimeSource> fixed = time.getSource();
    fixed.lookup()->murder();
    cremateDeadObjects();
    time.newFrame();
    EXPECT_EQ(time.getSource().lookup()->getType()->getName(), SCS("QPCTimeSource"));
}

TEST(TimeKeeper, ScalesFramesByAFixedPointNumber)
{
    TestLevel world;
    auto keeper = makeKeeper(world).lookup();
    keeper->setScaling(3, 1);
    keeper->newFrame(65);
    EXPECT_EQ(keeper->getFrameTime(), 97);
    EXPECT_EQ(keeper->getWallTimeFrameTime(), 64);
    EXPECT_DOUBLE_EQ(keeper->getFrameTimeSeconds(), 97.0 / 4096.0);
    keeper->newFrame(-65);
    EXPECT_EQ(keeper->getFrameTime(), -98);
    EXPECT_EQ(keeper->getValue(), -1);

    keeper->reset(1000);
    EXPECT_EQ(keeper->getValue(), 1000);
    EXPECT_EQ(keeper->getFrameTime(), 0);
}

TEST(TimeKeeper, StandsStillAtMultiplierZero)
{
    TestLevel world;
    auto keeper = makeKeeper(world).lookup();
    keeper->newFrame(64);
    keeper->setScaling(0, 0);
    keeper->newFrame(64);
    EXPECT_EQ(keeper->getValue(), 64);
    EXPECT_EQ(keeper->getWallTimeValue(), 0);
    EXPECT_EQ(keeper->getFrameTimeSeconds(), 0.0);
}

TEST(TimeKeeper, ExtremesWrapAndDoNotCrash)
{
    TestLevel world;
    auto keeper = makeKeeper(world).lookup();
    const TimerTicks lowest = std::numeric_limits<TimerTicks>::min();
    keeper->setScaling(-1, 64);
    keeper->setScaling(-1, -1);
    keeper->newFrame(64);
    EXPECT_EQ(keeper->getFrameTime(), 64) << "a shift outside 0..63 changes nothing";
    keeper->setScaling(-1, 0);
    keeper->reset(lowest);
    EXPECT_EQ(keeper->getWallTimeValue(), lowest);
    keeper->newFrame(lowest);
    EXPECT_EQ(keeper->getValue(), 0);
}
