#include "TestTasks.h"

#include "ai/nodes/BTAction.h"
#include "ai/nodes/BTCondition.h"
#include "ai/nodes/BTInterrupter.h"
#include "ai/nodes/BTLimit.h"
#include "ai/nodes/BTRandomSelector.h"
#include "ai/nodes/BTRandomSequence.h"
#include "ai/nodes/BTWaitTimer.h"
#include "foundation/Random.h"
#include "object/reflection/Reflection.h"
#include "support/AllocationCount.h"
#include "support/TestLevel.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <utility>

namespace
{
char letterOf(StatusCode code)
{
    return "SFNUI"[code];
}

Handle<BTTask> makeTask(const char *className)
{
    return unchecked_handle_cast<BTTask>(Reflection().getType(SCS(className))->construct(BTAllocation));
}

Handle<PlayedTask> makePlayed(const char *part, const char *name = "a", std::string *journal = nullptr,
                              Handle<BTTask> root = Handle<BTTask>())
{
    const Handle<PlayedTask> h = construct<PlayedTask>(BTAllocation);
    h.lookup()->part = part;
    h.lookup()->journalName = name;
    h.lookup()->journal = journal;
    h.lookup()->root = root;
    return h;
}

/// One node with leaves a, b, c, and what its ticks do: who ran ("~" for who was terminated), "-", the result.
struct Row
{
    const char *node;
    std::vector<const char *> parts;
    const char *ticks;
};

// Selectors and sequences pass on to one more child a tick; parallel ones run all that are still running.
const Row rows[] = {
    {"BTSelector", {}, "-U -U"},
    {"BTSelector", {"S", "S"}, "a-S a-S"},
    {"BTSelector", {"F", "F", "S"}, "a-N b-N c-S a-N"},
    {"BTSelector", {"F", "F"}, "a-N b-F a-N b-F"},
    {"BTSelector", {"NUIS", "S"}, "a-N a-N a-N a-S"},
    {"BTSelector", {"F", "x", "S"}, "a-N b~a~b~c-S a-N"},
    {"BTSequence", {}, "-F -F"},
    {"BTSequence", {"S", "S", "S"}, "a-N b-N c-S a-N"},
    {"BTSequence", {"S", "NF", "S"}, "a-N b-N b-F a-N"},
    {"BTSequence", {"U", "U"}, "a-N b-S"},
    {"BTSequence", {"S", "I"}, "a-N b~a~b-I a-S a-N"},
    {"BTSequence", {"S", "n", "S"}, "a-N b~a~b~c-S a-N b~a~b~c-S"},
    {"BTRandomSelector", {"F"}, "a-F a-F"},
    {"BTRandomSelector", {"S"}, "a-S a-S"},
    {"BTRandomSelector", {"NUIF"}, "a-N a-N a-N a-F"},
    {"BTRandomSelector", {}, "-I"},
    {"BTRandomSequence", {"S"}, "a-S a-S"},
    {"BTRandomSequence", {"NFUI"}, "a-N a-F a-S a-S"},
    {"BTRandomSequence", {}, "-I"},
    {"BTParallelSequence", {}, "-U"},
    {"BTParallelSequence", {"S", "S"}, "ab-S ab-S"},
    {"BTParallelSequence", {"N", "S"}, "ab-N ab-N ab-N"},
    {"BTParallelSequence", {"S", "N"}, "ab-N b-N b-N"},
    {"BTParallelSequence", {"S", "NS"}, "ab-N b-S ab-S"},
    {"BTParallelSequence", {"N", "F", "N"}, "ab~a~b~c-F ab~a~b~c-F"},
    {"BTParallelSequence", {"N", "n", "N"}, "ab~a~b~c-S ab~a~b~c-S"},
    {"BTParallelSelector", {}, "-U"},
    {"BTParallelSelector", {"F", "F"}, "ab-F ab-F"},
    {"BTParallelSelector", {"F", "N"}, "ab-N b-N"},
    {"BTParallelSelector", {"N", "F"}, "ab-N a-N a-N"},
    {"BTParallelSelector", {"N", "NF"}, "ab-N ab-N a-N"},
    {"BTParallelSelector", {"N", "S", "N"}, "ab~a~b~c-S ab~a~b~c-S"},
    {"BTParallelSelector", {"NF", "FF"}, "ab-N a-F ab-F"},
    {"BTParallelSelector", {"N", "nN", "N"}, "ab~a~b~c-N abc-N"},
    {"BTLimit", {"S"}, "a-S a-S a-S a-S a-S -F a-S"},
    {"BTLimit", {"NUIFS"}, "a-N a-U a-I a-F a-S -F a-S"},
    {"BTLimit", {}, "-I"},
    {"BTUntilFail", {"SNUIF"}, "a-N a-N a-N a-N a-F"},
    {"BTUntilFail", {}, "-I"},
    {"BTUntilSucceed", {"FNUIS"}, "a-N a-N a-N a-N a-S"},
    {"BTUntilSucceed", {}, "-I"},
    {"BTInverter", {"SFNUI"}, "a-F a-S a-N a-U a-U"},
    {"BTInverter", {}, "-I"},
    {"BTFailFilter", {"SFNUI"}, "a-S a-S a-N a-U a-U"},
    {"BTFailFilter", {}, "-I"},
    {"BTInterrupter", {"SFNUI"}, "a-S a-F a-N a-U a-I"},
    {"BTInterrupter", {}, "-U"},
    {"BTWaitTimer", {}, "-I"},
};

Handle<BTTask> build(const Row &row, std::string &journal)
{
    static const char *const names[] = {"a", "b", "c"};
    const Handle<BTTask> node = makeTask(row.node);
    for (std::size_t i = 0; i < row.parts.size(); ++i)
        node.lookup()->addChild(makePlayed(row.parts[i], names[i], &journal, node));
    return node;
}

std::string play(BTTask &node, const char *expected, std::string &journal)
{
    std::istringstream ticks(expected);
    std::string happened;
    for (std::string tick; ticks >> tick;)
    {
        journal.clear();
        const char result = letterOf(node.run());
        happened += (happened.empty() ? "" : " ") + journal + "-" + result;
    }
    return happened;
}

std::string describe(const Row &row)
{
    std::string text = row.node;
    for (const char *part : row.parts)
        text += std::string(" ") + part;
    return text;
}
} // namespace

TEST(Nodes, TickAsTheTableSays)
{
    TestLevel world;
    for (const Row &row : rows)
    {
        std::string journal;
        const Handle<BTTask> node = build(row, journal);
        EXPECT_EQ(play(*node.lookup(), row.ticks, journal), row.ticks) << describe(row);
        node.lookup()->DeleteTree();
    }
}

TEST(Nodes, CopyTicksAsTheOriginalDid)
{
    TestLevel world;
    for (const Row &row : rows)
    {
        const std::string expected = row.ticks;
        if (expected.find('~') != std::string::npos || std::string(row.node) == "BTWaitTimer")
            continue;
        std::string journal;
        const Handle<BTTask> node = build(row, journal);
        const ErrorReturn<Handle<BTTask>> copy = node.lookup()->clone();
        ASSERT_TRUE(copy.succeeded()) << describe(row);
        node.lookup()->DeleteTree();
        cremateDeadObjects();
        EXPECT_EQ(play(*copy.value.lookup(), row.ticks, journal), expected) << describe(row);
        copy.value.lookup()->DeleteTree();
    }
}

TEST(Nodes, BeginAnewAfterATerminate)
{
    TestLevel world;
    const struct
    {
        Row row;
        const char *afterwards;
    } cases[] = {
        {{"BTSelector", {"F", "F", "S"}, "a-N b-N"}, "a-N"},
        // A sequence remembers it until its next tick, which succeeds whatever the child says.
        {{"BTSequence", {"S", "S", "S"}, "a-N b-N"}, "a-S a-N b-N"},
        {{"BTParallelSequence", {"S", "N"}, "ab-N b-N"}, "ab-N"},
        {{"BTParallelSelector", {"F", "N"}, "ab-N b-N"}, "ab-N"},
        {{"BTLimit", {"S"}, "a-S a-S a-S"}, "a-S a-S a-S a-S a-S -F"},
    };
    for (const auto &[row, afterwards] : cases)
    {
        std::string journal;
        const Handle<BTTask> node = build(row, journal);
        EXPECT_EQ(play(*node.lookup(), row.ticks, journal), row.ticks) << describe(row);
        journal.clear();
        node.lookup()->terminate();
        EXPECT_EQ(journal, std::string("~a~b~c").substr(0, 2 * row.parts.size()));
        for (std::size_t i = 0; i < row.parts.size(); ++i)
            handle_cast<PlayedTask>(node.lookup()->getTask(i)).lookup()->played = 0;
        EXPECT_EQ(play(*node.lookup(), afterwards, journal), afterwards) << describe(row);
        node.lookup()->DeleteTree();
    }
}

TEST(Nodes, ThatCannotResolveAChildSaySoOnce)
{
    TestLevel world;
    for (const char *name : {"BTSelector", "BTSequence", "BTRandomSelector", "BTRandomSequence", "BTParallelSequence",
                             "BTParallelSelector", "BTLimit", "BTUntilFail", "BTUntilSucceed", "BTInverter",
                             "BTFailFilter", "BTInterrupter", "BTWaitTimer"})
    {
        const Handle<BTTask> node = makeTask(name);
        node.lookup()->addChild(Handle<BTTask>());
        const std::size_t before = countLogLines("child 1 is no task");
        EXPECT_EQ(node.lookup()->run(), SC_InvalidHandle) << name;
        EXPECT_EQ(node.lookup()->run(), SC_InvalidHandle) << name;
        EXPECT_EQ(countLogLines("child 1 is no task"), before + 1) << name;
        node.lookup()->DeleteTree();
    }
}

TEST(Decorator, DropsAllChildrenButTheFirst)
{
    TestLevel world;
    const Handle<BTTask> node = makeTask("BTInverter");
    const Handle<BTTask> first = makePlayed("S");
    const Handle<BTTask> second = makePlayed("F");
    EXPECT_EQ(node.lookup()->addChild(first), first);
    EXPECT_EQ(node.lookup()->addChild(second), second);
    EXPECT_EQ(node.lookup()->getTasks(), TaskList{first});
    second.lookup()->murder();
    node.lookup()->DeleteTree();
}

TEST(Limit, CopyHasTheDefaultLimit)
{
    TestLevel world;
    const Handle<BTLimit> node = construct<BTLimit>(BTAllocation);
    node.lookup()->addChild(makePlayed("S"));
    node.lookup()->setRunLimit(1);
    const Handle<BTTask> copy = node.lookup()->clone().value;
    EXPECT_EQ(handle_cast<BTLimit>(copy).lookup()->getRunLimit(), 5u);
    node.lookup()->DeleteTree();
    copy.lookup()->DeleteTree();
}

TEST(Interrupter, EndsItsChildAndIsUndefinedWhateverWasAsked)
{
    TestLevel world;
    std::string journal;
    const Handle<BTInterrupter> node = construct<BTInterrupter>(BTAllocation);
    node.lookup()->addChild(makePlayed("N", "a", &journal));
    node.lookup()->setResult(SC_Success);
    EXPECT_EQ(node.lookup()->run(), SC_Undefined);
    EXPECT_EQ(journal, "~a");
    EXPECT_EQ(node.lookup()->run(), SC_NeedMoreTime);
    node.lookup()->DeleteTree();
}

TEST(WaitTimer, BeginsOneSecondBelowZeroAndNeverAgain)
{
    TestLevel world;
    const Handle<Entity> creature = world.entity("creature");
    std::string journal;
    const Handle<BTWaitTimer> node = construct<BTWaitTimer>(BTAllocation);
    node.lookup()->addChild(makePlayed("SF", "a", &journal));
    node.lookup()->setTreeParent(creature);
    const int framesASecond = 4096 / TestLevel::FRAME_TICKS;
    for (int frame = 0; frame < framesASecond; ++frame)
    {
        world.frame();
        EXPECT_EQ(node.lookup()->run(), SC_NeedMoreTime);
    }
    EXPECT_EQ(journal, "") << "one second is not more than one second";
    world.frame();
    EXPECT_EQ(node.lookup()->run(), SC_NeedMoreTime) << "a child that succeeds is no success";
    node.lookup()->terminate();
    EXPECT_EQ(node.lookup()->run(), SC_Failure);
    EXPECT_EQ(journal, "a~aa");
}

TEST(WaitTimer, SharesItsChildWithItsCopies)
{
    TestLevel world;
    const Handle<BTWaitTimer> node = construct<BTWaitTimer>(BTAllocation);
    node.lookup()->addChild(makePlayed("S"));
    node.lookup()->setWaitTimer(3.0);
    node.lookup()->setTimer(2.0);
    const Handle<BTWaitTimer> copy = handle_cast<BTWaitTimer>(node.lookup()->clone().value);
    EXPECT_EQ(copy.lookup()->getTasks(), node.lookup()->getTasks());
    EXPECT_EQ(copy.lookup()->getWaitTime(), 3.0);
    EXPECT_EQ(copy.lookup()->getTimer(), -1.0);
    node.lookup()->DeleteTree();
    copy.lookup()->murder();
}

TEST(RandomNodes, OrderIsDrawnFromTheEnginesChance)
{
    TestLevel world;
    for (const char *name : {"BTRandomSelector", "BTRandomSequence"})
    {
        std::string journal;
        const Handle<BTTask> node = makeTask(name);
        const char *const part = std::string(name) == "BTRandomSelector" ? "F" : "S";
        for (const char *leaf : {"a", "b", "c", "d", "e"})
            node.lookup()->addChild(makePlayed(part, leaf, &journal));

        seedEngineRand(11);
        std::string expected = "abcde";
        for (std::size_t i = 1; i < expected.size(); ++i)
            std::swap(expected[i], expected[static_cast<std::size_t>(engineRand()) % (i + 1)]);
        seedEngineRand(11);
        for (int tick = 0; tick < 5; ++tick)
            node.lookup()->run();
        EXPECT_EQ(journal, expected) << name;
        node.lookup()->DeleteTree();
    }
}

TEST(RandomNodes, ShuffleOfMoreThan32768ChildrenDrawsTwice)
{
    TestLevel world;
    const Handle<BTRandomSelector> node = construct<BTRandomSelector>(BTAllocation);
    const Handle<BTTask> leaf = makePlayed("S");
    constexpr int count = ENGINE_RAND_MAX + 3;
    for (int i = 0; i < count; ++i)
        node.lookup()->addChild(leaf);
    seedEngineRand(5);
    // Bounds 2..32767 take one draw each, 32768 up to the count two.
    for (int draws = (ENGINE_RAND_MAX - 1) + 2 * (count - ENGINE_RAND_MAX); draws > 0; --draws)
        engineRand();
    const int next = engineRand();
    seedEngineRand(5);
    node.lookup()->reshuffleChildren();
    EXPECT_EQ(engineRand(), next);
    node.lookup()->DeleteTree();
}

namespace
{
int asked = 0;
StatusCode answer = SC_Success;

StatusCode nativeCondition(Handle<Entity> creature)
{
    asked += creature.isValid();
    return answer;
}

ActionStatus nativeStep(Handle<Entity> creature)
{
    return creature.isValid() ? AS_Complete : AS_InvalidHandle;
}
} // namespace

TEST(Condition, TicksItsChildWhereTheAnswerIsYes)
{
    TestLevel world;
    const Handle<Entity> creature = world.entity("creature");
    std::string journal;
    const Handle<BTCondition> node = construct<BTCondition>(BTAllocation);
    node.lookup()->setConditionFunc(nativeCondition);
    node.lookup()->addChild(makePlayed("NF", "a", &journal));
    node.lookup()->setTreeParent(creature);
    asked = 0;
    for (const auto &[given, expected] :
         {std::pair(SC_Success, SC_NeedMoreTime), std::pair(SC_Success, SC_Failure), std::pair(SC_Failure, SC_Failure),
          std::pair(SC_Undefined, SC_Undefined), std::pair(SC_NeedMoreTime, SC_NeedMoreTime)})
    {
        answer = given;
        EXPECT_EQ(node.lookup()->run(), expected);
    }
    EXPECT_EQ(asked, 5);
    EXPECT_EQ(journal, "aa");
}

TEST(ActionLeaf, MapsWhatAStepGaveAndResetsWhatHasEnded)
{
    TestLevel world;
    const Handle<Entity> creature = world.entity("creature");
    const Handle<PlayedAction> action = construct<PlayedAction>(BTAllocation);
    action.lookup()->part = "PCFI";
    const Handle<BTAction> leaf = construct<BTAction>(BTAllocation);
    leaf.lookup()->setAction(action);
    EXPECT_EQ(action.lookup()->getParentTask(), leaf);
    EXPECT_EQ(leaf.lookup()->run(), SC_InvalidHandle) << "no coordinator above";

    leaf.lookup()->setTreeParent(creature);
    EXPECT_EQ(action.lookup()->getParent(), creature);
    world.frame();
    std::string results;
    for (int tick = 0; tick < 4; ++tick)
        results += letterOf(leaf.lookup()->run());
    EXPECT_EQ(results, "NSFU");
    EXPECT_EQ(action.lookup()->journal, "uururu");
    EXPECT_EQ(action.lookup()->time, 4 * TestLevel::FRAME_TICKS / 4096.0);
    leaf.lookup()->terminate();
    EXPECT_EQ(action.lookup()->journal, "uururutr");
    EXPECT_FALSE(leaf.lookup()->getTerminated());
}

TEST(ActionLeaf, TakesTheTimeOfTheLevelItStandsIn)
{
    TestLevel world;
    const Handle<Entity> creature = world.entity("creature");
    const Handle<PlayedAction> action = construct<PlayedAction>(BTAllocation);
    const Handle<BTAction> leaf = construct<BTAction>(BTAllocation);
    leaf.lookup()->setAction(action);
    leaf.lookup()->setTreeParent(creature);
    world.frame();
    leaf.lookup()->run();
    const Handle<Coordinator> stopped = world.anotherCoordinator();
    creature.lookup()->setParent(stopped);
    leaf.lookup()->run();
    EXPECT_EQ(action.lookup()->time, TestLevel::FRAME_TICKS / 4096.0);
}

TEST(ActionLeaf, OwnsItsActionAndCopiesIt)
{
    TestLevel world;
    const Handle<PlayedAction> action = construct<PlayedAction>(BTAllocation);
    const Handle<BTAction> leaf = construct<BTAction>(BTAllocation);
    leaf.lookup()->setAction(action);
    const Handle<BTAction> copy = handle_cast<BTAction>(leaf.lookup()->clone().value);
    const Handle<Action> copied = copy.lookup()->getAction();
    EXPECT_NE(copied, action);
    EXPECT_EQ(copied.lookup()->getParentTask(), copy);

    leaf.lookup()->DeleteTree();
    cremateDeadObjects();
    cremateDeadObjects();
    EXPECT_FALSE(action.isValid());
    EXPECT_TRUE(copied.isValid());

    copied.lookup()->murder();
    cremateDeadObjects();
    EXPECT_EQ(copy.lookup()->clone().code.getCode(), ErrorCode::BT_FAILURE);
    copy.lookup()->DeleteTree();
}

TEST(ActionLeaf, CallsANativeFunctionWithItsEntity)
{
    TestLevel world;
    const Handle<BTAction> leaf = construct<BTAction>(BTAllocation);
    leaf.lookup()->setActionFn(nativeStep);
    EXPECT_EQ(leaf.lookup()->run(), SC_Undefined) << "no entity";
    const Handle<BTTask> copy = leaf.lookup()->clone().value;
    copy.lookup()->setTreeParent(world.entity("creature"));
    EXPECT_EQ(copy.lookup()->run(), SC_Success);
    leaf.lookup()->murder();
}

namespace
{
/// A tree by chance of what plans tick, with leaves that play parts by chance, some of which terminate it.
struct ChanceTree
{
    ChanceTree(unsigned seed, bool touched) : chance(seed), touched(touched), root(makeNode(0))
    {
        std::uint32_t count = 0;
        for (const TaskPlace &place : tasksOf(*root.lookup()))
            nodes.push_back(place.task);
        for (BTTask *node : nodes)
            if (auto leaf = handle_cast<PlayedTask>(node->getHandle()).lookup())
                leaf->journalName = std::to_string(count++), leaf->journal = &told, leaf->root = root;
    }
    ~ChanceTree() { root.lookup()->DeleteTree(); }

    Handle<BTTask> makeNode(int depth)
    {
        static const char *const classes[] = {"BTSelector", "BTSequence",   "BTSelector",     "BTSequence",
                                              "BTInverter", "BTFailFilter", "BTUntilSucceed", "BTUntilFail"};
        if (depth > 0 && (depth == 4 || chance() % 3 == 0))
        {
            std::string part;
            for (int i = 0; i < 40; ++i)
                part += "SSSSFFFFNNUIxn"[chance() % 14];
            return makePlayed(part.c_str());
        }
        const Handle<BTTask> node = makeTask(classes[chance() % std::size(classes)]);
        const unsigned most = dynamic_cast<BTDecorator *>(node.lookup().ptr) ? 1 : 3;
        for (unsigned i = chance() % 8 ? 1 + chance() % most : 0; i > 0; --i)
            node.lookup()->addChild(makeNode(depth + 1));
        return node;
    }

    /// What a tick gives, and now and then what the last ones left behind in all nodes; a tree that is touched is walked.
    std::string tick()
    {
        if (touched)
            root.lookup()->setActiveTask(root.lookup()->getActiveTask());
        BTTask &any = *nodes[chance() % nodes.size()];
        switch (chance() % 32)
        {
        case 0:
            any.terminate();
            break;
        case 1:
            any.setTerminated(!any.getTerminated());
            break;
        case 2:
            any.setActiveTask(chance() % 2);
            break;
        case 3:
            any.tick();
            break;
        }
        told += letterOf(root.lookup()->tick());
        if (chance() % 4 != 0)
            return std::exchange(told, "");
        for (const BTTask *node : nodes)
            told += " " + std::to_string(node->getActiveTask()) + letterOf(node->getLastResult()) +
                    (node->getTerminated() ? "!" : "");
        return std::exchange(told, "");
    }

    std::minstd_rand chance;
    bool touched;
    Handle<BTTask> root;
    std::vector<BTTask *> nodes;
    std::string told;
};
} // namespace

TEST(Nodes, TickTheSameWhetherTheirTurnsAreKnownOrWalked)
{
    for (unsigned seed = 1; seed <= 400; ++seed)
    {
        ChanceTree known(seed, false), walked(seed, true);
        for (int tick = 0; tick < 60; ++tick)
            ASSERT_EQ(known.tick(), walked.tick()) << "tree " << seed << " at tick " << tick;
    }
}

TEST(Nodes, TickWithoutTakingMemory)
{
    TestLevel world;
    const Handle<Entity> creature = world.entity("creature");
    const Handle<BTTask> root = makeTask("BTParallelSequence");
    for (const Row &row : rows)
    {
        std::string journal;
        const std::string name = row.node;
        if (row.parts.size() < 2 && name != "BTLimit")
            continue;
        const Handle<BTTask> node = makeTask("BTFailFilter");
        node.lookup()->addChild(makeTask(row.node));
        for (const char *part : row.parts)
            node.lookup()->getTask(0).lookup()->addChild(makePlayed(part));
        root.lookup()->addChild(node);
    }
    root.lookup()->setTreeParent(creature);
    for (int tick = 0; tick < 20; ++tick)
        root.lookup()->tick();
    EXPECT_EQ(allocationsOf([&] { root.lookup()->tick(); }, 100), 0u);
}
