// Messages: who hears them, in which order, and how a handler falls out.
#include "object/messages/ListenerSets.h"
#include "object/messages/Message.h"
#include "object/reflection/PartialFunctionApplication.h"
#include "object/messages/PostOffice.h"

#include "support/Probe.h"
#include "support/TestLevel.h"

#include <gtest/gtest.h>

namespace
{
MessageType testMessage(SCS("TestMessage"));
const ReflectorPtr TestMessage(&testMessage);

struct Messages : testing::Test
{
    ListenerSets office;
    Handle<Probe> listener = spawn("listener");

    ~Messages() override
    {
        if (auto o = listener.lookup())
            o->murder();
        cremateDeadObjects();
    }

    void post(float value)
    {
        SavedArguments payload = SavedArguments::of(value);
        office.deliver(TestMessage, payload);
    }
};
} // namespace

TEST_F(Messages, AHandlerThatFailsIsCalledOnceAndNotAgain)
{
    office.add(TestMessage, listener.lookup()->bind(SCS("failingHandler")));
    office.add(TestMessage, listener.lookup()->bind(SCS("handleValueMessage")));
    post(1);
    post(1);
    EXPECT_EQ(listener.lookup()->calls, 3);
    EXPECT_EQ(listener.lookup()->value, 2.0f);
    EXPECT_EQ(office.getHandlerCount(TestMessage), 1u);
}

TEST_F(Messages, AHandlerOfTheWrongSignatureFallsOutSilently)
{
    office.add(TestMessage, listener.lookup()->bind(SCS("addFour")));
    post(1);
    EXPECT_EQ(office.getHandlerCount(TestMessage), 0u);
}

TEST_F(Messages, WithFourValuesIsMoreThanAMethodTakesAndIsRefusedAloud)
{
    office.add(TestMessage, listener.lookup()->bind(SCS("addFour")));
    office.add(TestMessage, Probe::staticType->getMember(SCS("acceptFour")));
    SavedArguments payload = SavedArguments::of(1, 2, 3, 4);
    office.deliver(TestMessage, payload);
    EXPECT_EQ(office.getHandlerCount(TestMessage), 1u) << "who needs no object has room";
    EXPECT_EQ(countLogLines("Probe::addFour: 1 bound and 5 given arguments are more than the 5"), 1u);
    EXPECT_EXIT(static_cast<void>(SavedArguments(maxCallArgs + 1)), testing::ExitedWithCode(1),
                "6 arguments are to be");
}

TEST_F(Messages, AHandlerRegisteredDuringADeliveryWaitsForTheNextOne)
{
    const Handle<Probe> latecomer = spawn("latecomer");
    listener.lookup()->whenCalled = [&]
    {
        office.add(TestMessage, latecomer.lookup()->bind(SCS("handleValueMessage")));
        listener.lookup()->whenCalled = nullptr;
    };
    office.add(TestMessage, listener.lookup()->bind(SCS("handleValueMessage")));
    post(1);
    EXPECT_EQ(latecomer.lookup()->calls, 0);
    post(1);
    EXPECT_EQ(latecomer.lookup()->calls, 1);
    EXPECT_EQ(listener.lookup()->calls, 2);
    latecomer.lookup()->murder();
}

TEST_F(Messages, OneHandlerTwiceIsOneAlsoWhenItRegistersItselfAgainInItsOwnCall)
{
    const ReflectorPtr handler = listener.lookup()->bind(SCS("handleValueMessage"));
    office.add(TestMessage, handler);
    office.add(TestMessage, handler);
    listener.lookup()->whenCalled = [&] { office.add(TestMessage, handler); };
    post(1);
    post(1);
    EXPECT_EQ(listener.lookup()->calls, 2);
    EXPECT_EQ(office.getHandlerCount(TestMessage), 1u);
}

TEST_F(Messages, AMurderedListenerHearsUntilItsCremation)
{
    office.add(TestMessage, listener.lookup()->bind(SCS("handleValueMessage")));
    listener.lookup()->murder();
    post(1);
    EXPECT_EQ(listener.lookup()->calls, 1);
    cremateDeadObjects();
    post(1);
    EXPECT_EQ(office.getHandlerCount(TestMessage), 0u);
}

TEST_F(Messages, AMessageSentFromAHandlerReachesThoseWhoseCallHasEnded)
{
    const Handle<Probe> second = spawn("second");
    office.add(TestMessage, listener.lookup()->bind(SCS("handleValueMessage")));
    office.add(TestMessage, second.lookup()->bind(SCS("handleValueMessage")));
    second.lookup()->whenCalled = [&]
    {
        second.lookup()->whenCalled = nullptr;
        post(10);
    };
    post(1);
    EXPECT_EQ(listener.lookup()->value, 11.0f);
    EXPECT_EQ(second.lookup()->value, 1.0f);
    post(1);
    EXPECT_EQ(second.lookup()->value, 2.0f);
    second.lookup()->murder();
}

TEST_F(Messages, CallingAMessageTypePostsToTheOfficeOfTheProcess)
{
    PostOffice().registerMessageHandler(TestMessage, listener.lookup()->bind(SCS("handleValueMessage")));
    EXPECT_TRUE(TestMessage->call(2.0f).succeeded());
    EXPECT_EQ(listener.lookup()->value, 2.0f);
    EXPECT_EQ(getMessageType(SCS("TestMessage")), TestMessage);
    EXPECT_EQ(TestMessage->getQualifiedName(), SCS("<Message>"));
}

TEST_F(Messages, ABoundCallDescribesItselfAsWhatItWraps)
{
    EXPECT_EQ(listener.lookup()->bind(SCS("noSuchMethod")), ReflectorPtr());
    const ReflectorPtr bound = listener.lookup()->bind(SCS("addFour"));
    const ReflectorPtr partly = PartialFunctionApplication::construct(bound, 1, 2);
    EXPECT_EQ(partly->call(3, 4).value.get<int>().value, 10);
    EXPECT_EQ(partly->getArgCount(), 2u);
    EXPECT_EQ(partly->getName(), SCS("addFour"));
    EXPECT_EQ(partly->call(1, 2, 3, 4).code.toString(), SCS("CALL_FAILURE: WRONG_ARGUMENT_COUNT"));
}
