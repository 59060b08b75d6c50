#include "gameplay/PlayerWorld.h"

#include "gameplay/creatures/ActFollowPlayer.h"
#include "gameplay/player/ActEquipmentBob.h"
#include "gameplay/player/ActPlayerCrouch.h"
#include "gameplay/player/ActPlayerHeadbob.h"
#include "gameplay/player/ActPlayerLean.h"
#include "gameplay/player/ActTakeFootstep.h"
#include "gameplay/player/PlayerLeaves.h"
#include "gameplay/player/PlayerMessages.h"

#include "ai/flocks/FlockingComponent.h"
#include "physics/bodies/WallPhysics.h"
#include "platform/input/EngineMessage.h"
#include "port/win32/VirtualKeys.h"
#include "support/AllocationCount.h"

#include <gtest/gtest.h>

#include <cmath>

namespace
{

/// A player with the actions of his body, ticked by a test.
class Body : public testing::Test
{
protected:
    Body()
    {
        follower = handle_cast<TransformOffsetComponent>(world.camera.lookup()->getComponent(SCS("parentFollower")))
                       .lookup()
                       .ptr;
        rest = follower->getPositionOffset();
    }

    template <class Act>
    Act &act(Handle<Entity> entity = Handle<Entity>())
    {
        const Handle<Act> made = construct<Act>(defaultAllocationCategory);
        made.lookup()->setParent(entity.isValid() ? entity : world.entity).ignoreError();
        return *made.lookup();
    }
    /// Ticks an action for some seconds at a rate.
    static void run(Action &action, double seconds, int rate = 64)
    {
        for (int frame = 0; frame < static_cast<int>(seconds * rate + 0.5); ++frame)
            EXPECT_EQ(action.update(1.0 / rate), AS_InProgress);
    }
    Handle<Entity> wall(Vec4 at, Vec4 size)
    {
        const Handle<Entity> entity = world.level.entity("wall", world.map);
        world.level.transform(entity, at);
        auto volume = world.level.component<BoundingVolume>(entity, "boundingVolume").lookup();
        volume->setHitBox(size);
        volume->setVolumeType(BoundingVolume::BV_WALL);
        world.level.component<WallPhysics>(entity, "physics");
        world.level.frame();
        return entity;
    }
    float eyes() const { return follower->getPositionOffset().y - rest.y; }

    PlayerWorld world;
    TransformOffsetComponent *follower = nullptr;
    Vec4 rest;
};

} // namespace

TEST_F(Body, BobBeginsAFifthOfASecondAfterTheFirstStepAndFollowsIt)
{
    world.player->setHeadbobRate(5);
    auto &bob = act<ActPlayerHeadbob>();
    world.key('W');
    run(bob, 0.1875);
    EXPECT_EQ(eyes(), 0.f) << "a tap is no walk";
    run(bob, 0.25);
    const float phase = 5 * 1.2f * (0.1875f + 0.25f - 12.f / 64);
    EXPECT_NEAR(eyes(), 0.12f * std::sin(phase), 1e-4f);
    EXPECT_NEAR(bob.getTotalBobOffset(), eyes(), 1e-6f);
    float least = 0, most = 0;
    for (int frame = 0; frame < 320; ++frame)
    {
        run(bob, 1.0 / 64);
        least = std::min(least, eyes());
        most = std::max(most, eyes());
    }
    EXPECT_NEAR(most, 0.12f, 1e-3f);
    EXPECT_GT(least, -0.012f) << "half waves: down is rest";
}

TEST_F(Body, BobComesToRestInProportionAndNeverPastIt)
{
    for (const float rate : {5.f, 200.f})
    {
        world.player->setHeadbobRate(5);
        auto &bob = act<ActPlayerHeadbob>();
        world.key('W');
        run(bob, 0.45);
        world.key('W', false);
        world.player->setHeadbobRate(rate);
        float before = eyes();
        EXPECT_GT(before, 0.05f);
        for (int frame = 0; frame < 300; ++frame)
        {
            run(bob, 1.0 / 64);
            EXPECT_GT(eyes(), -1e-6f);
            EXPECT_LT(eyes(), before + 1e-6f);
            before = eyes();
        }
        EXPECT_NEAR(eyes(), 0.f, 1e-5f);
        EXPECT_NEAR(follower->getPositionOffset().x, rest.x, 1e-5f) << "in the middle, too";
        EXPECT_EQ(bob.getTotalBobOffset(), 0.f);
    }
}

TEST(Steps, OfEachKindAreTakenWithTheirOwnMultiplier)
{
    struct Row
    {
        const char *held; ///< 's' is Shift, 'c' a tap on Ctrl
        float multiplier;
    };
    const Row rows[] = {{"", 0},     {"W", 1.2f},  {"S", 1.f},           {"A", 0.9f}, {"D", 0.9f},         {"WA", 1.2f},
                        {"SA", 1.f}, {"cW", 0.9f}, {"sW", 1.2f * 1.35f}, {"s", 0},    {"sA", 0.9f * 1.35f}};
    for (const Row &row : rows)
    {
        PlayerWorld fresh;
        auto bob = construct<ActPlayerHeadbob>(defaultAllocationCategory).lookup();
        bob->setParent(fresh.entity).ignoreError();
        for (const char *held = row.held; *held; ++held)
            *held == 's' ? fresh.key(VK_SHIFT) : *held == 'c' ? fresh.press(VK_CONTROL) : fresh.key(*held);
        bob->update(1.0 / 64);
        EXPECT_FLOAT_EQ(bob->getMultiplier(), row.multiplier) << row.held;
    }
}

TEST_F(Body, CrouchEasesGivesOnceAtTheBottomAndIsTheSameAtEveryRate)
{
    for (const int rate : {30, 60, 120, 240})
    {
        auto &crouch = act<ActPlayerCrouch>();
        run(crouch, 0.1, rate);
        const float feet = world.place->getPosition().y - 0.875f;
        const auto eyesOverFeet = [&] { return world.place->getPosition().y + eyes() - feet; };
        const float standing = eyesOverFeet();
        world.press(VK_CONTROL);
        run(crouch, 0.1, rate);
        const float atFirst = standing - eyesOverFeet(), way = 0.32f;
        EXPECT_NEAR(atFirst, 0.62f * way * way * (3 - 2 * way), 0.001f) << rate;
        float lowest = 0;
        for (int frame = 0; frame < rate; ++frame)
        {
            run(crouch, 1.0 / rate, rate);
            lowest = std::max(lowest, standing - eyesOverFeet());
        }
        EXPECT_NEAR(lowest, 0.655f, 0.002f) << "it gives at the bottom";
        EXPECT_NEAR(standing - eyesOverFeet(), 0.62f, 0.001f);
        world.press(VK_CONTROL);
        run(crouch, 1, rate);
        EXPECT_NEAR(standing - eyesOverFeet(), 0.f, 1e-5f);
        crouch.murder();
        world.level.frame();
    }
}

TEST_F(Body, WhoCrouchesIsLowerAndStandsUpWhereThereIsRoom)
{
    auto volume = handle_cast<BoundingVolume>(world.entity.lookup()->getComponent(SCS("boundingVolume"))).lookup();
    auto &crouch = act<ActPlayerCrouch>();
    run(crouch, 0.1);
    const float feet = world.place->getPosition().y - volume->getHitBox().y / 2;
    world.press(VK_CONTROL);
    run(crouch, 1);
    EXPECT_NEAR(volume->getHitBox().y, 1.75f * 0.66f, 1e-4f);
    EXPECT_NEAR(world.place->getPosition().y - volume->getHitBox().y / 2, feet, 1e-5f);

    const Handle<Entity> shelf = wall(Vec4(0, feet + 1.5f, 0.3f, 1), Vec4(2, 0.1f, 0.5f, 0));
    world.press(VK_CONTROL);
    const float down = eyes();
    run(crouch, 1);
    EXPECT_NEAR(eyes(), down, 1e-5f) << "the shelf keeps the head down";
    shelf.lookup()->murder();
    world.level.frame();
    const float middle = world.place->getPosition().y;
    run(crouch, 1);
    EXPECT_NEAR(eyes(), 0.f, 1e-4f);
    EXPECT_NEAR(volume->getHitBox().y, 1.75f, 1e-5f);
    EXPECT_NEAR(world.place->getPosition().y - middle, 1.75f * 0.17f, 1e-3f);
}

TEST_F(Body, HeadLeansToEitherSideKeepsItsPitchAndComesBackExactly)
{
    auto &lean = act<ActPlayerLean>();
    run(lean, 0.1);
    world.moveMouse(0, 20);
    world.level.frame();
    const Quaternion pitch = follower->getOrientationOffset();
    sendEngineMessage(LeanLeftMessage);
    run(lean, 1);
    EXPECT_NEAR(lean.getCurrAngle(), 0.35f, 1e-3f);
    EXPECT_NEAR(follower->getPositionOffset().x - rest.x, -0.85f * std::sin(0.35f), 1e-3f);
    EXPECT_LT(follower->getOrientationOffset().generateRotation().getColumn(1).x, -0.3f) << "the head is to the left";
    sendEngineMessage(StopLeaningMessage);
    sendEngineMessage(LeanRightMessage);
    run(lean, 1);
    EXPECT_NEAR(lean.getCurrAngle(), -0.35f, 1e-3f);
    sendEngineMessage(LeanReturnMessage);
    run(lean, 2);
    EXPECT_EQ(lean.getCurrAngle(), 0.f);
    EXPECT_EQ(lean.getLeanDir(), ActPlayerLean::LD_None);
    EXPECT_EQ(follower->getPositionOffset(), rest);
    EXPECT_EQ(follower->getOrientationOffset(), pitch);
}

TEST_F(Body, HeadStopsBeforeAWallBesideIt)
{
    wall(Vec4(0.8f, 1.5f, 0, 1), Vec4(1, 3, 4, 0)); // its face is 0.3 m to the right
    auto &lean = act<ActPlayerLean>();
    run(lean, 0.1);
    sendEngineMessage(LeanRightMessage);
    run(lean, 1);
    EXPECT_NEAR(follower->getPositionOffset().x - rest.x, 0.12f, 0.01f);
    sendEngineMessage(LeanLeftMessage);
    run(lean, 1);
    EXPECT_NEAR(lean.getCurrAngle(), 0.35f, 1e-3f);
}

TEST_F(Body, FeetComeDownEveryHalfMetreOfX_OrOfZ)
{
    auto &steps = act<ActTakeFootstep>();
    run(steps, 1.0 / 64);
    int count = 0;
    Vec4 last = steps.getPrevFootstepPos();
    for (int i = 1; i <= 100; ++i)
    {
        world.place->setPosition(Vec4(0.03f * static_cast<float>(i), 1, -0.02f * static_cast<float>(i), 1));
        run(steps, 1.0 / 64);
        count += steps.getPrevFootstepPos() != last;
        last = steps.getPrevFootstepPos();
    }
    EXPECT_EQ(count, 5) << "each time that 0.51 m of x are behind";
}

TEST_F(Body, ActionsGoOnWithoutTakingMemory)
{
    world.player->setHeadbobRate(5);
    Action *const actions[] = {&act<ActPlayerHeadbob>(), &act<ActPlayerCrouch>(), &act<ActPlayerLean>(),
                               &act<ActTakeFootstep>()};
    world.key('W');
    sendEngineMessage(LeanRightMessage);
    const auto step = [&]
    {
        world.place->setPosition(world.place->getPosition() + Vec4(0.2f, 0, 0, 0));
        for (Action *action : actions)
            action->update(1.0 / 64);
    };
    for (int i = 0; i < 10; ++i)
        step();
    EXPECT_EQ(allocationsOf(step, 30), 0u);
}

TEST_F(Body, ActionsOfAnEntityWithoutTheirPartsSaySo)
{
    const Handle<Entity> bare = world.level.entity("bare");
    EXPECT_EQ(act<ActPlayerHeadbob>(bare).update(0.01), AS_InvalidHandle);
    EXPECT_EQ(act<ActEquipmentBob>(bare).update(0.01), AS_InvalidHandle);
    EXPECT_EQ(act<ActPlayerCrouch>(bare).update(0.01), AS_InvalidHandle);
    EXPECT_EQ(act<ActPlayerLean>(bare).update(0.01), AS_InvalidHandle);
    EXPECT_EQ(act<ActTakeFootstep>(bare).update(0.01), AS_InvalidHandle);
}

TEST_F(Body, EquipmentBobsByItsOwnFollowerWithTheLevelsPlayer)
{
    world.player->setHeadbobRate(5);
    const Handle<Entity> torch = world.level.entity("torch", world.camera);
    auto own = world.level.component<TransformOffsetComponent>(torch, "parentFollower").lookup();
    own->setPositionOffset(Vec4(0.15f, -0.1f, 0.25f, 0));
    auto &bob = act<ActEquipmentBob>(torch);
    world.key('W');
    run(bob, 0.5);
    EXPECT_GT(own->getPositionOffset().y, -0.05f);
    EXPECT_EQ(bob.getOriginalOffset(), Vec4(0.15f, -0.1f, 0.25f, 0));
    EXPECT_EQ(eyes(), 0.f);
}

TEST_F(Body, TreesAskAboutThePlayer)
{
    const Handle<Entity> bare = world.level.entity("bare", world.map);
    EXPECT_EQ(IsPlayerMoving(bare), SC_InvalidHandle);
    EXPECT_EQ(IsPlayerMoving(Handle<Entity>()), SC_InvalidHandle);
    EXPECT_EQ(IsPlayerMoving(world.entity), SC_Failure);
    world.key('A');
    EXPECT_EQ(IsPlayerMoving(world.entity), SC_Success);

    EXPECT_EQ(DoesPlayerHaveFlashlight(Handle<Entity>()), SC_InvalidHandle);
    EXPECT_EQ(DoesPlayerHaveFlashlight(bare), SC_Failure) << "whoever asks is told of the player";
    world.player->pickupFlashlight(world.level.component<RigidBody>(bare, "physics"));
    EXPECT_EQ(DoesPlayerHaveFlashlight(world.entity), SC_Success);

    EXPECT_EQ(PursuePlayer(world.entity), AS_InvalidHandle);
    const Handle<Entity> flock = world.level.entity("flock", world.map);
    world.level.component<FlockingComponent>(flock, "flocking");
    EXPECT_EQ(PursuePlayer(flock), AS_InProgress);
    world.entity.lookup()->murder();
    world.level.frame();
    EXPECT_EQ(DoesPlayerHaveFlashlight(flock), SC_InvalidHandle);
    EXPECT_EQ(PursuePlayer(flock), AS_InvalidHandle);
}

TEST_F(Body, FigureJumpsToThePlayersBackOnceAWhileAndNeverWhileFaced)
{
    const Handle<Entity> figure = world.level.entity("figure", world.map);
    TransformComponent &at = *world.level.transform(figure, Vec4(0, 0.9f, -6, 1)).lookup();
    world.level.component<BoundingVolume>(figure, "boundingVolume").lookup()->setHitBox(Vec4(0.5f, 1.8f, 0.5f, 0));
    auto follow = world.level.component<ActFollowPlayer>(figure, "behaviors").lookup();
    follow->setPositionOffset(Vec4(0, 0, -2, 0));
    follow->onLoadComplete();
    world.level.frame();

    world.place->setOrientation(Quaternion::fromAxisAngle(Vec4(0, 1, 0, 0), PI));
    follow->followPlayer();
    EXPECT_EQ(at.getPosition(), Vec4(0, 0.9f, -6, 1)) << "the player looks at it";
    world.place->setOrientation(Quaternion());
    follow->followPlayer();
    EXPECT_EQ(at.getPosition(), Vec4(0, 0.9f, -2, 1));
    EXPECT_NEAR(at.getOrientation().generateRotation().getColumn(2).z, 1.f, 1e-5f) << "turned to the player";
    EXPECT_EQ(follow->getCurrentCoolDown(), 2.0);

    at.setPosition(Vec4(0, 0.9f, -6, 1));
    world.frames(64);
    follow->followPlayer();
    EXPECT_EQ(at.getPosition().z, -6.f) << "it has jumped just now";
    world.frames(65);
    follow->followPlayer();
    EXPECT_EQ(at.getPosition().z, -2.f);
    world.frames(200);
    EXPECT_LT(follow->getCurrentCoolDown(), -1.0);
}
