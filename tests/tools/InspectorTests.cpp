#include "support/Probe.h"

#include "support/TemporaryFile.h"
#include "support/TestLevel.h"

#include "tools/bars/BarMemory.h"
#include "tools/bars/ObjectQuery.h"
#include "tools/bars/PythonText.h"
#include "tools/bars/Subscriptions.h"

#include "object/messages/PostOffice.h"
#include "object/reflection/PropertyDesc.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <limits>

namespace
{
class Inspector : public testing::Test
{
protected:
    Inspector()
    {
        thing = construct<FastProbe>(defaultAllocationCategory);
        thing.lookup()->setName(SCS("stalker"));
        thing.lookup()->setParent(level.entity("lair"));
        thing.lookup()->speed = 2.5f;
        thing.lookup()->gait = Probe::RUNS;
    }

    bool finds(const char *query, std::string *shown = nullptr)
    {
        std::string ignored;
        return ObjectQuery(query).matches(*thing.lookup(), shown ? *shown : ignored);
    }

    TestLevel level;
    Handle<FastProbe> thing;
};
} // namespace

TEST_F(Inspector, ASearchMeetsNamesClassesPathsAndValues)
{
    for (const char *query :
         {"STALK", "fastpr", "class:probe", "class:abstractprobe", "path:lair/", "c:/lair", "value:2.5", "speed:2.5",
          "speed:>2", "spe:<3", "gait:runs", "value:runs", "stalker class:probe speed:>2"})
        EXPECT_TRUE(finds(query)) << query;
    for (const char *query : {"class:entity", "path:villa", "value:2.6", "speed:>2.5", "speed:fast", "gait:walks",
                              "stalker class:entity", "sideeffect:1", "value:", "speed:>"})
        EXPECT_FALSE(finds(query)) << query;
    EXPECT_EQ(0, thing.lookup()->reads) << "a getter that changes its object is not called";
    std::string shown;
    EXPECT_TRUE(finds("gait:runs", &shown));
    EXPECT_EQ("gait = RUNS", shown);
    EXPECT_TRUE(ObjectQuery("  ").isEmpty());
}

TEST_F(Inspector, ValuesAreWrittenAsAScriptReadsThem)
{
    EXPECT_EQ(SCS("0.1"), pythonText(Variant(0.1f))) << "a float has no more digits than it needs";
    EXPECT_EQ(SCS("2.0"), pythonText(Variant(2.0)));
    EXPECT_EQ(SCS("float('-inf')"), pythonText(Variant(-std::numeric_limits<double>::infinity())));
    EXPECT_EQ(SCS("True"), pythonText(Variant(true)));
    EXPECT_EQ(SCS("'it\\'s \\\\ a\\nline\\x01'"), pythonText(Variant(SCS("it's \\ a\nline\x01"))));
    EXPECT_EQ(SCS("kaVel.Vec4(1.0, 0.5, -3.0, 1.0)"), pythonText(Variant(Vec4(1, 0.5f, -3, 1))));
    const ReflectorPtr gait = thing.lookup()->getType()->getProperty(SCS("gait")).value.getGetter()->getReturnType();
    EXPECT_EQ(SCS("'RUNS'"), pythonText(Variant(Probe::RUNS), gait));
    EXPECT_EQ(SCS("level.getDescendantByPath('lair/stalker')"), pythonPath(thing));
    EXPECT_EQ(SCS("kaVel.getSystem('GameLoopSystem')"), pythonPath(getSystem<GameLoopSystem>()));
    EXPECT_EQ(SCS("None"), pythonPath(Handle<Object>()));
}

TEST_F(Inspector, TheMessagesThatAnObjectHearsAreListed)
{
    PostOffice().registerMessageHandler(Probe::staticType, thing.lookup()->bind(SCS("handleValueMessage")));
    EXPECT_EQ(std::vector<String>{SCS("Probe: Probe::handleValueMessage")}, subscriptionsOf(thing));
    EXPECT_TRUE(subscriptionsOf(level.entity("other")).empty());
}

TEST(BarMemory, ADamagedFileGivesWhatCanBeRead)
{
    const TemporaryFile file("bars.txt");
    std::ofstream(file.path)
        << "bar\tObjects\t10\t20\t300\t400\nbar\tWatched\tx\t1\t1\t1\n\nbar\nwatch\tc:/lamp\tcolor\n"
        << std::string(100000, '\t') << "\nwatch\tc:/lamp";
    BarMemory memory;
    memory.setFile(file.name());
    EXPECT_EQ((BarMemory::Place{10, 20, 300, 400}), memory.placeOf("Objects"));
    EXPECT_FALSE(memory.placeOf("Watched"));
    ASSERT_EQ(1u, memory.getWatches().size());
    memory.notePlace("Objects", {1, 2, 3, 4});
    memory.notePlace("never drawn", {0, 0, 0, 0});
    memory.notePlace("has a\ttab", {1, 1, 1, 1});
    memory.write();
    BarMemory next;
    next.setFile(file.name());
    EXPECT_EQ((BarMemory::Place{1, 2, 3, 4}), next.placeOf("Objects"));
    EXPECT_FALSE(next.placeOf("never drawn"));
    EXPECT_EQ("color", next.getWatches().at(0).property);
}
