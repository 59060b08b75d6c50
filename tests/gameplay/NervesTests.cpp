#include "gameplay/PlayerWorld.h"

#include "gameplay/mind/DreadComponent.h"
#include "gameplay/mind/NervesComponent.h"
#include "platform/sound/SoundComponent.h"
#include "support/AllocationCount.h"

#include <gtest/gtest.h>

#include <cmath>

namespace
{

/// A player with nerves, in a level that nothing lights.
struct NervousWorld : PlayerWorld
{
    NervousWorld()
    {
        level.component<SoundComponent>(entity, "sound");
        nerves = level.component<NervesComponent>(entity, "nerves").lookup().ptr;
        const Handle<Entity> torch = level.entity("torch", map);
        player->pickupFlashlight(level.component<RigidBody>(torch, "physics"));
        player->setFlashlightOn(false);
    }
    /// The nerves' part of some frames.
    void wear(int count)
    {
        while (count-- > 0)
        {
            level.coordinator().getTimer(SCS("master")).newFrame(TestLevel::FRAME_TICKS);
            nerves->doFrame();
        }
    }

    NervesComponent *nerves = nullptr;
};

} // namespace

TEST(Nerves, FrameAllocatesNothingHoweverTheMindIs)
{
    NervousWorld world;
    const Handle<Entity> thing = world.level.entity("thing", world.map);
    world.level.transform(thing, Vec4(0, 1, 3, 1));
    world.level.component<DreadComponent>(thing, "dread");
    for (const float sanity : {100.f, 40.f, 5.f})
    {
        world.player->setSanity(sanity);
        world.nerves->frighten(20, SCS("a test"));
        world.wear(70);
        EXPECT_EQ(allocationsOf([&] { world.wear(64); }), 0u) << sanity;
    }
}

TEST(Nerves, DarknessCountsFromTheFlashlightOnAndABlobCostsMore)
{
    NervousWorld world;
    world.wear(64 * 9);
    EXPECT_NEAR(world.player->getSanity(), 90, 0.2f);
    EXPECT_NEAR(world.player->getLightSanityInfluence(), -200.f / 90, 0.01f);
    world.player->setBlobColliding(true);
    world.wear(64);
    EXPECT_NEAR(world.player->getSanity(), 90 - 4 - 100.f / 90, 0.2f);
    world.player->setBlobColliding(false);
    world.player->setFlashlightOn(true);
    const float before = world.player->getSanity();
    world.wear(64);
    EXPECT_NEAR(world.player->getSanity(), before + 0.9f - 100.f / 90, 0.02f);
}

TEST(Nerves, FrightsThatMeanNothingAreRefused)
{
    NervousWorld world;
    for (const float bad : {NAN, INFINITY, -INFINITY})
        world.nerves->frighten(bad, SCS("nothing"));
    EXPECT_TRUE(world.nerves->getCause().empty());
    world.nerves->frighten(1e9f, SCS("all at once"));
    world.wear(64 * 4);
    EXPECT_EQ(world.player->getSanity(), 0.f);
    EXPECT_NEAR(world.nerves->getFear(), 1, 0.25f);
    EXPECT_EQ(world.nerves->getDulling(), 1.f);
    world.nerves->soothe();
    world.wear(1);
    EXPECT_NEAR(world.player->getSanity(), 100, 0.1f);
    EXPECT_EQ(world.nerves->getDulling(), 0.f);
    EXPECT_LT(world.nerves->getFear(), 0.01f);
}
