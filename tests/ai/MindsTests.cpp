#include "ai/paths/PathFollower.h"
#include "ai/perception/PerceptionComponent.h"
#include "ai/perception/PerceptionManager.h"
#include "ai/steering/SteeringComponent.h"
#include "ai/trees/BTComponent.h"
#include "ai/trees/BTLib.h"
#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "physics/SoundScene.h"
#include "physics/grid/SquareGrid.h"
#include "support/AllocationCount.h"

#include <gtest/gtest.h>

namespace
{

PerceptionComponent &sensesOf(const Handle<Entity> &creature)
{
    return *componentOf<PerceptionComponent>(creature, ComponentKeys::perception);
}

StatusCode suspects(Handle<Entity> creature)
{
    return sensesOf(creature).getRemembers() ? SC_Success : SC_Failure;
}

ActionStatus goThere(Handle<Entity> creature)
{
    componentOf<PathFollower>(creature, ComponentKeys::pathFollower)->goTo(sensesOf(creature).getPlace());
    return AS_Complete;
}

ActionStatus stroll(Handle<Entity> creature)
{
    componentOf<PathFollower>(creature, ComponentKeys::pathFollower)->stop();
    componentOf<SteeringComponent>(creature, ComponentKeys::steering)->updateWander(1.0 / 64);
    return AS_Complete;
}

/// The house divided in two, with creatures that go where they suspect the player and stroll else.
struct HauntedHouse : SoundScene
{
    HauntedHouse()
    {
        divide({-4, 3});
        const Handle<Entity> plan = world.level.entity(".MapData_mainPathGrid", world.map);
        world.level.transform(plan, Vec4(3, 0, -2, 1)).lookup()->setScale(Vec4(20, 1, 20, 0));
        world.level.component<SquareGrid>(plan, "grid").lookup()->updateSize();
        player = world.box(BoundingVolume::BV_PLAYER, Vec4(3, 0.9f, 4, 1), Vec4(0.5f, 1.8f, 0.5f, 0));
        player.entity.lookup()->setName(SCS("Player"));
        player.body->setInverseMass(0);
        buildTree();
    }

    void buildTree()
    {
        BTLib &trees = getSystemDeref<BTLib>();
        const Handle<BTTask> root = trees.BTCreateSelector(), search = trees.BTCreateSequence();
        trees.BTAddChild(search, trees.BTCreateCondition(suspects));
        trees.BTAddChild(search, trees.BTCreateAction(goThere));
        trees.BTAddChild(root, search);
        trees.BTAddChild(root, trees.BTCreateAction(stroll));
        trees.addBehaviorTree(SCS("haunt the house"), root);
    }
    void addCreature(Vec4 place)
    {
        const TestBox body = world.box(BoundingVolume::BV_SPHERE, place, Vec4(0.4f, 0.4f, 0.4f, 0));
        world.level.component<PerceptionComponent>(body.entity, "perception").lookup()->setSeesInDark(true);
        BTComponent &mind = *world.level.component<BTComponent>(body.entity, "behaviors").lookup();
        mind.addBehavior(SCS("haunt the house"));
        mind.setActiveBehavior(SCS("haunt the house"));
        world.level.component<PathFollower>(body.entity, "pathFollower");
        SteeringComponent &steering = *world.level.component<SteeringComponent>(body.entity, "steering").lookup();
        steering.setMaxSpeed(1.4f);
        steering.setMaxAccel(10);
        steering.setTimeToTarget(0.25f);
        creatures.push_back(body);
    }
    /// Some frames in which the player goes to and fro before a doorway and is heard.
    void play(int frames)
    {
        for (int i = 0; i < frames; ++i, ++time)
        {
            const float way = static_cast<float>(std::abs(time % 128 - 64)) / 32.f;
            player.transform->setPosition(Vec4(2 + way, 0.9f, 4, 1));
            if (time % 32 == 0)
                handle_cast<PerceptionManager>(world.level.coordinator().getManager(SCS("perception")))
                    .lookup()
                    ->makeNoise(SCS("Step"), player.transform->getPosition(), 0.13f, player.entity);
            world.level.frame();
        }
    }

    TestBox player;
    std::vector<TestBox> creatures;
    int time = 0;
};

TEST(Minds, ThoseWhoSeeAndHearFindThePlayerBehindTheWallAndTheirFramesTakeNoMemory)
{
    HauntedHouse house;
    for (int i = 0; i < 12; ++i)
        house.addCreature(Vec4(-5.f + 1.4f * static_cast<float>(i), 0.2f, -4.f - static_cast<float>(i % 3), 1));
    house.play(64 * 30);
    int there = 0;
    for (const TestBox &creature : house.creatures)
    {
        Vec4 way = creature.transform->getPosition() - house.player.transform->getPosition();
        way.y = way.w = 0;
        there += way.magnitude() < 2.5f;
    }
    EXPECT_GE(there, 6) << "through the doorways, to where they heard him";
    EXPECT_EQ(heapAllocationsOf([&] { house.play(1); }, 64), 0u);
}

} // namespace
