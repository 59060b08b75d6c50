#include "gameplay/PlayerWorld.h"

#include "gameplay/light/ActDisplayHUD.h"

#include "ai/nodes/BTAction.h"
#include "ai/trees/BTComponent.h"
#include "ai/trees/BTLib.h"
#include "ai/trees/TreeText.h"

#include <gtest/gtest.h>

#include <string>

TEST(PlayerTrees, HaveTheseChildrenInTheOrderOfTheirTicks)
{
    const std::pair<const char *, const char *> trees[] = {
        {"PlayerWalk", "ParallelSequence: Action ActPlaySounds, Action ActTakeFootstep"},
        {"Flashlight",
         "ParallelSequence: Action ActFlashlightFlicker, Condition DoesPlayerHaveFlashlight, Action ActFlashlightOn, "
         "Condition DoesPlayerHaveFlashlight, Action ActEquipmentBob"},
        {"PlayerTree",
         "ParallelSequence: Tree PlayerWalk, Action ActPlayerHeadbob, Action ActPlayerCrouch, Action ActPlayerLean"},
        {"HUD", "Sequence: Action ActDisplayHUD"},
        {"BlobTree", "Sequence: Action ActBlobSounds"},
        {"MannequinTree", "Sequence: Action ActWatchPlayer"},
        {"BatteryMeter",
         "ParallelSequence: Action ActDisplayHUD, Condition DoesPlayerHaveFlashlight, Action ActUpdateBatteryMeter"},
    };
    TestLevel level;
    BTLib &library = getSystemDeref<BTLib>();
    for (const auto &[name, expected] : trees)
    {
        const ErrorReturn<Handle<BTTask>> copy = library.BTLookUp(String::copyFrom(name));
        ASSERT_TRUE(copy.succeeded()) << name;
        std::string found = taskLabel(*copy.value.lookup()).toCString();
        for (std::size_t i = 0; i < copy.value.lookup()->getTaskCount(); ++i)
            found += std::string(i ? ", " : ": ") + taskLabel(*copy.value.lookup()->getTasks()[i].lookup()).toCString();
        EXPECT_EQ(found, expected);
        copy.value.lookup()->DeleteTree();
    }
}

TEST(PlayerTrees, WhatStandsBehindTheConditionWaitsForTheFlashlight)
{
    PlayerWorld world;
    const Handle<Entity> meter = world.level.entity("BatteryMeter");
    auto bar = world.level.transform(meter).lookup();
    auto mind = world.level.component<BTComponent>(meter, "behaviors").lookup();
    // Without its own "hud" the first action says so and goes by; the condition is asked behind it.
    mind->addBehavior(SCS("BatteryMeter"));
    mind->setDefaultBehavior(SCS("BatteryMeter"));
    mind->onLoadComplete();
    world.player->setBatteryLifetime(1);
    world.frames(32);
    EXPECT_EQ(bar->getScale().x, 1.f);
    const Handle<Entity> torch = world.level.entity("torch", world.map);
    world.player->pickupFlashlight(world.level.component<RigidBody>(torch, "physics"));
    world.frames(32);
    EXPECT_NEAR(bar->getScale().x, 0.5f, 0.05f);
}
