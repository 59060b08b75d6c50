#include "engine/entities/ScriptComponent.h"
#include "engine/entities/SimpleManager.h"
#include "support/TestComponent.h"
#include "support/TestLevel.h"
#include "support/Probe.h"

#include "object/reflection/PartialFunctionApplication.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{
SimpleManager &simpleManager(const TestLevel &world, const char *key)
{
    return *handle_cast<SimpleManager>(world.coordinator().getManager(SCS(key))).lookup();
}

/// A "player" component whose entity is its own, writing a journal.
Handle<TestComponent> makeRunner(TestLevel &world, const char *label, std::vector<std::string> &journal)
{
    const Handle<TestComponent> h = world.component<TestComponent>(world.entity(label), "player");
    h.lookup()->journal = &journal;
    h.lookup()->label = label;
    return h;
}
} // namespace

TEST(Component, IsAChildNamedAfterItsKeyAndFoundByIt)
{
    TestLevel world;
    const Handle<Entity> entity = world.entity("chair");
    const Handle<TransformComponent> place = world.transform(entity);
    const Handle<TestComponent> other = world.component<TestComponent>(entity, "player");
    EXPECT_EQ(entity.lookup()->getChild(SCS("transform")), place);
    EXPECT_EQ(entity.lookup()->getComponent(SCS("transform")), place);
    EXPECT_EQ(other.lookup()->getSibling(SCS("transform")), place);
    EXPECT_EQ(place.lookup()->getManager(), world.coordinator().getManager(SCS("transform")));
    EXPECT_FALSE(entity.lookup()->getComponent(SCS("physics")).isValid());

    other.lookup()->setParent(Handle<Object>());
    EXPECT_FALSE(other.lookup()->getSibling(SCS("transform")).isValid());
    other.lookup()->murder();
}

TEST(Component, SecondUnderAKeyIsFoundByTheKeyAndTheFirstByName)
{
    TestLevel world;
    const Handle<Entity> entity = world.entity("chair");
    const Handle<TestComponent> first = world.component<TestComponent>(entity, "player");
    const Handle<TestComponent> second = world.component<TestComponent>(entity, "player");
    EXPECT_EQ(entity.lookup()->getComponent(SCS("player")), second);
    EXPECT_EQ(entity.lookup()->getChild(SCS("player")), first);
    EXPECT_THAT(simpleManager(world, "player").getComponents(), ElementsAre(first, second));
}

TEST(Component, NeedsNoClassWhereItsManagerHasOneOfItsOwn)
{
    TestLevel world;
    Entity &entity = *world.entity("chair").lookup();
    for (const auto &[key, className] :
         {std::pair("objectGroup", "ObjectGroupComponent"), std::pair("partitioning", "PartitioningGrid"),
          std::pair("boundingVolume", "BoundingVolume")})
    {
        const auto component = entity.addComponent(String::copyFrom(key)).lookup();
        ASSERT_TRUE(component) << key;
        EXPECT_EQ(component->getType()->getName(), String::copyFrom(className));
        EXPECT_EQ(entity.getComponent(String::copyFrom(key)), component->getHandle());
    }
}

TEST(Component, LeavesItsManagerAtCremationHoweverItDied)
{
    TestLevel world;
    std::vector<std::string> journal;
    const Handle<TestComponent> direct = makeRunner(world, "direct", journal);
    const Handle<TestComponent> byEntity = makeRunner(world, "by entity", journal);
    const Handle<Entity> owner = handle_cast<Entity>(byEntity.lookup()->getParent());
    const Handle<Entity> kept = handle_cast<Entity>(direct.lookup()->getParent());
    direct.lookup()->murder();
    owner.lookup()->murder();
    world.frame();
    EXPECT_THAT(journal, ElementsAre("direct", "by entity")) << "the dying still have their frame";
    EXPECT_THAT(simpleManager(world, "player").getComponents(), IsEmpty());

    const Handle<AbstractComponent> entry = kept.lookup()->getComponent(SCS("player"));
    EXPECT_EQ(entry, direct) << "the entity keeps its entry";
    EXPECT_FALSE(entry.isValid());
    journal.clear();
    world.frame();
    EXPECT_THAT(journal, IsEmpty());
}

TEST(Component, RemovedByItsManagerStopsRunningAtOnce)
{
    TestLevel world;
    std::vector<std::string> journal;
    const Handle<TestComponent> removed = makeRunner(world, "removed", journal);
    simpleManager(world, "player").removeComponentFromEntity(removed);
    EXPECT_TRUE(removed.lookup()->isDying());
    EXPECT_FALSE(removed.lookup()->getParent().isValid());
    world.frame();
    EXPECT_THAT(journal, IsEmpty());
}

TEST(SimpleManager, RunsComponentsInOrderOfCreation)
{
    TestLevel world;
    std::vector<std::string> journal;
    for (const char *label : {"a", "b", "c"})
        makeRunner(world, label, journal);
    world.frame();
    EXPECT_THAT(journal, ElementsAre("a", "b", "c"));
}

TEST(SimpleManager, ReachesComponentsMadeDuringItsWalk)
{
    TestLevel world;
    std::vector<std::string> journal;
    const Handle<TestComponent> first = makeRunner(world, "first", journal);
    makeRunner(world, "second", journal);
    first.lookup()->whenRun = [&]
    {
        if (journal.size() == 1)
            makeRunner(world, "born", journal);
    };
    world.frame();
    EXPECT_THAT(journal, ElementsAre("first", "second", "born"));
}

TEST(SimpleManager, PassesByAComponentThatIsCrematedDuringItsWalk)
{
    TestLevel world;
    std::vector<std::string> journal;
    const Handle<TestComponent> first = makeRunner(world, "first", journal);
    const Handle<TestComponent> victim = makeRunner(world, "victim", journal);
    makeRunner(world, "last", journal);
    first.lookup()->whenRun = [&]
    {
        if (auto doomed = victim.lookup())
            doomed->murder();
        cremateDeadObjects();
    };
    world.frame();
    EXPECT_THAT(journal, ElementsAre("first", "last"));
}

TEST(SimpleManager, ComponentThatLeavesDuringItsOwnStepSkipsNobody)
{
    TestLevel world;
    std::vector<std::string> journal;
    const Handle<TestComponent> leaver = makeRunner(world, "leaver", journal);
    makeRunner(world, "second", journal);
    makeRunner(world, "third", journal);
    leaver.lookup()->whenRun = [&] { simpleManager(world, "player").removeComponentFromEntity(leaver); };
    world.frame();
    world.frame();
    EXPECT_THAT(journal, ElementsAre("leaver", "second", "third", "second", "third"));
}

TEST(SimpleManager, ComponentAddedByHandRunsInItsPlace)
{
    TestLevel world;
    std::vector<std::string> journal;
    const Handle<TestComponent> old = makeRunner(world, "old", journal);
    SimpleManager &manager = simpleManager(world, "player");
    const Handle<TestComponent> young = makeRunner(world, "young", journal);
    manager.removeComponentFromManager(old, Handle<Entity>());
    young.lookup()->whenRun = [&] { manager.addComponentToManager(old, Handle<Entity>()); };
    world.frame();
    world.frame();
    EXPECT_THAT(journal, ElementsAre("young", "old", "young"));
}

TEST(AddComponent, RefusesWithCauseAndRemedy)
{
    TestLevel world;
    Entity &chair = *world.entity("chair").lookup();
    EXPECT_FALSE(chair.addComponent(SCS("transform"), SCS("TransfromComponent")).isValid());
    EXPECT_EQ(countLogLines("addComponent to 'chair' under the key 'transform': no class 'TransfromComponent'; did you "
                            "mean 'TransformComponent'?"),
              1u);
    EXPECT_FALSE(chair.addComponent(SCS("player"), SCS("Entity")).isValid());
    EXPECT_EQ(countLogLines("class Entity is no SimpleComponent, which is what the key 'player' takes"), 1u);
    EXPECT_FALSE(chair.addComponent(SCS("player"), SCS("SimpleComponent")).isValid());
    EXPECT_EQ(countLogLines("class SimpleComponent is abstract"), 1u);
    EXPECT_FALSE(chair.addComponent(SCS("player")).isValid());
    EXPECT_EQ(countLogLines("no component class was named, and the key 'player' has none of its own"), 1u);
    EXPECT_FALSE(chair.addComponent(SCS("plyer"), SCS("TestComponent")).isValid());
    EXPECT_EQ(countLogLines("no manager key 'plyer'; did you mean 'player'?"), 1u);

    const Handle<Entity> stray = construct<Entity>(defaultAllocationCategory);
    EXPECT_FALSE(stray.lookup()->addComponent(SCS("transform"), TransformComponent::staticType).isValid());
    EXPECT_EQ(countLogLines("the entity is in no level"), 1u);
    stray.lookup()->murder();
}

TEST(ScriptComponent, CallsItsCallbackOnceAFrameAndDropsOneThatFails)
{
    TestLevel world;
    const Handle<Probe> thing = spawn("thing", world.level);
    const Handle<ScriptComponent> script = world.component<ScriptComponent>(world.entity("scripted"), "director");
    script.lookup()->setLoadCallback(thing.lookup()->bind(SCS("getValue")));
    script.lookup()->onLoadComplete();
    EXPECT_TRUE(script.lookup()->getLoadCallback());

    int calls = 0;
    thing.lookup()->whenCalled = [&] { ++calls; };
    script.lookup()->setFrameCallback(PartialFunctionApplication::construct(
        Probe::staticType->getMember(SCS("handleValueMessage")), Handle<Object>(thing), ReflectorPtr(), 1.5f));
    world.frame();
    world.frame();
    EXPECT_EQ(calls, 2);

    script.lookup()->setFrameCallback(thing.lookup()->bind(SCS("addValue")));
    world.frame();
    world.frame();
    EXPECT_FALSE(script.lookup()->getFrameCallback());
    EXPECT_EQ(countLogLines("/scripted/director: the frame callback <Partial application of Probe::addValue> failed"),
              1u);
}
