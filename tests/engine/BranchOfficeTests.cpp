#include "engine/levels/BranchPostOffice.h"
#include "object/messages/Message.h"
#include "object/messages/PostOffice.h"
#include "support/TestLevel.h"
#include "support/Probe.h"

#include <gtest/gtest.h>

namespace
{
MessageType valueMessageType(SCS("TestValueMessage"));
const ReflectorPtr valueMessage(&valueMessageType);

Handle<BranchPostOffice> openBranch(TestLevel &world, const Handle<Object> &level)
{
    const Handle<Entity> entity = world.entity("BranchPostOffice", level);
    return world.component<BranchPostOffice>(entity, "postOffice");
}

void send(float value)
{
    valueMessage->call(value).code.ignoreError();
}
} // namespace

TEST(BranchPostOffice, MessageReachesTheProcessFirstAndThenTheLevel)
{
    TestLevel world;
    const Handle<Probe> global = spawn("global", world.level);
    const Handle<Probe> local = spawn("local", world.level);
    int callsBefore = -1;
    local.lookup()->whenCalled = [&] { callsBefore = global.lookup()->calls; };
    const Handle<BranchPostOffice> branch = openBranch(world, world.level);
    branch.lookup()->registerMessageHandler(valueMessage, local.lookup()->bind(SCS("handleValueMessage")));
    PostOffice().registerMessageHandler(valueMessage, global.lookup()->bind(SCS("handleValueMessage")));

    send(2.5f);
    EXPECT_FLOAT_EQ(local.lookup()->getValue(), 2.5f);
    EXPECT_EQ(callsBefore, 1);
}

TEST(BranchPostOffice, HandlersDieWithTheirLevel)
{
    TestLevel world;
    const Handle<Probe> survivor = spawn("survivor", getSystem<GameLoopSystem>());
    openBranch(world, world.level)
        .lookup()
        ->registerMessageHandler(valueMessage, survivor.lookup()->bind(SCS("handleValueMessage")));
    send(1);
    EXPECT_EQ(survivor.lookup()->calls, 1);

    const Handle<Coordinator> next = world.anotherCoordinator();
    getSystemDeref<GameLoopSystem>().setCurrentlyActiveCoordinator(next);
    send(1);
    EXPECT_EQ(survivor.lookup()->calls, 1) << "the level in charge has no branch";

    openBranch(world, next)
        .lookup()
        ->registerMessageHandler(valueMessage, survivor.lookup()->bind(SCS("handleValueMessage")));
    send(1);
    EXPECT_EQ(survivor.lookup()->calls, 2);
}

TEST(BranchPostOffice, FailingHandlerIsCalledOnce)
{
    TestLevel world;
    const Handle<Probe> thing = spawn("thing", world.level);
    openBranch(world, world.level)
        .lookup()
        ->registerMessageHandler(valueMessage, thing.lookup()->bind(SCS("failingHandler")));
    send(1);
    send(1);
    EXPECT_EQ(thing.lookup()->calls, 1);
}

TEST(BranchPostOffice, IsFoundByThePathOfTheLevel)
{
    TestLevel world;
    const Handle<BranchPostOffice> branch = openBranch(world, world.level);
    EXPECT_EQ(getObjectByPath(SCS("c:/BranchPostOffice/postOffice")), branch);
}
