// Calls through the table that scripts cannot make, or not so: what scripts can call is tested by scripts.
#include "object/reflection/Reflection.h"
#include "object/reflection/SavedArguments.h"

#include "support/Probe.h"

#include <gtest/gtest.h>

namespace
{
/// One live probe and the shortest way to call it.
class ReflectedCall : public testing::Test
{
protected:
    ~ReflectedCall() override
    {
        if (auto alive = probe.lookup())
            alive->murder();
        cremateDeadObjects();
    }

    template <class... Arguments>
    ErrorReturn<Variant> call(const char *method, const Arguments &...arguments)
    {
        return Probe::staticType->getMember(String::copyFrom(method))->call(arguments...);
    }

    static void expectFailure(const ErrorReturn<Variant> &result, IReflectedThing::CallFailureType reason)
    {
        EXPECT_EQ(result.code.getCode(), ErrorCode::CALL_FAILURE);
        EXPECT_EQ(result.code.getHRESULT(), reason);
        EXPECT_EQ(result.value.getType(), Variant::VT_INVALID);
    }

    Handle<Probe> probe = spawn("probe");
};
} // namespace

TEST_F(ReflectedCall, ArgumentsOfEveryWidthArriveAndPrivateAndOverriddenFunctionsRun)
{
    EXPECT_EQ(call("inMillimetres", probe, 3).value.get<int>().value, 1003);
    EXPECT_EQ(call("shifted", probe, Vec4(1, 2, 3, 4), 258, 0.5, true).value.get<Vec4>().value, Vec4(-1, -2, -3, 4));
    EXPECT_EQ(AbstractProbe::staticType->getMember(SCS("describe"))->call(probe).value.get<String>().value,
              SCS("probe"));
    EXPECT_EQ(call("countEdges", probe).value.get<int>().value, 12);
    EXPECT_TRUE(call("setBookkeeping", probe, SCS("CLOSED")).succeeded());
    EXPECT_EQ(call("getBookkeeping", probe).value.get<int>().value, 7);
    EXPECT_EQ(call("setLabel", probe, SCS("crate")).value.getType(), Variant::VT_INVALID);
}

TEST_F(ReflectedCall, FunctionsWithoutAnObjectCountTheirOwnArgumentsOnly)
{
    const ReflectorPtr doubled = Reflection().getType(SCS("doubledNumber"));
    EXPECT_EQ(doubled->call(21).value.get<int>().value, 42);
    expectFailure(doubled->call(), IReflectedThing::WRONG_ARGUMENT_COUNT);
    expectFailure(doubled->call(1, 2), IReflectedThing::WRONG_ARGUMENT_COUNT);
    expectFailure(call("setSpeed"), IReflectedThing::WRONG_ARGUMENT_COUNT);
    expectFailure(call("setSpeed", Variant(), 1.0f), IReflectedThing::THIS_POINTER_ARG_NOT_A_HANDLE);
}

TEST_F(ReflectedCall, TheObjectAndHandleArgumentsMustBeOfTheirClassOrDead)
{
    const Handle<Object> lid = construct<Probe::Lid>(defaultAllocationCategory);
    expectFailure(call("setSpeed", lid, 1.0f), IReflectedThing::BAD_THIS_POINTER);
    EXPECT_TRUE(call("getName", lid).succeeded()) << "a function of a common base takes any object";
    EXPECT_TRUE(call("nest", probe, probe).value.get<bool>().value);
    expectFailure(call("nest", probe, lid), IReflectedThing::WRONG_ARGUMENT_TYPE);

    lid.lookup()->murder();
    probe.lookup()->murder();
    EXPECT_TRUE(call("getSpeed", probe).succeeded()) << "until it is cremated";
    cremateDeadObjects();
    expectFailure(call("getSpeed", probe), IReflectedThing::BAD_THIS_POINTER);
    probe = spawn("another");
    EXPECT_FALSE(call("nest", probe, lid).value.get<bool>().value);
}

TEST_F(ReflectedCall, WhatCannotCrossIsThereAndNotCallable)
{
    const ReflectorPtr plain = Reflection().getType(SCS("PlainProbe"))->getMember(SCS("getCorners"));
    for (const ReflectorPtr &member :
         {Probe::staticType->getMember(SCS("takesFive")), Probe::staticType->getMember(SCS("value")), plain})
    {
        ASSERT_TRUE(member);
        EXPECT_EQ(member->call(probe).code.getCode(), ErrorCode::NOT_CALLABLE);
    }
    for (const char *name : {"echoed", "gone", "Probe"})
    {
        const ReflectorPtr member = Probe::staticType->getMember(String::copyFrom(name));
        EXPECT_TRUE(!member || member->call(probe).code.getCode() == ErrorCode::NOT_CALLABLE) << name;
    }
}

TEST_F(ReflectedCall, AnEnumTakesItsNumbersItsNamesItsRecordsAndUnionsOfSingleBits)
{
    const ReflectorPtr finish = Reflection().getType(SCS("AbstractProbe::Finish"));
    for (const Variant &glossy :
         {Variant(1), Variant(1.0), Variant(true), Variant(SCS("GLOSSY")),
          Variant(SCS("AbstractProbe::Finish::GLOSSY")), Variant(finish->getMember(SCS("GLOSSY")))})
    {
        probe.lookup()->setFinish(AbstractProbe::Finish::MATT);
        EXPECT_TRUE(call("setFinish", probe, glossy).succeeded());
        EXPECT_EQ(call("getFinish", probe).value.get<int>().value, 1);
    }
    for (const Variant &wrong : {Variant(2), Variant(-1), Variant(SCS("SHINY")), Variant(finish), Variant(String()),
                                 Variant(ReflectorPtr()), Variant(), Variant(Handle<Object>(probe))})
        expectFailure(call("setFinish", probe, wrong), IReflectedThing::WRONG_ARGUMENT_TYPE);

    EXPECT_TRUE(call("setFaces", probe, AbstractProbe::FRONT | AbstractProbe::SIDES).succeeded());
    EXPECT_EQ(call("getFaces", probe).value.get<int>().value, 5);
    EXPECT_TRUE(call("setFaces", probe, 0).succeeded());
    expectFailure(call("setFaces", probe, 8), IReflectedThing::WRONG_ARGUMENT_TYPE);
    expectFailure(call("setMaterial", probe, 3), IReflectedThing::WRONG_ARGUMENT_TYPE);
}
