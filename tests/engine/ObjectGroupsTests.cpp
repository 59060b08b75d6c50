#include "engine/entities/ObjectGroupManager.h"
#include "support/TestLevel.h"

#include <gtest/gtest.h>

namespace
{

typedef ObjectGroupComponent G;

class ObjectGroups : public testing::Test, public TestLevel
{
protected:
    Handle<G> member(const char *name) { return component<G>(entity(name), "objectGroup"); }
    ObjectGroupManager &manager()
    {
        return *handle_cast<ObjectGroupManager>(coordinator().getManager(SCS("objectGroup"))).lookup();
    }
};

} // namespace

TEST_F(ObjectGroups, MembersMoveBetweenGroupsAndBothGenerationsRise)
{
    const Handle<G> older = member("older"), younger = member("younger");
    EXPECT_EQ(manager().getGroup(G::NONE), (ObjectGroupManager::ComponentGroup{older, younger}));
    const std::uint32_t none = manager().getGeneration(G::NONE);
    EXPECT_EQ(manager().getGeneration(G::WALL), 0u);

    younger.lookup()->setGroup(G::WALL);
    EXPECT_EQ(manager().getGroup(G::NONE), ObjectGroupManager::ComponentGroup{older});
    EXPECT_EQ(manager().getGroup(G::WALL), ObjectGroupManager::ComponentGroup{younger});
    EXPECT_EQ(manager().getGeneration(G::NONE), none + 1);
    EXPECT_EQ(manager().getGeneration(G::WALL), 1u);

    younger.lookup()->setGroup(G::WALL);
    EXPECT_EQ(manager().getGeneration(G::WALL), 1u) << "nothing changed";
    EXPECT_TRUE(manager().getGroup(G::PLAYER_FOLLOW).empty());
}

TEST_F(ObjectGroups, DeadMemberLeavesAtItsCremationWithItsEntity)
{
    const Handle<G> wall = member("wall");
    wall.lookup()->setGroup(G::WALL);
    const std::uint32_t before = manager().getGeneration(G::WALL);
    wall.lookup()->getParent().lookup()->murder();
    EXPECT_EQ(manager().getGroup(G::WALL).size(), 1u) << "handles go dead between frames only";
    frame();
    EXPECT_TRUE(manager().getGroup(G::WALL).empty());
    EXPECT_EQ(manager().getGeneration(G::WALL), before + 1);
    manager().changeGroups(wall, G::WALL, G::FLOOR);
    EXPECT_TRUE(manager().getGroup(G::FLOOR).empty()) << "the dead are not filed again";
}

TEST_F(ObjectGroups, OnlyGroupComponentsAreMade)
{
    const Handle<Entity> thing = entity("thing");
    EXPECT_FALSE(thing.lookup()->addComponent(SCS("objectGroup"), SCS("TransformComponent")).isValid());
    EXPECT_TRUE(thing.lookup()->addComponent(SCS("objectGroup"), SCS("ObjectGroupComponent")).isValid());
}
