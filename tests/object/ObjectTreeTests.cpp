// The object tree: parents, children, names and paths.
#include "support/Probe.h"
#include "support/TestLevel.h"

#include "object/tree/TreeWalk.h"

#include <gtest/gtest.h>

namespace
{
/// A small tree: root with the children "a" (with child "leaf") and "b".
struct ObjectTree : testing::Test
{
    Handle<Probe> root = spawn("root");
    Handle<Probe> a = spawn("a", root);
    Handle<Probe> b = spawn("b", root);
    Handle<Probe> leaf = spawn("leaf", a);

    ~ObjectTree() override
    {
        root.lookup()->murder();
        cremateDeadObjects();
    }
};
} // namespace

TEST_F(ObjectTree, PathsWalkNamesAndParentsAndEndInTheLastObjectNamed)
{
    auto r = root.lookup();
    EXPECT_EQ(r->getDescendantByPath(SCS("a/leaf")), Handle<Object>(leaf));
    EXPECT_EQ(r->getDescendantByPath(SCS("a/leaf/../../b")), Handle<Object>(b));
    EXPECT_EQ(r->getDescendantByPath(SCS("a/")), Handle<Object>(a));
    EXPECT_EQ(r->getDescendantByPath(String()), Handle<Object>(root));
    EXPECT_EQ(r->getDescendantByPath(SCS("a//./leaf")), Handle<Object>(leaf));
    EXPECT_EQ(r->getDescendantByPath(String::copyFrom(std::string(1 << 20, '/'))), Handle<Object>(root));
    EXPECT_EQ(r->getChild(SCS(".")), Handle<Object>(root));
    EXPECT_FALSE(r->getChild(SCS("..")).isValid());
    EXPECT_FALSE(r->getDescendantByPath(SCS("a/nothing/leaf")).isValid());
    EXPECT_EQ(getObjectByPath(SCS("../b"), a), Handle<Object>(b));
    EXPECT_FALSE(getObjectByPath(SCS("b")).isValid());
}

TEST_F(ObjectTree, OfTwoChildrenOfOneNameTheEarlierIsFound)
{
    const Handle<Probe> second = spawn("a", root);
    EXPECT_EQ(root.lookup()->getChild(SCS("a")), Handle<Object>(a));
    a.lookup()->setParent(b);
    EXPECT_EQ(root.lookup()->getChild(SCS("a")), Handle<Object>(second));
}

TEST_F(ObjectTree, AMoveIsToldDepthFirstWithTheFormerParent)
{
    leaf.lookup()->moves.clear();
    a.lookup()->moves.clear();
    a.lookup()->setParent(b);

    const auto told = std::make_pair(Handle<Object>(a), Handle<Object>(root));
    ASSERT_EQ(a.lookup()->moves.size(), 1u);
    EXPECT_EQ(a.lookup()->moves[0], told);
    ASSERT_EQ(leaf.lookup()->moves.size(), 1u);
    EXPECT_EQ(leaf.lookup()->moves[0], told);

    a.lookup()->setParent(b);
    EXPECT_EQ(a.lookup()->moves.size(), 1u) << "the present parent changes nothing";
}

TEST_F(ObjectTree, AWalkGivesParentsFirstTakesInWhoArrivesAndLeavesOutWhatItIsTold)
{
    spawn("sprig", leaf);
    std::vector<std::pair<String, std::size_t>> visited;
    TreeWalk walk(*root.lookup());
    while (const Object *object = walk.next())
    {
        visited.emplace_back(object->getName(), walk.getDepth());
        if (object == leaf.lookup().ptr)
            walk.skipChildren();
        if (object == b.lookup().ptr)
            spawn("late", b);
        TreeWalk inner(*a.lookup());
        inner.next();
    }
    const std::vector<std::pair<String, std::size_t>> expected{
        {SCS("root"), 0}, {SCS("a"), 1}, {SCS("leaf"), 2}, {SCS("b"), 1}, {SCS("late"), 2}};
    EXPECT_EQ(visited, expected);
}

TEST_F(ObjectTree, AnObjectCannotBecomeItsOwnDescendant)
{
    EXPECT_EQ(root.lookup()->setParent(leaf).getCode(), ErrorCode::BAD_HANDLE);
    EXPECT_FALSE(root.lookup()->getParent().isValid());
    EXPECT_EQ(leaf.lookup()->getParent(), Handle<Object>(a));
    EXPECT_EQ(countLogLines("setParent: 'root' cannot hang below 'leaf', which is"), 1u) << "names, not addresses";
    EXPECT_FALSE(root.lookup()->setParent(root).succeeded());
    EXPECT_FALSE(root.lookup()->getParent().isValid());
}

TEST_F(ObjectTree, ANameThatNoPathCanLeadToIsWarnedOf)
{
    leaf.lookup()->setName(SCS("left/right"));
    EXPECT_FALSE(a.lookup()->getDescendantByPath(SCS("left/right")).isValid());
    EXPECT_EQ(countLogLines("The name 'left/right' holds a '/'"), 1u);
}

TEST_F(ObjectTree, AnUnnamedObjectKeepsTheNameOfItsFirstRead)
{
    auto o = leaf.lookup();
    o->setName(String());
    const String made = o->getName();
    EXPECT_TRUE(made.startsWith(SCS("unnamed__Probe_0x")));
    EXPECT_EQ(o->getName(), made);
    EXPECT_EQ(a.lookup()->getChild(made), Handle<Object>(leaf));
}

TEST_F(ObjectTree, AncestorsAreFoundByClassStartingWithTheObjectItself)
{
    EXPECT_EQ(leaf.lookup()->getAncestorOfType<Probe>(), leaf);
    EXPECT_EQ(leaf.lookup()->getAncestorOfType(SCS("Object")), Handle<Object>(leaf));
    EXPECT_FALSE(leaf.lookup()->getAncestorOfType(SCS("NoSuchClass")).isValid());
}
