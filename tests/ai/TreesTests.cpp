#include "TestTasks.h"

#include "ai/actions/ActGoToBehavior.h"
#include "ai/telling/Why.h"
#include "ai/trees/BTComponent.h"
#include "ai/trees/BTLib.h"
#include "object/python/PythonCalls.h"
#include "object/reflection/Variant.h"
#include "object/reflection/SavedArguments.h"
#include "support/AllocationCount.h"
#include "support/ScriptModule.h"
#include "support/TestLevel.h"

#include <gtest/gtest.h>

#include <functional>

namespace
{
/// A level with a library and a creature that acts.
class Behaviors : public testing::Test
{
protected:
    /// A leaf that notes its ticks.
    Handle<BTTask> leaf(const char *part, const char *name)
    {
        const Handle<PlayedTask> h = construct<PlayedTask>(BTAllocation);
        h.lookup()->part = part;
        h.lookup()->journalName = name;
        h.lookup()->journal = &journal;
        return h;
    }
    Handle<BTTask> sequence(std::initializer_list<Handle<BTTask>> children)
    {
        const Handle<BTTask> node = library.BTCreateSequence();
        for (const Handle<BTTask> &child : children)
            library.BTAddChild(node, child);
        return node;
    }
    void add(const char *name, Handle<BTTask> root) { library.addBehaviorTree(SCS(name), root); }
    /// Has the creature act by these trees, the first of them to begin with.
    void begin(std::initializer_list<const char *> names)
    {
        for (const char *name : names)
            mind().addBehavior(SCS(name));
        mind().setDefaultBehavior(SCS(*names.begin()));
        mind().onLoadComplete();
        journal.clear();
    }
    std::string frames(int count)
    {
        journal.clear();
        for (int i = 0; i < count; ++i)
            world.frame();
        return journal;
    }
    BTComponent &mind() { return *component.lookup(); }

    TestLevel world;
    BTLib &library = getSystemDeref<BTLib>();
    Handle<Entity> creature = world.entity("creature");
    Handle<BTComponent> component = world.component<BTComponent>(creature, "behaviors");
    std::string journal;
};

std::string text(const String &s)
{
    return s.toCString();
}
} // namespace

TEST_F(Behaviors, AreLookedUpAsCopiesOfTheirOwn)
{
    const String name = SCS("Prowl");
    for (int tries = 0; tries < 2; ++tries)
        EXPECT_EQ(library.BTLookUp(name).code.getCode(), ErrorCode::BT_UNKNOWN_BEHAVIOR);
    add("Prowl", sequence({leaf("N", "a")}));
    add("Prowl", sequence({leaf("N", "b")}));
    const Handle<BTTask> first = library.BTLookUp(name).value;
    const Handle<BTTask> second = library.BTLookUp(name).value;
    EXPECT_NE(first, second);
    first.lookup()->run();
    EXPECT_EQ(journal, "a") << "found after it was looked up in vain, and the first of a name stays";
    first.lookup()->DeleteTree();
    cremateDeadObjects();
    second.lookup()->run();
    EXPECT_EQ(journal, "aa");
    second.lookup()->DeleteTree();
}

TEST_F(Behaviors, TurnToAnotherTreeAfterTheOneAtWorkIsTerminated)
{
    add("Prowl", sequence({leaf("S", "a"), leaf("N", "b")}));
    add("Hide", leaf("N", "f"));
    begin({"Prowl", "Hide"});
    // Terminated once as it was chosen, so its first tick ends the round.
    EXPECT_EQ(frames(3), "aab");
    mind().setBehavior(SCS("Nowhere"));
    EXPECT_EQ(journal, "aab") << "an unknown name terminates nothing";
    EXPECT_EQ(mind().getActiveBehavior(), SCS("Prowl"));

    mind().setBehavior(SCS("Hide"));
    EXPECT_EQ(journal, "aab~a~b");
    EXPECT_EQ(frames(2), "ff");
}

TEST_F(Behaviors, WithoutATreeForTheActiveNameRefuseEverySwitch)
{
    add("Prowl", leaf("N", "a"));
    begin({"Prowl"});
    mind().setActiveBehavior(SCS("Nowhere"));
    mind().setBehavior(SCS("Prowl"));
    EXPECT_EQ(frames(1), "");
    mind().onLoadComplete();
    EXPECT_EQ(frames(1), "a");
}

TEST_F(Behaviors, GoToAnotherFromWithinTheirOwnTick)
{
    const Handle<ActGoToBehavior> goTo = construct<ActGoToBehavior>(BTAllocation);
    goTo.lookup()->setBehaviorLookup(SCS("Hide"));
    add("Prowl", sequence({leaf("S", "a"), library.BTCreateAction(goTo), leaf("N", "b")}));
    add("Hide", leaf("N", "f"));
    begin({"Prowl", "Hide"});
    EXPECT_EQ(frames(4), "aa~a~bf");
    mind().setBehavior(SCS("Prowl"));
    EXPECT_EQ(frames(3), "a~a~bf") << "it succeeded where it was terminated, and has forgotten that since";
}

TEST_F(Behaviors, OfAnotherNameStandInTheTreeThatNamesThem)
{
    add("Walk", sequence({leaf("S", "w"), leaf("N", "v")}));
    add("Prowl", sequence({library.BTCreateSubtreeLookup(SCS("Walk")), leaf("S", "a")}));
    begin({"Prowl"});
    EXPECT_EQ(frames(3), "wvv");
    const Handle<BTTask> other = library.BTLookUp(SCS("Prowl")).value;
    EXPECT_EQ(other.lookup()->getTask(0).lookup()->getTaskCount(), 0u) << "a copy takes a tree of its own when ticked";
    other.lookup()->DeleteTree();
}

TEST_F(Behaviors, ThatStandWithinThemselvesFailAndAreNamed)
{
    add("Here", sequence({library.BTCreateSubtreeLookup(SCS("There"))}));
    add("There", sequence({library.BTCreateSubtreeLookup(SCS("Here"))}));
    begin({"Here"});
    frames(5);
    EXPECT_EQ(countLogLines("creature: Here: Sequence/1 Tree There/1 Sequence/1 Tree Here: the tree 'Here' may not "
                            "stand within itself (Here > There > Here)"),
              1u);
}

TEST_F(Behaviors, OfAHundredThousandNodesSideBySideAct)
{
    const Handle<BTTask> root = library.BTCreateSelector();
    for (int i = 0; i < 100000; ++i)
        library.BTAddChild(root, leaf("F", ""));
    add("Wide", root);
    begin({"Wide"});
    frames(3);
    EXPECT_EQ(mind().getTree(SCS("Wide")).lookup()->getActiveTask(), 3u);
    mind().setBehavior(SCS("Wide"));
    EXPECT_EQ(mind().getTree(SCS("Wide")).lookup()->getActiveTask(), 0u);
    EXPECT_NE(text(mind().drawTree()).find("nodes more"), std::string::npos);
}

TEST_F(Behaviors, OfAHundredThousandNodesInAChainAreRefusedByName)
{
    Handle<BTTask> root = leaf("N", "a");
    for (int i = 0; i < 100000; ++i)
        root = sequence({root});
    add("Deep", root);
    add("Prowl", leaf("N", "p"));
    begin({"Prowl", "Deep"});
    EXPECT_FALSE(mind().getTree(SCS("Deep")).isValid());
    EXPECT_EQ(countLogLines("The behaviour tree 'Deep' cannot be copied"), 1u);
    EXPECT_EQ(frames(1), "p");

    // By hand, too: what would follow the chain to its end stops in time.
    root.lookup()->setTreeParent(creature);
    root.lookup()->terminate();
    EXPECT_EQ(root.lookup()->tick(), SC_Success) << "as a sequence that was terminated does";
    EXPECT_EQ(root.lookup()->tick(), SC_Failure);
    EXPECT_EQ(countLogLines("and is not followed"), 2u) << "by what hung it up, and by what ticked it";
    root.lookup()->DeleteTree();
}

TEST_F(Behaviors, MayNotCloseARing)
{
    const Handle<BTTask> bottom = sequence({});
    const Handle<BTTask> top = sequence({sequence({bottom})});
    EXPECT_EQ(library.BTAddChild(bottom, top), top);
    EXPECT_EQ(bottom.lookup()->getTaskCount(), 0u);
    library.BTAddChild(top, top);
    EXPECT_EQ(top.lookup()->getTaskCount(), 1u);
    top.lookup()->DeleteTree();
}

TEST_F(Behaviors, GrowingWithEachLevelAreRefused)
{
    // Each node stands twice below the next one: thirty levels are a thousand million nodes.
    Handle<BTTask> root = leaf("N", "a");
    for (int i = 0; i < 30; ++i)
        root = sequence({root, root});
    add("Many", root);
    EXPECT_EQ(library.BTLookUp(SCS("Many")).code.getCode(), ErrorCode::BT_FAILURE);
    cremateDeadObjects();
}

TEST_F(Behaviors, WithoutARootAreNamed)
{
    add("Empty", Handle<BTTask>());
    EXPECT_EQ(countLogLines("The behaviour tree 'Empty' has no root"), 1u);
    add("Empty", leaf("N", "a"));
    EXPECT_TRUE(library.BTLookUp(SCS("Empty")).succeeded());
}

TEST_F(Behaviors, SurviveThatALeafMurdersItsCreature)
{
    initPython();
    installScriptModule("leavesThatKill", "import _kaVel\n"
                                          "def kill(creature):\n"
                                          "    creature.murder()\n"
                                          "    _kaVel._ReflectionInstance().cremateDeadObjects()\n"
                                          "    return _kaVel._ReflectionInstance().AS_Complete\n");
    Variant kill;
    ASSERT_TRUE(pythonAttribute("leavesThatKill", "kill", kill));
    add("End", sequence({library.BTCreateActionR(kill.get<ReflectorPtr>().value), leaf("S", "a")}));
    begin({"End"});
    const Handle<Entity> other = world.entity("other");
    frames(2);
    EXPECT_FALSE(creature.isValid());
    EXPECT_TRUE(other.isValid());
}

TEST_F(Behaviors, TellTheLeafAndDrawTheirResults)
{
    EXPECT_EQ(text(why(creature)), "creature does nothing.");
    add("Prowl", sequence({leaf("S", "a"), leaf("N", "b"), leaf("S", "c")}));
    add("Hide", leaf("N", "f"));
    begin({"Prowl", "Hide"});
    frames(3);
    EXPECT_EQ(text(mind().tell()), "Prowl: PlayedTask, going on");
    EXPECT_EQ(text(why(creature)), "creature: Prowl: PlayedTask, going on.");
    EXPECT_EQ(text(mind().drawTree()), "Prowl (active)\n"
                                       "> Sequence: going on\n"
                                       "    PlayedTask: succeeded\n"
                                       ">   PlayedTask: going on\n"
                                       "    PlayedTask: not ticked yet\n"
                                       "Hide\n"
                                       "> PlayedTask: not ticked yet\n");
    EXPECT_EQ(text(why(Handle<Entity>())), "");
}

TEST_F(Behaviors, ActWithoutTakingMemory)
{
    add("Prowl", sequence({leaf("S", ""), leaf("S", "")}));
    begin({"Prowl"});
    frames(5);
    EXPECT_EQ(allocationsOf([&] { mind().doFrame(); }, 100), 0u);
}

TEST_F(Behaviors, OfTheFactoriesHaveTheirClasses)
{
    const std::pair<Handle<BTTask>, const char *> made[] = {
        {library.BTCreateSelector(), "BTSelector"},
        {library.BTCreateSequence(), "BTSequence"},
        {library.BTCreateRandomSelector(), "BTRandomSelector"},
        {library.BTCreateRandomSequence(), "BTRandomSequence"},
        {library.BTCreateParallelSequence(), "BTParallelSequence"},
        {library.BTCreateSubtreeLookup(SCS("x")), "BTSubtreeLookup"},
        {library.BTCreateDecorator(BTDecorator::DT_Limit), "BTLimit"},
        {library.BTCreateDecorator(BTDecorator::DT_UntilFail), "BTUntilFail"},
        {library.BTCreateDecorator(BTDecorator::DT_Inverter), "BTInverter"},
        {library.BTCreateDecorator(BTDecorator::DT_UntilSucceed), "BTUntilSucceed"},
        {library.BTCreateDecorator(BTDecorator::DT_WaitTimer), "BTWaitTimer"},
        {library.BTCreateDecorator(BTDecorator::DT_FailFilter), "BTFailFilter"},
    };
    for (const auto &[node, className] : made)
    {
        ASSERT_TRUE(node.isValid()) << className;
        EXPECT_EQ(text(node.lookup()->getType()->getName()), className);
        node.lookup()->murder();
    }
}

TEST_F(Behaviors, OfTheFactoriesThatFailAreAssertions)
{
    const std::pair<std::function<Handle<BTTask>()>, const char *> failures[] = {
        {[&] { return library.BTCreateDecorator(BTDecorator::DT_Interrupter); },
         "Allocation of BTDecorator node failed!"},
        {[&] { return library.BTCreateAction(Handle<Action>()); }, "Allocation of BTAction node failed!"},
        {[&] { return library.BTCreateConditionR(nullptr); }, "Allocation of BTCondition node failed!"},
        {[&] { return library.BTAddChild(Handle<BTTask>(), Handle<BTTask>()); },
         "Invalid parent handle when adding BTTask."},
    };
    for (const auto &[make, expected] : failures)
    {
        const std::size_t before = countLogLines(expected);
        EXPECT_FALSE(make().isValid());
        EXPECT_EQ(countLogLines(expected), before + 1) << expected;
    }
}
