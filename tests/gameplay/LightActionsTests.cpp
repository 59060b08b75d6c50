#include "gameplay/PlayerWorld.h"

#include "gameplay/light/ActDisplayHUD.h"
#include "gameplay/light/ActFlashlightFlicker.h"
#include "gameplay/light/ActFlashlightOn.h"
#include "gameplay/light/ActLightFlicker.h"
#include "gameplay/light/ActPulsingLight.h"
#include "gameplay/light/ActUpdateBatteryMeter.h"
#include "gameplay/light/HudComponent.h"
#include "gameplay/player/PlayerMessages.h"

#include "object/python/PythonCalls.h"
#include "platform/input/EngineMessage.h"
#include "port/win32/VirtualKeys.h"
#include "rendering/drawn/LightComponent.h"

#include "foundation/Random.h"

#include <gtest/gtest.h>

#include <cmath>

namespace
{

constexpr double FRAME = 1.0 / 64;

/// A player with a flashlight in the hand, whose light is the child "flashlight".
class Torch : public testing::Test
{
protected:
    Torch()
    {
        initPython(); // the manager of lights has a script build the viewer of the screen
        frame();
        torch = world.level.entity("torch", world.map);
        world.level.transform(torch);
        const Handle<Entity> bulb = world.level.entity("flashlight", torch);
        world.level.transform(bulb);
        light = world.level.component<LightComponent>(bulb, "graphics2").lookup().ptr;
        world.player->setBatteryLifetime(4);
        world.player->pickupFlashlight(world.level.component<RigidBody>(torch, "physics"));
    }

    template <class Act>
    Act &act(Handle<Entity> entity = Handle<Entity>())
    {
        const Handle<Act> made = construct<Act>(defaultAllocationCategory);
        made.lookup()->setParent(entity.isValid() ? entity : torch).ignoreError();
        return *made.lookup();
    }
    /// The part of a frame that counts here; drawing is left out.
    void frame()
    {
        world.level.coordinator().getTimer(SCS("master")).newFrame(TestLevel::FRAME_TICKS);
        world.player->doFrame();
        world.body->doFrame(FRAME);
    }
    void run(Action &action, double seconds)
    {
        for (int step = 0; step < static_cast<int>(seconds / FRAME + 0.5); ++step)
        {
            frame();
            action.update(FRAME);
        }
    }
    void run(SimpleComponent &component, int frames)
    {
        while (frames-- > 0)
        {
            frame();
            component.doFrame();
        }
    }
    static float brightness(const LightComponent &light) { return light.getDiffuseColor().magnitude(); }

    PlayerWorld world;
    Handle<Entity> torch;
    LightComponent *light = nullptr;
};

} // namespace

TEST_F(Torch, LightFollowsThePlayersSwitchAndABatteryThatDies)
{
    auto &on = act<ActFlashlightOn>();
    on.update(FRAME);
    const float full = brightness(*light);
    EXPECT_TRUE(light->getCastShadows());
    EXPECT_TRUE(light->getVisible());
    world.press('F');
    run(on, 0.1);
    EXPECT_FALSE(light->getVisible());
    world.press('F');
    on.update(FRAME);
    EXPECT_TRUE(light->getVisible());
    on.update(FRAME);
    EXPECT_LT(brightness(*light), full * 0.5f) << "it comes on over a moment";
    run(on, 0.5);
    EXPECT_NEAR(brightness(*light), full, 1e-4f);

    run(on, 3.2);
    const Vec4 ending = light->getDiffuseColor();
    EXPECT_LT(ending.b / ending.r, 0.81f / 0.9f * 0.8f) << "it browns at its end";
    EXPECT_LT(ending.magnitude(), 0.4f * full) << "and dies away in its last seconds";
    EXPECT_LT(light->getSpecularColor().r, 0.08f) << "on what is polished, too";
    run(on, 1.0);
    EXPECT_FALSE(light->getVisible());
    world.press('F');
    on.update(FRAME);
    EXPECT_FALSE(light->getVisible()) << "a dead battery is dark, however the switch stands";
    world.player->addBattery();
    world.press('R');
    run(on, 0.2);
    EXPECT_TRUE(light->getVisible());
}

TEST_F(Torch, FiveLevelsOfWhatIsLeftInterruptTheLightMoreAndMore)
{
    struct Row
    {
        unsigned left;
        ActFlashlightFlicker::AmmoLevel level;
    };
    typedef ActFlashlightFlicker F;
    const Row rows[] = {{100, F::AL_MAX}, {81, F::AL_MAX},  {80, F::AL_HIGH},        {51, F::AL_HIGH},
                        {50, F::AL_MID},  {21, F::AL_MID},  {20, F::AL_LOW},         {6, F::AL_LOW},
                        {5, F::AL_EMPTY}, {0, F::AL_EMPTY}, {4000000000u, F::AL_MAX}};
    for (const Row &row : rows)
        EXPECT_EQ(F::levelOf(row.left), row.level) << row.left;

    seedEngineRand(3);
    world.player->setBatteryLifetime(4000);
    world.player->addBattery();
    world.press('R');
    int darkBefore = -1;
    for (const unsigned left : {100u, 70u, 40u, 15u, 2u})
    {
        auto &flicker = act<ActFlashlightFlicker>();
        flicker.handleAmmoMessage(nullptr, left);
        EXPECT_EQ(flicker.getFlickering(), left != 100);
        int turns = 0;
        bool lit = true;
        for (int step = 0; step < 64 * 90; ++step)
        {
            frame();
            flicker.update(FRAME);
            turns += lit && !light->getVisible();
            lit = light->getVisible();
        }
        EXPECT_GT(turns, darkBefore) << left;
        darkBefore = turns;
        light->setVisible(true);
    }
    EXPECT_GT(darkBefore, 60);
}

TEST_F(Torch, FlickerFollowsTheBatteryAndStandsStillWhileTheFlashlightIsOff)
{
    auto &flicker = act<ActFlashlightFlicker>();
    run(flicker, 0.2);
    EXPECT_FALSE(flicker.getFlickering());
    run(flicker, 2.5);
    EXPECT_TRUE(flicker.getFlickering());
    EXPECT_EQ(flicker.getTimes().x, 5.f) << "less than half is left";
    world.press('F');
    frame();
    const double before = flicker.getElapsedTime();
    run(flicker, 0.5);
    EXPECT_EQ(flicker.getElapsedTime(), before);
}

TEST_F(Torch, MeterShrinksAlongXAndIsLeftAloneWhileItIsOverfull)
{
    const Handle<Entity> bar = world.level.entity("bar");
    auto place = world.level.transform(bar).lookup();
    place->setScale(Vec4(0.2f, 0.02f, 1, 0));
    auto &meter = act<ActUpdateBatteryMeter>(bar);
    meter.update(FRAME);
    EXPECT_EQ(place->getScale(), Vec4(0.2f, 0.02f, 1, 0));
    run(meter, 1);
    EXPECT_NEAR(place->getScale().x, 0.15f, 1e-4f);
    EXPECT_EQ(place->getScale().y, 0.02f);
    meter.terminate();
    run(meter, 1);
    EXPECT_NEAR(place->getScale().x, 0.1f, 1e-4f) << "the whole is remembered";
    world.player->setBatteryLifetime(0.5);
    run(meter, FRAME);
    EXPECT_NEAR(place->getScale().x, 0.1f, 1e-4f);
}

TEST_F(Torch, HudIsSeenForFourSecondsFromTheLastMessage)
{
    const Handle<Entity> screen = world.level.entity("Hud");
    auto hud = world.level.component<HudComponent>(screen, "hud").lookup();
    const Handle<Entity> lamp = world.level.entity("lamp", world.level.entity("part", screen));
    auto drawn = world.level.component<LightComponent>(lamp, "graphics2").lookup();
    auto &show = act<ActDisplayHUD>(screen);
    show.update(FRAME);
    EXPECT_FALSE(drawn->getVisible());
    sendEngineMessage(DisplayHUDMessage);
    EXPECT_TRUE(drawn->getVisible());
    run(show, 3);
    sendEngineMessage(DisplayHUDMessage);
    run(show, 3);
    show.terminate();
    EXPECT_TRUE(drawn->getVisible()) << "the time begins anew";
    run(show, 1.1);
    EXPECT_FALSE(drawn->getVisible());
    world.press('F');
    EXPECT_TRUE(hud->getVisible());
    run(show, 5);
    world.press('R');
    EXPECT_TRUE(hud->getVisible()) << "without a battery, too";
    run(show, 5);
    world.press(VK_TAB);
    EXPECT_TRUE(hud->getVisible());
    world.body->setHudDisplayed(0.1);
    run(show, 0.2);
    EXPECT_FALSE(hud->getVisible());
}

TEST_F(Torch, PulsingLightSwellsAndFadesWhileItIsSeen)
{
    const Handle<Entity> lamp = world.level.entity("lamp", world.map);
    auto bulb = world.level.component<LightComponent>(lamp, "graphics2").lookup();
    auto pulse = world.level.component<ActPulsingLight>(lamp, "behaviors").lookup();
    pulse->setPulseTime(0.5);
    pulse->setLightColor(Vec4(1, 0.5f, 0, 0));
    run(*pulse, 16);
    EXPECT_NEAR(bulb->getDiffuseColor().r, 0.5f, 0.04f);
    EXPECT_NEAR(bulb->getDiffuseColor().g, 0.25f, 0.02f);
    run(*pulse, 16);
    EXPECT_EQ(bulb->getDiffuseColor(), Vec4(1, 0.5f, 0, 0));
    run(*pulse, 16);
    EXPECT_NEAR(bulb->getDiffuseColor().r, 0.5f, 0.04f);
    bulb->setVisible(false);
    const Vec4 before = bulb->getDiffuseColor();
    run(*pulse, 20);
    EXPECT_EQ(bulb->getDiffuseColor(), before);
    pulse->setPulseTime(0);
    bulb->setVisible(true);
    run(*pulse, 3);
    EXPECT_TRUE(std::isfinite(bulb->getDiffuseColor().r));
}

TEST_F(Torch, LightThatFlickersByChanceKeepsToItsTimes)
{
    const Handle<Entity> lamp = world.level.entity("lamp", world.map);
    auto bulb = world.level.component<LightComponent>(lamp, "graphics2").lookup();
    auto flicker = world.level.component<ActLightFlicker>(lamp, "behaviors").lookup();
    flicker->setMinOnTime(0.25);
    flicker->setMaxOnTime(0.75);
    flicker->setMinOffTime(0.125);
    flicker->setMaxOffTime(0.25);
    flicker->onLoadComplete();
    seedEngineRand(5);
    int turns = 0, since = 0;
    bool lit = true;
    for (int step = 0; step < 64 * 30; ++step)
    {
        run(*flicker, 1);
        ++since;
        if (bulb->getVisible() == lit)
            continue;
        if (turns++ > 0)
        {
            EXPECT_GE(since, lit ? 16 : 8);
            EXPECT_LE(since, lit ? 49 : 17);
        }
        lit = !lit;
        since = 0;
    }
    EXPECT_GT(turns, 50);
}
