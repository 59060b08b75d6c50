#include "RecordingCollector.h"
#include "TestClock.h"

#include "support/AllocationCount.h"
#include "support/TestComponent.h"
#include "support/TestLevel.h"

#include "engine/time/TimeSystem.h"
#include "foundation/ProfilerScope.h"
#include "tools/profiler/FunctionTimeProfiler.h"

#include <gtest/gtest.h>

#include <string>

namespace
{
class Profiler : public testing::Test
{
protected:
    Profiler()
    {
        const Handle<TestClock> h = construct<TestClock>(defaultAllocationCategory);
        getSystemDeref<TimeSystem>().setSource(h);
        clock = h.lookup().ptr;
    }

    ProfilerSystem::EventRecord last() { return *profiler().getRecord(profiler().getLastEventID()); }
    ProfilerSystem &profiler() { return getSystemDeref<ProfilerSystem>(); }

    /// A frame of 100 ticks: physics 50, of which broad phase 20 in two calls; sound 10.
    void recordFrame()
    {
        profiler().newFrame();
        {
            const ProfilerScope physics(SCS("UPDATER"), SCS("physics"));
            clock->time += 30;
            for (int i = 0; i < 2; ++i)
            {
                const ProfilerScope broadPhase(SCS("broad phase"), String());
                clock->time += 10;
            }
        }
        {
            const ProfilerScope sound(SCS("UPDATER"), SCS("sound"));
            clock->time += 10;
        }
        clock->time += 40;
    }

    TestLevel level;
    TestClock *clock;
};
} // namespace

TEST_F(Profiler, AFrameBeginsWithTheEndOfTheOneBeforeButTheFirst)
{
    const EventID first = profiler().getLastEventID() + 1;
    clock->time = 5;
    profiler().newFrame();
    EXPECT_EQ(first, profiler().getLastEventID()) << "one event: no frame ended";
    EXPECT_EQ(ProfilerSystem::ET_BEGIN, last().type);
    EXPECT_EQ(ProfilerSystem::NO_EVENT, last().associatedID);
    EXPECT_EQ(first, profiler().getFrameBeginEventID());

    clock->time = 30;
    profiler().newFrame();
    const ProfilerSystem::EventRecord &end = *profiler().getRecord(first + 1);
    EXPECT_EQ(SCS("FRAME"), end.profileKey);
    EXPECT_EQ(ProfilerSystem::ET_END, end.type);
    EXPECT_EQ(first, end.associatedID);
    EXPECT_EQ(30u, profiler().getRecord(first)->associatedID) << "a begin holds when it ended";
    EXPECT_EQ(first, profiler().getFrameBeginEventID(0));
    EXPECT_EQ(first, profiler().getFrameBeginEventID(-2));
    EXPECT_EQ(first + 2, profiler().getFrameBeginEventID());
    EXPECT_EQ(ProfilerSystem::NO_EVENT, profiler().getFrameBeginEventID(2));
}

TEST_F(Profiler, WhatTheRingNoLongerHoldsCannotBeEnded)
{
    const char *report = "ET_END event record created with invalid or already-spilled associatedID";
    const EventID begin = profiler().beginScope(SCS("long"), String());
    for (std::size_t i = 0; i + 1 < ProfilerSystem::RECORD_CAPACITY; ++i)
        profiler().recordEvent(SCS("mark"));
    ASSERT_NE(nullptr, profiler().getRecord(begin)) << "the oldest of a full ring";
    profiler().recordEvent(SCS("mark"));
    EXPECT_EQ(nullptr, profiler().getRecord(begin));
    EXPECT_EQ(nullptr, profiler().getRecord(profiler().getLastEventID() + 1));

    const std::size_t before = countLogLines(report);
    profiler().endScope(begin, SCS("long"), String(), false);
    EXPECT_EQ(begin, last().associatedID) << "the end stands";
    profiler().recordEvent(SCS("never"), String(), ProfilerSystem::ET_END);
    EXPECT_EQ(ProfilerSystem::NO_EVENT, last().associatedID);
    EXPECT_EQ(before + 2, countLogLines(report));
}

TEST_F(Profiler, AVerboseScopeOfExactlyOneSecondIsToldInSeconds)
{
    {
        const FunctionTimeProfiler scope(SCS("load"), SCS("villa"), true);
        clock->time += TestClock::RATE;
    }
    EXPECT_EQ(1u, countLogLines("villa/load completed in 1.000000 s"));
    {
        const ProfilerScope scope(SCS("load"), SCS("cellar"), true);
        clock->time += TestClock::RATE - 1;
    }
    EXPECT_EQ(1u, countLogLines("cellar/load completed in 999.000000 ms"));
    {
        const ProfilerScope quiet(SCS("load"), SCS("attic"));
        clock->time += 1;
    }
    EXPECT_EQ(0u, countLogLines("attic/load"));
}

TEST_F(Profiler, UpdatersAreMeasuredByTheClockThatIsInForce)
{
    level.component<TestComponent>(level.entity("runner"), "player");
    level.frame();
    const Handle<TestClock> other = construct<TestClock>(defaultAllocationCategory);
    other.lookup()->time = 777;
    getSystemDeref<TimeSystem>().setSource(other);
    level.frame();
    int updaters = 0;
    for (EventID id = profiler().getFrameBeginEventID(); id <= profiler().getLastEventID(); ++id)
    {
        const ProfilerSystem::EventRecord &record = *profiler().getRecord(id);
        EXPECT_EQ(777, record.timestamp);
        updaters += record.type == ProfilerSystem::ET_BEGIN && record.profileKey == SCS("UPDATER");
    }
    EXPECT_GT(updaters, 0);
}

TEST_F(Profiler, TheTableNestsScopesDearestFirstAndSettles)
{
    const Handle<RecordingCollector> collector = construct<RecordingCollector>(defaultAllocationCategory);
    const auto show = [&]
    {
        recordFrame();
        collector.lookup()->clear();
        profiler().applyDebugDraw(collector);
    };
    show();
    EXPECT_TRUE(collector.lookup()->texts.empty()) << "not shown unless asked for";

    profiler().setShowResults(true);
    for (int i = 0; i < 100; ++i) // the means' window passes three times
        show();
    std::string table;
    float y = -1;
    for (const RecordingCollector::Text &text : collector.lookup()->texts)
    {
        table += text.y == y ? " " : "|";
        table += text.text.toCString();
        y = text.y;
    }
    EXPECT_EQ("|100.00 ms a frame 10 frames/s 0 draw calls 0 state changes 0 target changes|ms share calls"
              "|50.00 50% 1 physics|20.00 20% 2 broad phase|10.00 10% 1 sound",
              // a mean of exactly 100 ms has no hundredths
              table.replace(table.find("|100 "), 5, "|100.00 "));
    EXPECT_GT(collector.lookup()->lines, 0) << "bars";

    EXPECT_EQ(allocationsOf(show, 40), 0u);
}
