// The object tree: parents, children, names and paths.
#include "support/TestThing.h"

#include <gtest/gtest.h>

namespace
{
/// A small tree: root with the children "a" (with child "leaf") and "b".
struct ObjectTree : testing::Test
{
    Handle<TestThing> root = spawn("root");
    Handle<TestThing> a = spawn("a", root);
    Handle<TestThing> b = spawn("b", root);
    Handle<TestThing> leaf = spawn("leaf", a);

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
    const Handle<TestThing> second = spawn("a", root);
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

TEST_F(ObjectTree, AnObjectCannotBecomeItsOwnDescendant)
{
    root.lookup()->setParent(leaf);
    EXPECT_FALSE(root.lookup()->getParent().isValid());
    EXPECT_EQ(leaf.lookup()->getParent(), Handle<Object>(a));
    root.lookup()->setParent(root);
    EXPECT_FALSE(root.lookup()->getParent().isValid());
}

TEST_F(ObjectTree, AnUnnamedObjectKeepsTheNameOfItsFirstRead)
{
    auto o = leaf.lookup();
    o->setName(String());
    const String made = o->getName();
    EXPECT_TRUE(made.startsWith(SCS("unnamed__TestThing_0x")));
    EXPECT_EQ(o->getName(), made);
    EXPECT_EQ(a.lookup()->getChild(made), Handle<Object>(leaf));
}

TEST_F(ObjectTree, AncestorsAreFoundByClassStartingWithTheObjectItself)
{
    EXPECT_EQ(leaf.lookup()->getAncestorOfType<TestThing>(), leaf);
    EXPECT_EQ(leaf.lookup()->getAncestorOfType(SCS("Object")), Handle<Object>(leaf));
    EXPECT_FALSE(leaf.lookup()->getAncestorOfType(SCS("NoSuchClass")).isValid());
}

TEST_F(ObjectTree, PropertiesAnswerByNameOrSayWhyNot)
{
    auto o = a.lookup();
    EXPECT_TRUE(o->setPropertyValue(SCS("sum"), 2.5f).succeeded());
    EXPECT_EQ(o->getPropertyValue(SCS("sum")).value.get<float>().value, 2.5f);
    EXPECT_EQ(o->getPropertyValue(SCS("secret")).code.getCode(), ErrorCode::PROPERTY_NOT_READABLE);
    EXPECT_EQ(o->setPropertyValue(SCS("handle"), 1).getCode(), ErrorCode::PROPERTY_NOT_WRITABLE);
    EXPECT_EQ(o->getPropertyValue(SCS("nothing")).code.getCode(), ErrorCode::NO_SUCH_PROPERTY);
    const ErrorCode wrong = o->setPropertyValue(SCS("sum"), String(SCS("text")));
    EXPECT_EQ(wrong.toString(), SCS("CALL_FAILURE: WRONG_ARGUMENT_TYPE"));
    EXPECT_EQ(o->sum, 2.5f);
}

TEST_F(ObjectTree, CallsThatCannotBeMadeSayWhatIsWrong)
{
    const ReflectorPtr add = TestThing::staticType->getMember(SCS("addValue"));
    ASSERT_TRUE(add);
    EXPECT_EQ(add->call(Handle<Object>(a)).code.toString(), SCS("CALL_FAILURE: WRONG_ARGUMENT_COUNT"));
    EXPECT_EQ(add->call(1.0f, 1.0f).code.toString(), SCS("CALL_FAILURE: THIS_POINTER_ARG_NOT_A_HANDLE"));
    EXPECT_EQ(add->call(Handle<Object>(), 1.0f).code.toString(), SCS("CALL_FAILURE: BAD_THIS_POINTER"));
    EXPECT_EQ(add->call(a, a).code.toString(), SCS("CALL_FAILURE: WRONG_ARGUMENT_TYPE"));
    EXPECT_EQ(TestThing::staticType->call().code.getCode(), ErrorCode::NOT_CALLABLE);

    const ReflectorPtr four = a.lookup()->bind(SCS("addFour"));
    EXPECT_EQ(four->call(1, 2, 3, 4).value.get<int>().value, 10);
    EXPECT_EQ(four->getArgCount(), 4u);
    EXPECT_EQ(a.lookup()->bind(SCS("noSuchMethod")), ReflectorPtr());
}
