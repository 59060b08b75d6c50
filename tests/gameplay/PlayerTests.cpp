#include "gameplay/PlayerWorld.h"

#include "physics/bodies/WallPhysics.h"
#include "physics/doors/DoorPhysics.h"
#include "platform/input/EngineMessage.h"
#include "platform/input/InputMessages.h"
#include "port/win32/VirtualKeys.h"
#include "support/AllocationCount.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace
{
constexpr double FRAME = 1.0 / 64;
/// Counts log lines that a block adds.
template <class Block>
std::size_t linesOf(const char *text, Block block)
{
    const std::size_t before = countLogLines(text);
    block();
    return countLogLines(text) - before;
}

std::string report(std::size_t row, const char *keys)
{
    return "row " + std::to_string(row) + ": " + keys;
}

} // namespace

TEST(Player, KeysPushAlongTheGroundByTheirTable)
{
    struct Row
    {
        const char *held; ///< 's' is Shift and 'c' a tap on Ctrl, the rest are letters
        float right, ahead, damping;
    };
    const float walk = 7.f, side = 4.2f, sprint = 24.5f;
    const Row rows[] = {
        {"", 0, 0, 0.01f},
        {"W", 0, walk, 0.2f},
        {"S", 0, -walk, 0.2f},
        {"D", side, 0, 0.2f},
        {"A", -side, 0, 0.2f},
        {"WD", side, walk, 0.2f},
        {"WS", 0, 0, 0.01f},
        {"AD", 0, 0, 0.01f},
        {"WSAD", 0, 0, 0.01f},
        {"cW", 0, walk / 2, 0.2f},
        {"ccW", 0, walk, 0.2f},
        {"sW", 0, sprint, 0.2f},
        {"sD", side * 3.5f, 0, 0.2f},
        {"s", 0, 0, 0.01f},
        {"scW", 0, sprint, 0.2f},
        {"csW", 0, sprint, 0.2f},
    };
    for (std::size_t i = 0; i < std::size(rows); ++i)
    {
        SCOPED_TRACE(report(i, rows[i].held));
        PlayerWorld world;
        world.place->setOrientation(Quaternion::fromAxisAngle(Vec4(0, 1, 0, 0), PI / 2));
        for (const char *held = rows[i].held; *held; ++held)
            *held == 's' ? world.key(VK_SHIFT) : *held == 'c' ? world.press(VK_CONTROL) : world.key(*held);
        const Vec4 force = world.forceOfStep();
        // Turned by 90 degrees, ahead is +x and the right is -z.
        EXPECT_NEAR(force.x, rows[i].ahead, 1e-4f);
        EXPECT_NEAR(force.z, -rows[i].right, 1e-4f);
        EXPECT_EQ(force.y, 0.f);
        EXPECT_FLOAT_EQ(world.body->getDamping(), rows[i].damping);
    }
}

TEST(Player, ReleasedKeysAndOtherOnesMoveNothing)
{
    PlayerWorld world;
    for (const int key : {int('W'), int('A'), int('S'), int('D'), int(VK_SHIFT)})
        world.press(key);
    for (const int key : {int(VK_LEFT), int(VK_UP), int('Q'), int('1')})
        world.key(key);
    EXPECT_EQ(world.forceOfStep(), Vec4());
    EXPECT_FALSE(world.player->isMoving());
    for (int type = 0; type < PlayerComponent::MT_NumDirections; ++type)
        EXPECT_FALSE(world.player->checkMovement(static_cast<PlayerComponent::MovementType>(type)));
    EXPECT_EQ(linesOf("Invalid movement type requested!",
                      [&] { EXPECT_FALSE(world.player->checkMovement(PlayerComponent::MT_NumDirections)); }),
              1u);
}

TEST(Player, SprintUsesBreathUpGoesOnWithoutAndIsRefusedUntilSomeIsBack)
{
    PlayerWorld world;
    PlayerComponent &player = *world.player;
    world.level.frame();
    world.key('W');
    world.key(VK_SHIFT);
    world.press(VK_CONTROL);
    EXPECT_FALSE(player.isCrouched()) << "who sprints does not crouch";
    EXPECT_TRUE(player.isFatigued()) << "may still sprint";
    world.frames(64);
    EXPECT_NEAR(player.getFatigue(), 1.0, 2 * FRAME);
    world.frames(80);
    const double spent = player.getFatigue();
    EXPECT_FALSE(player.isFatigued());
    EXPECT_GE(spent, 2.0);
    EXPECT_NEAR(world.forceOfStep().z, 7 * 3.5f * 0.6f, 1e-3f);
    EXPECT_EQ(player.getFatigue(), spent) << "an exhausted sprint costs nothing";

    world.key(VK_SHIFT, false);
    world.frames(8);
    EXPECT_NEAR(player.getFatigue(), spent - 8 * FRAME * 2.0 / 2.7, 1e-6);
    world.key(VK_SHIFT);
    EXPECT_FALSE(player.isSprinting()) << "less than a quarter of a second is left";
    world.frames(64);
    EXPECT_FALSE(player.isSprinting()) << "held, it stays off";
    world.key(VK_SHIFT, false);
    world.key(VK_SHIFT);
    EXPECT_TRUE(player.isSprinting());

    player.setFatigue(1.76f);
    world.key(VK_SHIFT, false);
    world.press(VK_CONTROL);
    EXPECT_TRUE(player.isCrouched());
    world.key(VK_SHIFT);
    EXPECT_FALSE(player.isCrouched()) << "refused, the sprint still stands the player up";
    EXPECT_FALSE(player.isSprinting());
}

TEST(Player, LookingUpOrDownSlowsNothingAndPitchStopsAtTheLimit)
{
    PlayerWorld world;
    world.moveMouse(0, 20);
    world.moveMouse(0, 20);
    world.level.frame();
    EXPECT_NEAR(world.player->getRotationLimiter(), 40.f / 800 * 12, 1e-5f) << "motions add up";

    world.moveMouse(0, 800);
    world.frames(2);
    EXPECT_FLOAT_EQ(world.player->getRotationLimiter(), PI / 2);
    const Vec4 down = world.eyes->getOrientation().generateRotation().getColumn(2);
    EXPECT_LT(down.y, -1 + 1e-5f);
    world.moveMouse(0, -4000);
    world.frames(2);
    const Vec4 up = world.eyes->getOrientation().generateRotation().getColumn(2);
    EXPECT_FLOAT_EQ(world.player->getRotationLimiter(), -PI / 2);
    EXPECT_GT(up.y, 1 - 1e-5f);
    world.key('W');
    EXPECT_NEAR(world.forceOfStep().z, 7.f, 1e-4f);
}

TEST(Player, ViewPitchesAboutItsOwnSideAtEveryHeading)
{
    for (const float heading : {0.f, PI / 2, PI, -PI / 3})
    {
        PlayerWorld world;
        world.place->setOrientation(Quaternion::fromAxisAngle(Vec4(0, 1, 0, 0), heading));
        world.moveMouse(0, 40); // 0.6 radians down
        world.frames(2);
        const Matrix4 axes = world.eyes->getOrientation().generateRotation();
        EXPECT_NEAR(axes.getColumn(0).y, 0.f, 1e-5f) << "no roll at " << heading;
        EXPECT_NEAR(axes.getColumn(2).y, -std::sin(0.6f), 1e-4f) << heading;
    }
}

TEST(Player, MouseTurnsTheBodyAndAStillMouseEndsAllSpin)
{
    PlayerWorld world;
    world.moveMouse(8, 0); // 0.12 radians
    world.level.frame();
    const Vec4 ahead = world.place->getOrientation().generateRotation().getColumn(2);
    EXPECT_NEAR(std::atan2(ahead.x, ahead.z), 0.12f, 1e-3f);
    world.body->setAngularVelocity(Vec4(0, 3, 0, 0));
    world.level.frame();
    EXPECT_EQ(world.body->getAngularVelocity(), Vec4());

    world.body->setInvert(SCS("true"));
    world.moveMouse(0, 8);
    world.level.frame();
    EXPECT_NEAR(world.player->getRotationLimiter(), -0.12f, 1e-4f) << "the axis is turned round";
}

TEST(Player, InputThatIsOffStopsTheBodyAndForgetsTheMouseButKeepsHeldKeys)
{
    PlayerWorld world;
    world.key('W');
    world.frames(10);
    EXPECT_GT(world.body->getVelocity().z, 0.5f);
    world.moveMouse(40, 40);
    world.player->setUseInput(false);
    EXPECT_EQ(world.body->getVelocity(), Vec4());
    world.frames(3);
    EXPECT_NEAR(world.body->getVelocity().z, 0.f, 1e-6f);
    EXPECT_EQ(world.player->getRotationLimiter(), 0.f);
    world.player->setUseInput(true);
    EXPECT_GT(world.forceOfStep().z, 6.f);
}

namespace
{
/// Something that lies in the map and can be picked up as a flashlight.
Handle<PhysicsComponent> flashlightIn(PlayerWorld &world)
{
    const Handle<Entity> thing = world.level.entity("torch", world.map);
    world.level.transform(thing, Vec4(0, 1, 1, 1));
    auto volume = world.level.component<BoundingVolume>(thing, "boundingVolume").lookup();
    volume->setVolumeType(BoundingVolume::BV_BOX);
    volume->setInteract(true);
    world.level.component<TransformOffsetComponent>(thing, "parentFollower");
    return world.level.component<RigidBody>(thing, "physics");
}
} // namespace

TEST(Player, FlashlightIsTakenIntoTheHandOnceAndForGood)
{
    PlayerWorld world;
    world.press('F');
    EXPECT_FALSE(world.player->isFlashlightOn()) << "there is none yet";
    world.player->setAudioSanity(50);
    world.frames(3);
    EXPECT_EQ(world.player->getAudioSanity(), 50.f) << "the mind counts from the flashlight on";

    const Handle<PhysicsComponent> thing = flashlightIn(world), second = flashlightIn(world);
    const Handle<Object> entity = thing.lookup()->getParent();
    world.player->pickupFlashlight(thing);
    world.player->pickupFlashlight(second);
    EXPECT_TRUE(world.player->getHasFlashlight());
    EXPECT_TRUE(world.player->isFlashlightOn());
    EXPECT_EQ(world.player->getCurrBatteryTimeLeft(), 120.0);
    EXPECT_EQ(entity.lookup()->getParent(), Handle<Object>(world.camera));
    EXPECT_STREQ(entity.lookup()->getName().toCString(), "flashlight");
    world.frames(2);
    EXPECT_FALSE(thing.isValid()) << "nothing moves it any more";
    EXPECT_TRUE(second.isValid());
    const Handle<Entity> held = handle_cast<Entity>(entity);
    const auto volume = handle_cast<BoundingVolume>(held.lookup()->getComponent(SCS("boundingVolume"))).lookup();
    EXPECT_EQ(volume->getVolumeType(), BoundingVolume::BV_NONE);
    const auto at = handle_cast<TransformComponent>(held.lookup()->getComponent(SCS("transform"))).lookup();
    const Vec4 inHand = at->getPosition() - world.eyes->getPosition();
    EXPECT_NEAR(inHand.x, 0.15f, 1e-5f);
    EXPECT_NEAR(inHand.y, -0.1f, 1e-5f);
    EXPECT_NEAR(inHand.z, 0.25f, 1e-5f);
    EXPECT_TRUE(world.body->getFlashlightStatus());
}

TEST(Player, BatteriesDrainDieAndAreChangedInTheirOrder)
{
    PlayerWorld world;
    PlayerComponent &player = *world.player;
    player.setBatteryLifetime(10 * FRAME);
    player.setBatteryRechargeTime(4 * FRAME);
    world.level.frame();
    player.pickupFlashlight(flashlightIn(world));
    world.frames(4);
    EXPECT_NEAR(player.getCurrBatteryTimeLeft(), 6 * FRAME, 1e-9);
    world.press('F');
    world.frames(4);
    EXPECT_NEAR(player.getCurrBatteryTimeLeft(), 6 * FRAME, 1e-9) << "off, it lasts";
    world.press('F');
    world.frames(7);
    EXPECT_FALSE(player.isFlashlightOn()) << "dead, and there is no other one";
    world.press('F');
    EXPECT_TRUE(player.isFlashlightOn());
    world.level.frame();
    EXPECT_FALSE(player.isFlashlightOn()) << "the next frame turns it off again";

    player.addBattery();
    player.addBattery();
    EXPECT_EQ(player.getBatteries(), 2u);
    world.press('R');
    world.press('R');
    EXPECT_EQ(player.getBatteries(), 1u) << "one at a time";
    EXPECT_TRUE(player.isFlashlightOn());
    EXPECT_TRUE(player.isCharging());
    world.level.frame();
    EXPECT_NEAR(player.getCurrBatteryTimeLeft(), 2.5 * FRAME, 1e-9) << "it fills at lifetime by time of change";
    world.frames(4);
    EXPECT_FALSE(player.isCharging());
    EXPECT_NEAR(player.getCurrBatteryTimeLeft(), 10 * FRAME, 1e-9);
    world.frames(11);
    EXPECT_TRUE(player.isCharging()) << "a dead battery is replaced by a spare one";
    EXPECT_TRUE(player.isFlashlightOn());
    EXPECT_EQ(player.getBatteries(), 0u);
}

TEST(Player, MindFollowsLightFlashlightAndBlobAndStaysWithinItsRange)
{
    struct Row
    {
        float before, light;
        bool lit, blob;
        float rate;
    };
    const Row rows[] = {{50, 0, false, false, 0},   {50, 0, true, false, 0.9f},   {50, 2, false, false, 1},
                        {50, 2, true, true, -2.1f}, {50, -3, false, true, -5.5f}, {100, 5, true, false, 0},
                        {0, 0, false, true, 0}};
    for (std::size_t i = 0; i < std::size(rows); ++i)
    {
        SCOPED_TRACE(report(i, ""));
        PlayerWorld world;
        PlayerComponent &player = *world.player;
        player.pickupFlashlight(flashlightIn(world));
        world.level.frame();
        player.setFlashlightOn(rows[i].lit);
        player.setAudioSanity(rows[i].before);
        player.setLightSanityInfluence(rows[i].light);
        player.setBlobColliding(rows[i].blob);
        world.level.frame();
        EXPECT_NEAR(player.getAudioSanity(), rows[i].before + rows[i].rate / 64, 1e-4f);
        EXPECT_EQ(player.getLightSanityInfluence(), 0.f);
    }
}

TEST(Player, FrameWalksBeforeItTurnsAndMindsTheLightBeforeItSpendsTheBattery)
{
    PlayerWorld world;
    PlayerComponent &player = *world.player;
    world.level.frame();
    world.key('W');
    world.moveMouse(8, 0);
    const Vec4 force = world.forceOfStep();
    EXPECT_FLOAT_EQ(force.x, 0.f) << "ahead as it was before this frame's turn";
    EXPECT_GT(force.z, 0.f);
    EXPECT_NE(world.place->getOrientation(), Quaternion());

    player.pickupFlashlight(flashlightIn(world));
    player.setCurrBatteryTimeLeft(0.0);
    player.setAudioSanity(50);
    for (int frame = 0; frame < 2; ++frame)
    {
        world.level.frame();
        EXPECT_FALSE(player.isFlashlightOn());
        EXPECT_NEAR(player.getAudioSanity(), 50 + 0.9f / 64, 1e-4f) << "the light that dies has done its last good";
    }
}

TEST(Player, ViewNarrowsBySmoothStepsInItsRangeOnly)
{
    PlayerWorld world;
    PlayerComponent &player = *world.player;
    const auto valueAt = [&](float mind)
    {
        player.setAudioSanity(mind);
        return player.getSanityValue(0.2f, 0.7f, 0, 100);
    };
    const float s = 0.5f * 0.570796f + 1;
    EXPECT_EQ(valueAt(0), 0.f);
    EXPECT_EQ(valueAt(100), 1.f);
    EXPECT_NEAR(valueAt(20), 0.2f / s, 1e-5f);
    EXPECT_NEAR(valueAt(45), PI / (2 * s) * 0.25f + 0.2f / s, 1e-5f);
    EXPECT_NEAR(valueAt(85), 0.3f / s * std::sin(PI / 4) + (1 - 0.3f / s), 1e-5f);
    for (float mind = 1; mind < 99; mind += 1) // no step and no kink
    {
        const float before = valueAt(mind - 1), here = valueAt(mind), behind = valueAt(mind + 1);
        EXPECT_GT(here, before);
        EXPECT_LT(std::abs((behind - here) - (here - before)), 0.002f) << mind;
    }

    player.pickupFlashlight(flashlightIn(world));
    const auto viewAt = [&](float mind)
    {
        world.view->setVerticalFieldOfViewAngle(1.f);
        player.setAudioSanity(mind);
        player.setFlashlightOn(false);
        world.level.frame();
        return world.view->getVerticalFieldOfViewAngle() * 180 / PI;
    };
    const float untouched = 180 / PI;
    EXPECT_NEAR(viewAt(60.001f), 70.f, 0.01f);
    EXPECT_NEAR(viewAt(94.999f), 45.f, 0.01f);
    for (const float mind : {96.f, 60.f, 50.f, 0.f})
        EXPECT_NEAR(viewAt(mind), untouched, 1e-3f) << mind;
}

TEST(Player, PointsAtWhatCanBeUsedWithinReachAndUsesIt)
{
    PlayerWorld world;
    const Handle<Entity> door = world.level.entity("door", world.map);
    // The front of the body is 0.25 m before the eyes, and the door's face 0.1 m before its middle.
    TransformComponent &at = *world.level.transform(door, Vec4(0, 1.5f, 2.3f, 1)).lookup();
    auto volume = world.level.component<BoundingVolume>(door, "boundingVolume").lookup();
    volume->setHitBox(Vec4(4, 4, 0.2f, 0));
    volume->setVolumeType(BoundingVolume::BV_DOOR);
    auto leaf = world.level.component<DoorPhysics>(door, "physics").lookup();
    leaf->onLoadComplete();
    world.frames(2);
    EXPECT_FALSE(world.player->getInteractor().isValid()) << "not everything can be used";
    volume->setInteractFunc(leaf->bind(SCS("interact")));
    world.frames(1);
    EXPECT_EQ(world.player->getInteractor(), getHandle(volume.ptr));
    const Handle<Entity> wall = world.level.entity("wall", world.map);
    world.level.transform(wall, Vec4(0, 1.5f, 1.5f, 1));
    auto plaster = world.level.component<BoundingVolume>(wall, "boundingVolume").lookup();
    plaster->setHitBox(Vec4(4, 4, 0.2f, 0));
    plaster->setVolumeType(BoundingVolume::BV_WALL);
    world.level.component<WallPhysics>(wall, "physics");
    world.frames(1);
    EXPECT_EQ(world.player->getInteractor(), getHandle(volume.ptr)) << "what cannot be used is reached past";
    world.player->setReachesThrough(false);
    world.frames(1);
    EXPECT_FALSE(world.player->getInteractor().isValid()) << "unless the player is one of flesh";
    wall.lookup()->murder();
    at.setPosition(Vec4(0, 1.5f, 2.4f, 1));
    world.frames(2);
    EXPECT_FALSE(world.player->getInteractor().isValid()) << "the reach is 2 m";
    world.press('E');
    EXPECT_FALSE(leaf->getOpen());
    at.setPosition(Vec4(0, 1.5f, 2.3f, 1));
    world.frames(2);
    for (const int use : {int('E'), int(VK_SPACE), 0})
    {
        const bool before = leaf->getOpen();
        if (use)
            world.press(use);
        else
            sendEngineMessage(MouseDownMessage, 1u, 0.f, 0.f);
        EXPECT_NE(leaf->getOpen(), before);
    }
}

TEST(Player, EachMissingPartIsToldOnceAndTheRestGoesOn)
{
    for (const char *missing : {"transform", "physics", "boundingVolume", "camera", "parentFollower", "viewer"})
    {
        SCOPED_TRACE(missing);
        PlayerWorld world({missing});
        PlayerComponent &player = *world.player;
        const std::size_t lines = linesOf(
            "has no ",
            [&]
            {
                player.pickupFlashlight(flashlightIn(world));
                player.addBattery();
                player.setAudioSanity(80);
                for (const int key : {int('W'), int('D'), int(VK_SHIFT), int(VK_CONTROL), int('E'), int('F'), int('R')})
                    world.press(key);
                world.key('W');
                world.moveMouse(10, 10);
                player.setUseInput(false);
                player.setUseInput(true);
                player.setFlashlightOn(true);
                player.setAudioSanity(80);
                world.frames(5);
            });
        EXPECT_GT(lines, 0u);
        EXPECT_EQ(linesOf("has no ", [&] { world.frames(5); }), 0u) << "each is told once";
        EXPECT_NEAR(player.getCurrBatteryTimeLeft(), 120.0, 1.0);
    }
}

TEST(Player, SettingsThatMeanNothingAreRefused)
{
    PlayerWorld world;
    PlayerComponent &player = *world.player;
    const float nan = std::numeric_limits<float>::quiet_NaN(), endless = std::numeric_limits<float>::infinity();
    for (const float bad : {nan, endless, -endless})
    {
        player.setMovementSpeed(bad);
        player.setSprintMultiplier(bad);
        player.setMouseSensitivity(bad);
        player.setStationaryDamping(bad);
        player.setSprintLength(static_cast<double>(bad));
        player.setSprintRecoveryTime(static_cast<double>(bad));
        player.setBatteryRechargeTime(static_cast<double>(bad));
        player.setFatigue(bad);
        player.setSanity(bad);
        player.setLightSanityInfluence(bad);
        player.handleMouseMessage(nullptr, bad, 0);
        player.handleMouseMessage(nullptr, 0, bad);
    }
    player.setSprintRecoveryTime(0);
    player.setMobileDamping(1.5f);
    world.key('W');
    EXPECT_NEAR(world.forceOfStep().z, 7, 1e-4f);
    EXPECT_EQ(player.getSprintRecoveryTime(), 2.7);
    EXPECT_FLOAT_EQ(world.body->getDamping(), 0.2f);
    EXPECT_EQ(player.getSanity(), 100.f);
    player.handleMouseMessage(nullptr, 1e38f, 1e38f);
    world.frames(3);
    EXPECT_TRUE(std::isfinite(world.place->getOrientation().r));
    EXPECT_TRUE(std::isfinite(world.eyes->getOrientation().r));
}

TEST(PlayerBody, IsTurnedByNoContactAndDoesNotMoveWhileItDies)
{
    PlayerWorld world;
    Matrix4 zero;
    zero.zero();
    zero[3][3] = 1;
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
        {
            EXPECT_EQ(world.body->getInverseInertia()[row][column], zero[row][column]);
            EXPECT_EQ(world.body->getInverseInertiaWorld()[row][column], zero[row][column]);
        }
    world.level.frame();
    world.body->setDead(true);
    world.key('W');
    world.frames(20);
    EXPECT_EQ(world.place->getPosition().z, 0.f);
    world.body->setDead(false);
    world.level.frame();
    EXPECT_LT(world.body->getVelocity().z, 7.f / 64 * 1.01f) << "the forces of twenty frames are forgotten";
}

TEST(PlayerBody, EndsAGameThatWasWonWithoutAnEnd)
{
    EXPECT_EXIT(
        {
            PlayerWorld world;
            world.body->setWon(true);
            world.level.frame();
        },
        testing::ExitedWithCode(1), "PhysicsComponent.*216.*Whoops!");
}

TEST(PlayerBody, TakesTwoTextsForTheMouseAndReportsOthers)
{
    PlayerWorld world;
    world.body->setInvert(SCS("true"));
    EXPECT_EQ(world.body->getVerticalSign(), -1.f);
    EXPECT_EQ(linesOf("sideways is invalid", [&] { world.body->setInvert(SCS("sideways")); }), 1u);
    EXPECT_EQ(world.body->getVerticalSign(), -1.f);
    world.body->setInvert(SCS("false"));
    EXPECT_EQ(world.body->getVerticalSign(), 1.f);
}

TEST(PlayerBody, IsToldOfShadowsTriggersAndDoorsUntilItsNextStep)
{
    PlayerWorld world;
    const auto boxed = [&](const char *name, BoundingVolume::VolumeType type, Vec4 at)
    {
        const Handle<Entity> entity = world.level.entity(name, world.map);
        world.level.transform(entity, at);
        auto volume = world.level.component<BoundingVolume>(entity, "boundingVolume").lookup();
        volume->setVolumeType(type);
        return entity;
    };
    const Handle<Entity> shadow = boxed("shadow", BoundingVolume::BV_SHADOW, Vec4(9, 1, 9, 1));
    world.level.component<RigidBody>(shadow, "physics").lookup()->onLoadComplete();
    const Handle<Entity> plate = boxed("plate", BoundingVolume::BV_WALL, Vec4(0, 1, 0.6f, 1));
    world.level.component<RigidBody>(plate, "physics").lookup()->onLoadComplete();
    handle_cast<BoundingVolume>(plate.lookup()->getComponent(SCS("boundingVolume"))).lookup()->setTrigger(true);
    const Handle<Entity> gate = boxed("gate", BoundingVolume::BV_DOOR, Vec4(5, 1, 5, 1));
    auto leaf = world.level.component<DoorPhysics>(gate, "physics").lookup();
    leaf->onLoadComplete();
    world.body->addDoor(getHandle(leaf.ptr), true);
    world.frames(2);
    EXPECT_EQ(world.body->getShadowList().size(), 1u);
    ASSERT_EQ(world.body->countTouchedTriggers(), 1);
    EXPECT_GT(world.body->getTouchedTriggers()[0].depth, 0.05f);
    EXPECT_TRUE(leaf->getOpen());
    EXPECT_NEAR(world.place->getPosition().z, 0.f, 1e-5f) << "a trigger does not push";
}

TEST(PlayerBody, OfASecondPlayerIsABodyLikeOthers)
{
    PlayerWorld world;
    const Handle<Entity> other = world.level.entity("Player");
    world.level.transform(other, Vec4(5, 1, 5, 1));
    world.level.component<BoundingVolume>(other, "boundingVolume").lookup()->setVolumeType(BoundingVolume::BV_PLAYER);
    auto body = world.level.component<PlayerPhysics>(other, "physics").lookup();
    auto mind = world.level.component<PlayerComponent>(other, "player").lookup();
    EXPECT_EQ(linesOf("is a second player", [&] { body->onLoadComplete(); }), 1u);
    mind->onLoadComplete();
    world.key('W');
    world.frames(20);
    EXPECT_GT(world.place->getPosition().z, 0.2f);
    EXPECT_TRUE(mind->isMoving());
    world.entity.lookup()->murder();
    world.frames(3);
    world.press('E');
    EXPECT_GT(body->getVelocity().z, 0.f);
}

TEST(PlayerBody, GoesTheSameWayAtEveryFrameRateInPiecesOfEqualLength)
{
    float ends[4];
    int at = 0;
    for (const int rate : {30, 60, 120, 240})
    {
        PlayerWorld world;
        world.body->setLongestStep(1.f / 240);
        world.player->setMobileDamping(0.02f);
        for (int frame = 0; frame < rate * 3; ++frame)
        {
            frame == 0 ? world.key('W') : frame == rate * 2 ? world.key('W', false) : void();
            world.player->doFrame();
            world.body->doFrame(1.0 / rate);
        }
        ends[at++] = world.place->getPosition().z;
    }
    EXPECT_GT(ends[0], 3.f);
    for (const float end : ends)
        EXPECT_NEAR(end, ends[0], 1e-3f);
}

TEST(Player, StepsAllocateNothing)
{
    PlayerWorld world;
    world.player->pickupFlashlight(flashlightIn(world));
    world.key('W');
    world.key(VK_SHIFT);
    world.moveMouse(4, 4);
    world.frames(5);
    EXPECT_EQ(allocationsOf([&] { world.level.frame(); }, 10), 0u);
}
