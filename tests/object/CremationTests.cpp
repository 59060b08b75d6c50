// Death in the object tree: marks, the two passes, and what stays resolvable meanwhile.
#include "support/Probe.h"

#include <gtest/gtest.h>

TEST(Cremation, ObjectMurderedDuringOnMurderWaitsForTheNextRound)
{
    const Handle<Probe> victim = spawn("victim");
    const Handle<Probe> avenger = spawn("avenger");
    int farewells = 0;
    victim.lookup()->whenMurdered = [&] { ++farewells; };
    avenger.lookup()->whenMurdered = [&] { victim.lookup()->murder(); };
    avenger.lookup()->murder();

    cremateDeadObjects();
    EXPECT_FALSE(avenger.isValid());
    EXPECT_TRUE(victim.isValid());
    EXPECT_EQ(farewells, 0);
    cremateDeadObjects();
    EXPECT_FALSE(victim.isValid());
    EXPECT_EQ(farewells, 1);
}

TEST(Cremation, EveryOnMurderRunsBeforeAnyDestructorAndStillSeesTheParent)
{
    const Handle<Probe> parent = spawn("parent");
    const Handle<Probe> child = spawn("child", parent);
    const Handle<Probe> grandchild = spawn("grandchild", child);
    const Handle<Probe> sibling = spawn("sibling", parent);
    std::vector<String> story;
    for (const Handle<Probe> &h : {parent, child, grandchild, sibling})
    {
        const String name = h.lookup()->getName();
        h.lookup()->whenMurdered = [&, h, name]
        {
            story.push_back(name);
            EXPECT_TRUE(h == parent || h.lookup()->getParent().isValid());
        };
        h.lookup()->whenDestroyed = [&, name] { story.push_back(SCS("~") + name); };
    }

    sibling.lookup()->murder();
    const Handle<Probe> late = spawn("late", sibling);
    parent.lookup()->murder();
    parent.lookup()->murder();
    EXPECT_TRUE(grandchild.lookup()->isDying() && late.lookup()->isDying());
    cremateDeadObjects();

    const std::vector<String> expected{SCS("sibling"),  SCS("parent"),  SCS("grandchild"),  SCS("child"),
                                       SCS("~sibling"), SCS("~parent"), SCS("~grandchild"), SCS("~child")};
    EXPECT_EQ(story, expected);
}

TEST(Cremation, TheSecondPassTellsTheObjectThatItLeavesItsParent)
{
    const Handle<Probe> parent = spawn("parent");
    const Handle<Probe> child = spawn("child", parent);
    std::vector<std::pair<Handle<Object>, Handle<Object>>> moves;
    child.lookup()->whenDestroyed = [&, raw = child.lookup().ptr] { moves = raw->moves; };
    child.lookup()->moves.clear();

    child.lookup()->murder();
    cremateDeadObjects();
    ASSERT_EQ(moves.size(), 1u);
    EXPECT_EQ(moves[0].second, Handle<Object>(parent));
    EXPECT_EQ(parent.lookup()->getChildCount(), 0u);
    parent.lookup()->murder();
    cremateDeadObjects();
}

TEST(Cremation, NumbersAreNeverReusedAndPagesOfTheDeadResolveToNothing)
{
    std::vector<Handle<Probe>> generation;
    for (int i = 0; i < 5000; ++i)
        generation.push_back(spawn("mayfly"));
    const std::size_t alive = ObjectMap().getObjectCount();
    for (const auto &h : generation)
        h.lookup()->murder();
    cremateDeadObjects();

    EXPECT_EQ(ObjectMap().getObjectCount(), alive - generation.size());
    const Handle<Probe> next = spawn("next");
    for (const auto &h : generation)
    {
        EXPECT_FALSE(h.isValid());
        EXPECT_LT(h, next);
    }
    EXPECT_EQ(generation[0].toString(), SCS("Handle<Probe>(<invalid>)"));
    next.lookup()->murder();
    cremateDeadObjects();
}

TEST(Cremation, WaitsWhileAScriptThatTheEngineCalledIsRunning)
{
    const Handle<Probe> h = spawn("caller");
    h.lookup()->murder();
    {
        const CremationHold hold;
        cremateDeadObjects();
        EXPECT_TRUE(h.isValid());
    }
    cremateDeadObjects();
    EXPECT_FALSE(h.isValid());
}

TEST(Cremation, ReturnsEveryByteToItsCategory)
{
    AllocationCategory category("test things");
    const Handle<Probe> h = construct<Probe>(category);
    EXPECT_EQ(category.objectCount, 1u);
    EXPECT_GE(category.totalObjectSize, sizeof(Probe));
    h.lookup()->murder();
    cremateDeadObjects();
    EXPECT_EQ(category.objectCount, 0u);
    EXPECT_EQ(category.totalObjectSize, 0u);
}
