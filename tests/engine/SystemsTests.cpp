#include "engine/debug/GlobalConfigSystem.h"
#include "engine/systems/SystemSystem.h"
#include "engine/TestSystems.h"
#include "support/TestLevel.h"

#include "foundation/Logger.h"
#include "object/reflection/SavedArguments.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{
/// The system of systems for the length of a test, with an empty journal.
class Systems : public testing::Test
{
protected:
    void SetUp() override
    {
        systemJournal.clear();
        firstLine = Logger().getLogCount();
        SystemSystem::bootstrap();
    }
    void TearDown() override
    {
        if (SystemSystem::getInstance().isValid())
            SystemSystem::shutdown();
    }
    /// The debug lines logged since the start of the test.
    std::vector<std::string> debugLines() const
    {
        std::vector<std::string> lines;
        std::size_t count = Logger().getLogCount() - firstLine;
        for (std::size_t i = Logger().getHistorySize() - count; i < Logger().getHistorySize(); ++i)
        {
            const Logger_::HistoryEntry &entry = Logger().getHistoryEntry(i);
            if (entry.level == Logger_::I_DEBUG)
                lines.push_back(entry.message.toCString());
        }
        return lines;
    }

    std::size_t firstLine = 0;
};
} // namespace

TEST_F(Systems, StartTellsItsStepsInOrderDependenciesFirst)
{
    getSystem<TestFloorSystem>();
    EXPECT_THAT(debugLines(), ElementsAre("System bootstrapping complete.", "Constructing system TestFloorSystem.",
                                          "Constructing system TestGroundSystem.",
                                          "Configuring system TestGroundSystem.", "Starting system TestGroundSystem.",
                                          "Configuring system TestFloorSystem.", "Starting system TestFloorSystem."));
}

TEST_F(Systems, KeepTheirPlaceInTheTree)
{
    System &floor = *getSystem<TestFloorSystem>().lookup();
    const Handle<Object> root = SystemSystem::getInstance();
    const Handle<Object> level = construct<Entity>(defaultAllocationCategory);
    EXPECT_FALSE(floor.setParent(level).succeeded());
    EXPECT_EQ(floor.getParent(), root);
    EXPECT_FALSE(root.lookup()->setParent(level).succeeded());
    EXPECT_FALSE(root.lookup()->getParent().isValid());
    EXPECT_EQ(level.lookup()->getChildCount(), 0u);
    EXPECT_EQ(countLogLines("setParent: the system TestFloorSystem cannot be moved"), 1u);
    level.lookup()->murder();
}

TEST_F(Systems, SharedDependencyStartsOnceAndStopsLast)
{
    getSystem<TestRoofSystem>();
    EXPECT_THAT(systemJournal, ElementsAre("start ground", "start floor", "start roof"));
    systemJournal.clear();
    SystemSystem::shutdown();
    EXPECT_THAT(systemJournal, ElementsAre("stop roof", "stop floor", "stop ground"));
    EXPECT_EQ(debugLines().back(), "Shutting down system SystemSystem");
}

TEST_F(Systems, AskingByClassNameAndTypeGivesTheOneSystem)
{
    const Handle<System> byName = getSystemN(SCS("TestGroundSystem"));
    EXPECT_EQ(byName, getSystem<TestGroundSystem>());
    EXPECT_EQ(byName, getSystem(TestGroundSystem::staticType));
    EXPECT_EQ(&getSystemDeref<TestGroundSystem>(), byName.lookup().ptr);
    EXPECT_THAT(systemJournal, ElementsAre("start ground"));
    EXPECT_EQ(getObjectByPath(SCS("s:/TestGroundSystem")), byName);
}

TEST_F(Systems, NamesThatAreNoSystemGiveAnErrorAndAnInvalidHandle)
{
    EXPECT_FALSE(getSystem(SCS("TestGruondSystem")).isValid());
    EXPECT_EQ(countLogLines("no class 'TestGruondSystem'; did you mean 'TestGroundSystem'?"), 1u);
    EXPECT_FALSE(getSystem(SCS("Entity")).isValid());
    EXPECT_EQ(countLogLines("Entity is no class derived from System"), 1u);
    EXPECT_FALSE(getSystem(SCS("System")).isValid());
    EXPECT_EQ(countLogLines("class System is abstract"), 1u);
    EXPECT_FALSE(getSystem(ReflectorPtr()).isValid());
    EXPECT_THAT(systemJournal, IsEmpty());
}

TEST_F(Systems, StartedAnewAfterShutdownAreOtherObjects)
{
    const Handle<TestGroundSystem> first = getSystem<TestGroundSystem>();
    SystemSystem::shutdown();
    EXPECT_FALSE(first.isValid());
    EXPECT_FALSE(SystemSystem::getInstance().isValid());
    EXPECT_FALSE(getSystem(TestGroundSystem::staticType).isValid());

    SystemSystem::bootstrap();
    EXPECT_NE(getSystem<TestGroundSystem>(), first);
    EXPECT_TRUE(getSystem<TestGroundSystem>().isValid());
}

TEST_F(Systems, DebugSwitchesAreProperties)
{
    GlobalConfigSystem &config = getSystemDeref<GlobalConfigSystem>();
    EXPECT_EQ(config.getPropertyValue(SCS("debugDrawEnabled")).value.get<bool>().value, false);
    EXPECT_TRUE(config.setPropertyValue(SCS("debugDrawEnabled"), Variant(true)).succeeded());
    EXPECT_TRUE(config.getDebugDrawEnabled());
    EXPECT_FLOAT_EQ(config.getPropertyValue(SCS("defaultSceneAmbient")).value.get<float>().value, 0.2f);
}
