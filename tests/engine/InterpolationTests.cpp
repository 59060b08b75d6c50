#include "engine/entities/InterpolatorComponent.h"
#include "engine/entities/LerpVisitor.h"

#include "support/AllocationCount.h"
#include "support/TestLevel.h"
#include "support/Probe.h"

#include <gtest/gtest.h>

#include <limits>

namespace
{
constexpr Seconds FRAME = 64.0 / 4096.0; ///< of a test level

/// A level with a thing whose properties are to move.
struct MovingWorld
{
    MovingWorld() : thing(*spawn("thing", level.entity("lamp")).lookup()), interpolator(interpolatorOf(thing)) {}
    static InterpolatorComponent &interpolatorOf(const Object &object)
    {
        return *getInterpolatorForObject(object.getHandle()).lookup();
    }
    void move(const char *property, const Variant &from, const Variant &to, Seconds duration)
    {
        interpolateProperty(thing.getHandle(), String::copyFrom(property), from, to, duration);
    }
    void frames(int count)
    {
        for (int i = 0; i < count; ++i)
            level.frame();
    }

    TestLevel level;
    Probe &thing;
    InterpolatorComponent &interpolator;
};

template <class T>
T between(double alpha, const T &from, const T &to)
{
    return LerpVisitor(alpha).apply(Variant(from), Variant(to)).value.template get<T>().value;
}
} // namespace

TEST(Interpolation, MovesAPropertyToItsEndInTheTimeOfTheGame)
{
    MovingWorld world;
    world.thing.speed = 10;
    interpolateProperty(world.thing.getHandle(), SCS("speed"), 20.0, 4 * FRAME);
    world.frames(2);
    EXPECT_EQ(world.thing.speed, 15.f) << "from its present value";
    EXPECT_EQ(allocationsOf([&] { world.interpolator.doFrame(); }), 0u);
    world.level.coordinator().setLoopState(Coordinator::LOOP_STOP);
    world.frames(3);
    EXPECT_EQ(world.thing.speed, 17.5f);
    world.level.coordinator().setLoopState(Coordinator::LOOP_RUN);
    world.frames(5);
    EXPECT_EQ(world.thing.speed, 20.f);

    world.move("speed", 0.0, 8.0, 0.0);
    world.move("secret", 0, 100, 2 * FRAME);
    world.frames(1);
    EXPECT_EQ(world.thing.speed, 8.f) << "a duration of 0 finishes at once";
    EXPECT_EQ(world.thing.value, 50);
    world.move("secret", 0, -80, 8 * FRAME);
    world.frames(2);
    EXPECT_EQ(world.thing.value, -20) << "the new one takes over";
    EXPECT_EQ(world.interpolator.getInterpolantCount(), 1);
}

TEST(Interpolation, FailuresAreToldAndDropped)
{
    MovingWorld world;
    world.thing.speed = 3;
    world.move("speed", 3.0, SCS("four"), 1.0);
    world.frames(2);
    EXPECT_EQ(countLogLines("lamp/thing': NOT_LERPABLE"), 1u);
    interpolateProperty(world.thing.getHandle(), SCS("weight"), 4.0, 1.0);
    EXPECT_EQ(countLogLines("Error while interpolating property `weight' of object `"), 1u);
    EXPECT_EQ(world.thing.speed, 3.f);

    world.move("speed", 3.0, 4.0, 1.0);
    world.thing.murder();
    world.frames(3);
    EXPECT_EQ(world.interpolator.getInterpolantCount(), 0);
    EXPECT_EQ(countLogLines("Error while interpolating"), 3u) << "the object is gone";
}

TEST(Interpolation, WhatMovesASystemWaitsForALevelAndGoesOnInTheNext)
{
    TestLevel world;
    auto &loop = getSystemDeref<GameLoopSystem>();
    const Handle<Probe> outside = spawn("outside");
    loop.setCurrentlyActiveCoordinator(Handle<Coordinator>());
    interpolateProperty(outside, SCS("speed"), 0.0, 8.0, 8 * FRAME);
    loop.setCurrentlyActiveCoordinator(world.level);
    world.frame();
    world.frame();
    EXPECT_EQ(outside.lookup()->getSpeed(), 2.f) << "set up while no level was in charge";

    world.level.lookup()->murder();
    interpolateProperty(outside, SCS("limit"), 0, 8, 8 * FRAME);
    cremateDeadObjects();
    world.level = world.anotherCoordinator();
    loop.setCurrentlyActiveCoordinator(world.level);
    world.frame();
    EXPECT_EQ(outside.lookup()->getSpeed(), 3.f) << "begun in the level before";
    EXPECT_EQ(outside.lookup()->getLimit(), 1) << "set up in a level that was about to end";
    outside.lookup()->murder();
}

TEST(Interpolation, OfAManagerIsRefusedUnlessItIsAllowed)
{
    MovingWorld world;
    const Handle<Object> manager = world.level.coordinator().getManager(SCS("physics"));
    world.interpolator.addInterpolator(manager, SCS("player"), 0, 1, FRAME);
    EXPECT_EQ(countLogLines("Error while interpolating property `player' of object `"), 1u);
    EXPECT_EQ(countLogLines("physicsManager': NOT_INTERPOLATABLE"), 1u);
    world.interpolator.setAllowManagers(true);
    world.interpolator.addInterpolator(manager, SCS("player"), 0, 1, FRAME);
    EXPECT_EQ(world.interpolator.getInterpolantCount(), 1);
}

TEST(Interpolation, BlendsPairsOfOneType)
{
    constexpr auto least = std::numeric_limits<std::int64_t>::min(), most = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(between(1.0, least, most), most);
    const Quaternion turn = Quaternion::fromAxisAngle(Vec4(0, 1, 0, 0), 1.f);
    for (const Quaternion &same : {turn, Quaternion(-turn.r, -turn.i, -turn.j, -turn.k)})
        EXPECT_EQ(between(0.5, Quaternion(), same), Quaternion::fromAxisAngle(Vec4(0, 1, 0, 0), 0.5f));
    EXPECT_FALSE(LerpVisitor(0.5).apply(Variant(1.0), Variant(2)).succeeded()) << "a float and an integer";
}
