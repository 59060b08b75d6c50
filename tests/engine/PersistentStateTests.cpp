#include "engine/levels/PersistentStateComponent.h"

#include "support/TestLevel.h"
#include "support/Probe.h"

#include <gtest/gtest.h>

namespace
{
/// A level that persists, whose maps are built as often as a test wants.
struct PersistentWorld
{
    PersistentWorld()
    {
        level.coordinator().setLevelName(SCS("Manor"));
        getSystemDeref<GameLoopSystem>().givePersistentState(level.level);
        map = build("hall");
    }
    PersistentStateComponent &state() { return *PersistentStateComponent::ofLevel(level.level).lookup(); }
    Handle<MapRootEntity> build(const char *name) { return level.map(name, Vec4(0, 0, 0, 1), Vec4(10, 3, 10, 0)); }
    Probe &thing(const char *name, Handle<Object> parent) { return *spawn(name, parent).lookup(); }

    TestLevel level;
    Handle<MapRootEntity> map;
};
} // namespace

TEST(PersistentState, RepeatsWhatAnObjectHasBecomeInTheOrderInWhichItWasSaid)
{
    PersistentWorld world;
    Probe &old = world.thing("lamp", world.level.entity("shelf", world.map));
    for (const auto &[function, value] :
         {std::pair(SCS("setSecret"), 5.f), std::pair(SCS("addValue"), 2.f), std::pair(SCS("setSecret"), 10.f),
          std::pair(SCS("addValue"), 1.f), std::pair(SCS("addValue"), 1.f)})
        old.addToPersistentStateOneArg(function, value);
    EXPECT_EQ(world.state().getCallCount(), 4) << "the last call of a setter counts, and every other one";
    world.thing("lamp", world.map).addToPersistentStateNoArgs(SCS("murder"));

    const Handle<MapRootEntity> again = world.build("hall");
    Probe &lamp = world.thing("lamp", world.level.entity("shelf", again));
    lamp.value = 100;
    Probe &other = world.thing("lamp", again);
    world.state().persistState(again);
    EXPECT_EQ(lamp.value, 12) << "10 and twice 1";
    EXPECT_TRUE(other.isDying());
}

TEST(PersistentState, KeepsMapsApartAndServesOneThatARepeatedCallLoads)
{
    PersistentWorld world;
    world.state().addFunctionOneArg(SCS("attic/chest"), SCS("setSecret"), 3.f); // not there yet
    Probe &lamp = world.thing("lamp", world.map);
    lamp.addToPersistentStateTwoArgs(SCS("handleValueMessage"), Probe::staticType, 5.f);
    for (const float value : {1.f, 2.f})
        world.state().addFunctionOneArg(SCS("hall/lamp"), SCS("setSecret"), value);
    EXPECT_EQ(world.state().getCallCount(), 3);

    Probe &elsewhere = world.thing("lamp", world.build("hallway"));
    Probe *chest = nullptr;
    lamp.whenCalled = [&]
    {
        const Handle<MapRootEntity> attic = world.build("attic");
        chest = &world.thing("chest", attic);
        world.state().persistState(attic);
        world.state().persistState(world.map);
    };
    world.state().persistState(world.map);
    EXPECT_EQ(lamp.value, 2);
    ASSERT_TRUE(chest);
    EXPECT_EQ(chest->value, 3);
    EXPECT_EQ(elsewhere.value, 0);
    EXPECT_EQ(countLogLines("repeated for Manor/hall/ loads that map again"), 1u);
}

TEST(PersistentState, DiesWithALevelThatIsMurderedWhichIsWarnedOf)
{
    PersistentWorld world;
    world.level.coordinator().murder();
    const Handle<Coordinator> next = world.level.anotherCoordinator();
    getSystemDeref<GameLoopSystem>().givePersistentState(next);
    EXPECT_TRUE(PersistentStateComponent::ofLevel(next).isValid());
    EXPECT_EQ(countLogLines("the level that kept it was murdered"), 1u);
}

TEST(PersistentState, SaysWhatItCannotKeepOrRepeatAndGoesOn)
{
    PersistentWorld world;
    world.thing("twin", world.map);
    for (Probe *thing :
         {&world.thing("ghost", world.level.level), &world.thing("twin", world.map), &world.thing("", world.map)})
        thing->addToPersistentStateNoArgs(SCS("murder"));
    EXPECT_EQ(countLogLines("ghost is not kept for the next load of its map: it lies below no map"), 1u);
    EXPECT_EQ(countLogLines("/hall/twin is not kept for the next load of its map: another object stands at"), 1u);
    EXPECT_EQ(countLogLines("was given no name"), 1u);
    world.thing("and/or", world.map).addToPersistentStateNoArgs(SCS("murder"));
    EXPECT_EQ(countLogLines("has a \"/\" in it"), 1u);
    for (const char *path : {"lamp", "/hall/lamp", "c:/hall/lamp", "hall/../lamp", "hall//key"})
        world.state().addFunctionNoArgs(String::copyFrom(path), SCS("murder"));
    EXPECT_EQ(countLogLines("is not kept: nothing stands there"), 5u);
    EXPECT_EQ(world.state().getCallCount(), 0);

    Probe &lamp = world.thing("lamp", world.map);
    world.state().addFunctionNoArgs(SCS("hall/attic/key"), SCS("murder"));
    lamp.addToPersistentStateNoArgs(SCS("dance"));
    lamp.addToPersistentStateOneArg(SCS("addFour"), lamp.getHandle());
    EXPECT_EQ(countLogLines("addFour of Manor/hall/lamp is kept with an object that dies with this level"), 1u);
    lamp.addToPersistentStateOneArg(SCS("setSecret"), 4.f);
    world.state().persistState(world.map);
    EXPECT_EQ(countLogLines("murder of Manor/hall/attic/key is not repeated: there is no such object any more"), 1u);
    EXPECT_EQ(countLogLines("dance of Manor/hall/lamp is not repeated: the object has no such function"), 1u);
    EXPECT_EQ(countLogLines("addFour of Manor/hall/lamp is not repeated: CALL_FAILURE: WRONG_ARGUMENT_COUNT"), 1u);
    EXPECT_EQ(lamp.value, 4);
}
