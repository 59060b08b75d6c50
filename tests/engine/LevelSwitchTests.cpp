#include "support/ScriptModule.h"
#include "support/TestLevel.h"
#include "support/Probe.h"

#include "engine/levels/PersistentStateComponent.h"
#include "object/python/PythonCalls.h"
#include "object/reflection/Variant.h"

#include <gmock/gmock.h>

#include <optional>

namespace
{
/// A running level, and a script `loader` whose levels are bare coordinators.
class LevelSwitch : public testing::Test
{
protected:
    LevelSwitch()
    {
        installScriptModule("serialization", "def configureSystem(system): pass\n");
        installScriptModule("loader", R"(
import _kaVel
loads = []
def loadLevel(name):
    loads.append(name)
    if name == "Broken":
        raise ValueError("the level is broken")
    if name == "Nothing":
        return None
    level = _kaVel._ReflectionInstance().Coordinator.construct_()
    level.setLevelName(name)
    return level
def loadMap(level, name):
    loads.append(level.getLevelName() + "." + name)
    world_map = _kaVel._ReflectionInstance().MapRootEntity.construct_()
    world_map.setMapName(name)
    world_map.setParent(level)
    lamp = _kaVel._ReflectionInstance().Probe.construct_()
    lamp.setName("lamp")
    lamp.setParent(world_map)
    return world_map
def completeMap(world_map):
    loads.append("complete with %g" % world_map.getChild("lamp").getValue())
)");
        world.emplace();
    }
    static std::string loadsSoFar() { return scriptText("','.join(__import__('loader').loads)"); }
    GameLoopSystem &loop() { return getSystemDeref<GameLoopSystem>(); }

    std::optional<TestLevel> world;
};
} // namespace

TEST_F(LevelSwitch, HappensAtTheNextFrameAndTheLastNameWins)
{
    const Handle<Coordinator> first = world->level;
    loop().queueLoadLevel(SCS("Cellar"));
    loop().queueLoadLevel(SCS("Attic"));
    EXPECT_EQ(loadsSoFar(), "");
    EXPECT_EQ(loop().getCurrentlyActiveCoordinator(), first);

    world->frame();
    EXPECT_EQ(loadsSoFar(), "LoadingScreen,Attic");
    const Handle<Coordinator> second = loop().getCurrentlyActiveCoordinator();
    EXPECT_EQ(second.lookup()->getLevelName(), SCS("Attic"));
    EXPECT_FALSE(first.isValid());
    EXPECT_EQ(second.lookup()->getTimer(SCS("master")).getValue(), TestLevel::FRAME_TICKS);

    world->frame();
    EXPECT_EQ(loop().getCurrentlyActiveCoordinator(), second);
    EXPECT_EQ(loadsSoFar(), "LoadingScreen,Attic");
    second.lookup()->murder();
}

TEST_F(LevelSwitch, OldLevelIsDyingButThereWhileTheLoadingScreenRuns)
{
    const Handle<Probe> old = spawn("old", world->level);
    bool diedBeforeTheLoad = true;
    old.lookup()->whenMurdered = [&] { diedBeforeTheLoad = loadsSoFar() != "LoadingScreen,Attic"; };
    loop().queueLoadLevel(SCS("Attic"));
    world->frame();
    EXPECT_FALSE(diedBeforeTheLoad);
    EXPECT_FALSE(old.isValid());
    loop().getCurrentlyActiveCoordinator().lookup()->murder();
}

TEST_F(LevelSwitch, ManySwitchesLeaveNothingBehind)
{
    loop().queueLoadLevel(SCS("Hall"));
    world->frame();
    const std::size_t objects = ObjectMap().getObjectCount();
    for (int i = 0; i < 20; ++i)
    {
        loop().queueLoadLevel(SCS("Hall"));
        world->frame();
    }
    EXPECT_EQ(ObjectMap().getObjectCount(), objects);
    loop().getCurrentlyActiveCoordinator().lookup()->murder();
}

TEST_F(LevelSwitch, ExceptionOfTheLoaderTravelsToTheCaller)
{
    loop().queueLoadLevel(SCS("Broken"));
    EXPECT_FALSE(pythonGuarded([&] { world->frame(); }));
    EXPECT_THAT(getCurrentPythonTraceback().toCString(), testing::HasSubstr("ValueError: the level is broken"));
    EXPECT_FALSE(loadLevel(SCS("Nothing")).isValid());
    EXPECT_EQ(countLogLines("loader.loadLevel('Nothing') returned no Coordinator"), 1u);
}

TEST_F(LevelSwitch, MapIsLoadedByTheScriptIntoItsLevelAndRepeatsWhatBecameOfItBeforeItsLoadCompletes)
{
    world->coordinator().setLevelName(SCS("Hall"));
    PersistentStateComponent::makeFor(world->level)
        .lookup()
        ->addFunctionOneArg(SCS("ground/lamp"), SCS("setSecret"), 5.f);
    const Handle<MapRootEntity> map = world->coordinator().loadMap(SCS("ground"));
    EXPECT_EQ(map.lookup()->getMapName(), SCS("ground"));
    EXPECT_EQ(map.lookup()->getParent(), world->level);
    EXPECT_EQ(loadsSoFar(), "Hall.ground,complete with 5");
}

TEST(SystemConfiguration, IsTheScriptsBusinessBeforeTheStart)
{
    installScriptModule("serialization", R"(
def configureSystem(system):
    if system.name == "GlobalConfigSystem":
        system.setConsoleEnabled(True)
)");
    TestLevel world;
    const Handle<System> config = getSystemN(SCS("GlobalConfigSystem"));
    EXPECT_EQ(config.lookup()->getPropertyValue(SCS("consoleEnabled")).value.get<bool>().value, true);
}

TEST(SystemConfigurationDeathTest, ThatRaisesEndsTheProcess)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            installScriptModule("serialization", "def configureSystem(system): raise ValueError('no such setting')\n");
            TestLevel world;
        },
        testing::ExitedWithCode(1), "Error while configuring system TimeSystem:");
}
