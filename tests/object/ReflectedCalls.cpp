// Calls through the table: what arrives, what comes back, and how each bad call fails.
#include "object/reflection/Reflection.h"
#include "object/reflection/SavedArguments.h"

#include "object/ReflectedShapes.h"

#include <gtest/gtest.h>

#include <limits>

namespace
{
/// One live box and the shortest way to call it.
class ReflectedCall : public testing::Test
{
protected:
    ~ReflectedCall() override
    {
        if (auto alive = box.lookup())
            alive->murder();
        cremateDeadObjects();
    }

    template <class... Arguments>
    ErrorReturn<Variant> call(const char *method, const Arguments &...arguments)
    {
        return ReflectedBox::staticType->getMember(String::copyFrom(method))->call(arguments...);
    }

    static void expectFailure(const ErrorReturn<Variant> &result, IReflectedThing::CallFailureType reason)
    {
        EXPECT_EQ(result.code.getCode(), ErrorCode::CALL_FAILURE);
        EXPECT_EQ(result.code.getHRESULT(), reason);
        EXPECT_EQ(result.value.getType(), Variant::VT_INVALID);
    }

    Handle<ReflectedBox> box = construct<ReflectedBox>(defaultAllocationCategory);
};
} // namespace

TEST_F(ReflectedCall, ArgumentsOfEveryKindArriveAndTheResultComesBack)
{
    EXPECT_TRUE(call("setWidth", box, 2.5f).succeeded());
    EXPECT_EQ(call("getWidth", box).value.get<float>().value, 2.5f);
    EXPECT_EQ(call("setLabel", box, SCS("crate")).value.getType(), Variant::VT_INVALID);
    EXPECT_EQ(call("getLabel", box).value.get<String>().value, SCS("crate"));
    EXPECT_EQ(call("inMillimetres", box, 3).value.get<int>().value, 2503);
    EXPECT_EQ(call("shifted", box, Vec4(1, 2, 3, 4), 2, 0.5, true).value.get<Vec4>().value, Vec4(-1, -2, -3, 4));
    EXPECT_EQ(call("getMotto", box).value.get<String>().value, SCS("six sides"));
    EXPECT_EQ(call("getType", box).value.get<ReflectorPtr>().value, ReflectedBox::staticType);
    EXPECT_EQ(call("getHandle", box).value.get<Handle<ReflectedBox>>().value, box);
}

TEST_F(ReflectedCall, AVirtualFunctionRunsTheObjectsOwnOverride)
{
    const ReflectorPtr describe = ReflectedShape::staticType->getMember(SCS("describe"));
    EXPECT_EQ(describe->call(box).value.get<String>().value, SCS("box"));
}

TEST_F(ReflectedCall, AccessInTheClassIsNoBarrier)
{
    EXPECT_EQ(call("countEdges", box).value.get<int>().value, 12);
    EXPECT_TRUE(call("setBookkeeping", box, SCS("CLOSED")).succeeded());
    EXPECT_EQ(call("getBookkeeping", box).value.get<int>().value, 7);
}

TEST_F(ReflectedCall, FunctionsWithoutAnObjectCountTheirOwnArgumentsOnly)
{
    const ReflectorPtr doubled = Reflection().getType(SCS("doubledNumber"));
    EXPECT_EQ(doubled->call(21).value.get<int>().value, 42);
    expectFailure(doubled->call(), IReflectedThing::WRONG_ARGUMENT_COUNT);
    expectFailure(doubled->call(1, 2), IReflectedThing::WRONG_ARGUMENT_COUNT);
    expectFailure(doubled->call(SCS("21")), IReflectedThing::WRONG_ARGUMENT_TYPE);
    EXPECT_EQ(call("sides").value.get<int>().value, 6);
}

TEST_F(ReflectedCall, EachBadCallHasItsOwnReason)
{
    expectFailure(call("setWidth", box), IReflectedThing::WRONG_ARGUMENT_COUNT);
    expectFailure(call("setWidth", box, 1.0f, 2.0f), IReflectedThing::WRONG_ARGUMENT_COUNT);
    expectFailure(call("setWidth"), IReflectedThing::WRONG_ARGUMENT_COUNT);
    expectFailure(call("setWidth", 1, 1.0f), IReflectedThing::THIS_POINTER_ARG_NOT_A_HANDLE);
    expectFailure(call("setWidth", Variant(), 1.0f), IReflectedThing::THIS_POINTER_ARG_NOT_A_HANDLE);
    expectFailure(call("setWidth", Handle<Object>(), 1.0f), IReflectedThing::BAD_THIS_POINTER);
    expectFailure(call("setWidth", box, SCS("wide")), IReflectedThing::WRONG_ARGUMENT_TYPE);
    expectFailure(call("setWidth", box, Variant()), IReflectedThing::WRONG_ARGUMENT_TYPE);
    expectFailure(call("setLabel", box, 1), IReflectedThing::WRONG_ARGUMENT_TYPE);
    EXPECT_EQ(call("setWidth", box).code.toString(), SCS("CALL_FAILURE: WRONG_ARGUMENT_COUNT"));
}

TEST_F(ReflectedCall, AnObjectOfAnotherClassIsABadThisPointer)
{
    const Handle<Object> lid = construct<ReflectedBox::Lid>(defaultAllocationCategory);
    expectFailure(call("setWidth", lid, 1.0f), IReflectedThing::BAD_THIS_POINTER);
    EXPECT_TRUE(call("getName", lid).succeeded()) << "a function of a common base takes any object";
    lid.lookup()->murder();
}

TEST_F(ReflectedCall, AMurderedObjectIsCalledUntilItIsCremated)
{
    box.lookup()->murder();
    EXPECT_TRUE(call("getWidth", box).succeeded());
    cremateDeadObjects();
    expectFailure(call("getWidth", box), IReflectedThing::BAD_THIS_POINTER);
}

TEST_F(ReflectedCall, AHandleArgumentMustBeOfItsClassOrDead)
{
    const Handle<Object> lid = construct<ReflectedBox::Lid>(defaultAllocationCategory);
    EXPECT_TRUE(call("nest", box, box).value.get<bool>().value);
    expectFailure(call("nest", box, lid), IReflectedThing::WRONG_ARGUMENT_TYPE);
    expectFailure(call("nest", box, 1), IReflectedThing::WRONG_ARGUMENT_TYPE);

    lid.lookup()->murder();
    cremateDeadObjects();
    const ErrorReturn<Variant> dead = call("nest", box, lid);
    EXPECT_TRUE(dead.succeeded());
    EXPECT_FALSE(dead.value.get<bool>().value);
    EXPECT_FALSE(call("nest", box, Handle<Object>()).value.get<bool>().value);
}

TEST_F(ReflectedCall, AFunctionsOwnFailurePassesThrough)
{
    EXPECT_EQ(call("refuse", box).code.getCode(), ErrorCode::OUT_OF_BOUNDS);
    EXPECT_EQ(call("divide", box, 4).value.get<int>().value, 25);
    const ErrorReturn<Variant> failed = call("divide", box, 0);
    EXPECT_EQ(failed.code.getCode(), ErrorCode::OUT_OF_BOUNDS);
    EXPECT_EQ(failed.value.getType(), Variant::VT_INVALID);
}

TEST_F(ReflectedCall, WhatCannotCrossIsThereAndNotCallable)
{
    for (const char *name : {"takesFive", "takesPointer", "echoed", "gone", "ReflectedBox", "width"})
    {
        const ReflectorPtr member = ReflectedBox::staticType->getMember(String::copyFrom(name));
        if (!member)
            continue;
        EXPECT_EQ(member->call(box).code.getCode(), ErrorCode::NOT_CALLABLE) << name;
    }
    EXPECT_TRUE(ReflectedBox::staticType->getMember(SCS("takesFive")));
    EXPECT_EQ(ReflectedBox::staticType->call().code.getCode(), ErrorCode::NOT_CALLABLE);
    const ReflectorPtr plain = Reflection().getType(SCS("PlainShape"))->getMember(SCS("getCorners"));
    EXPECT_EQ(plain->call(box).code.getCode(), ErrorCode::NOT_CALLABLE);
}

TEST_F(ReflectedCall, NumbersAreCastAsTheyStand)
{
    EXPECT_EQ(call("getCorner", box, 2.9).value.get<float>().value, 2.0f);
    EXPECT_EQ(call("getCorner", box, true).value.get<float>().value, 1.0f);
    EXPECT_TRUE(call("setWidth", box, 3).succeeded());
    EXPECT_EQ(call("getWidth", box).value.get<int>().value, 3);
    EXPECT_TRUE(call("getCorner", box, std::numeric_limits<double>::quiet_NaN()).succeeded());
    EXPECT_EQ(call("shifted", box, Vec4(1, 1, 1, 1), 257, 1.0, false).value.get<Vec4>().value.x, 1.0f);
}

TEST_F(ReflectedCall, AnEnumTakesItsNumbersItsNamesAndItsRecords)
{
    const ReflectorPtr finish = Reflection().getType(SCS("ReflectedShape::Finish"));
    for (const Variant &glossy :
         {Variant(1), Variant(1.0), Variant(true), Variant(SCS("GLOSSY")),
          Variant(SCS("ReflectedShape::Finish::GLOSSY")), Variant(finish->getMember(SCS("GLOSSY")))})
    {
        box.lookup()->setFinish(ReflectedShape::Finish::MATT);
        EXPECT_TRUE(call("setFinish", box, glossy).succeeded());
        EXPECT_EQ(call("getFinish", box).value.get<int>().value, 1);
    }
    for (const Variant &wrong : {Variant(2), Variant(-1), Variant(SCS("SHINY")), Variant(finish), Variant(String()),
                                 Variant(ReflectorPtr()), Variant(), Variant(Handle<Object>(box))})
        expectFailure(call("setFinish", box, wrong), IReflectedThing::WRONG_ARGUMENT_TYPE);
}

TEST_F(ReflectedCall, AnEnumOfSingleBitsTakesTheirUnions)
{
    EXPECT_TRUE(call("setFaces", box, ReflectedShape::FRONT | ReflectedShape::SIDES).succeeded());
    EXPECT_EQ(call("getFaces", box).value.get<int>().value, 5);
    EXPECT_TRUE(call("setFaces", box, 0).succeeded());
    expectFailure(call("setFaces", box, 8), IReflectedThing::WRONG_ARGUMENT_TYPE);
    expectFailure(call("setMaterial", box, 3), IReflectedThing::WRONG_ARGUMENT_TYPE);
}
