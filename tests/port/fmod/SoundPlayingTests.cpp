#include "port/fmod/SoundWorld.h"

#include <gtest/gtest.h>

#include <cmath>

namespace
{

constexpr float QUIET = 0.001F;

/// A steady tone with a place, a short one, and both again without one.
class SoundPlaying : public testing::Test
{
protected:
    SoundPlaying()
    {
        world.tone("hum.wav", 441, 1);
        world.tone("high.wav", 8820, 1);
        world.tone("short.wav", 441, 0.3);
        world.load("category sfx 1\n"
                   "group sfx\n"
                   "event Hum\n mode loop\n fade 0 0.2\n category sfx\n layer a\n sample hum.wav\n"
                   " parameter distance 0 40\n volume 0:1 10:0.1 40:0\n lowpass 0:22000 40:300\n"
                   "event Plain\n mode loop\n category sfx\n layer a\n sample hum.wav\n"
                   "event High\n mode loop\n layer a\n sample high.wav\n parameter distance 0 40\n"
                   " lowpass 0:22000 40:1000\n"
                   "event Short\n layer a\n sample short.wav\n");
        EXPECT_TRUE(world.notices.empty()) << world.notices.front();
    }

    SoundWorld world;
};

} // namespace

TEST_F(SoundPlaying, WhatStandsToTheRightIsHeardOnTheRightWhereverOneLooks)
{
    FMOD::Event &hum = world.play("Hum");
    SoundWorld::place(hum, 3, 0, 0);
    const Heard right = world.render(0.3);
    EXPECT_GT(right.right(), 3 * right.left());

    const FMOD_VECTOR back = {0, 0, -1};
    world.system->set3DListenerAttributes(0, nullptr, nullptr, &back, nullptr);
    world.render(0.1);
    const Heard turned = world.render(0.3);
    EXPECT_GT(turned.left(), 3 * turned.right());

    SoundWorld::place(hum, 0, 0, -3);
    world.render(0.1);
    const Heard ahead = world.render(0.3);
    EXPECT_NEAR(ahead.left(), ahead.right(), 0.05F * ahead.left());
}

TEST_F(SoundPlaying, MonoGivesBothEarsTheSameOfPlacesMusicAndRoomsAndIsTakenBack)
{
    FMOD_REVERB_PROPERTIES hall;
    hall.Room = hall.Reverb = 0;
    hall.DecayTime = 3;
    port::setReverbZones(*world.system, hall, hall, 0);
    FMOD::Event &hum = world.play("Hum");
    SoundWorld::place(hum, 3, 0, 0);
    world.render(0.2);
    port::setMono(*world.system, true);
    world.render(1); // until what the hall had of both sides is gone
    port::setReverbZones(*world.system, hall, hall, 0);
    world.render(6);
    const Heard mono = world.render(0.5);
    EXPECT_GT(mono.level(), 0.02F);
    for (std::size_t i = 0; i < mono.stereo.size(); i += 2)
        ASSERT_NEAR(mono.stereo[i], mono.stereo[i + 1], 2e-3F) << "value " << i;
    port::setMono(*world.system, false);
    world.render(0.2);
    const Heard again = world.render(0.3);
    EXPECT_GT(again.right(), 1.2F * again.left());
}

TEST_F(SoundPlaying, TheCurvesOfDistanceSetLoudnessAndHighEnd)
{
    FMOD::Event &hum = world.play("Hum");
    const float near = world.render(0.5).level();
    SoundWorld::set(hum, "distance", 10);
    world.render(0.1);
    EXPECT_NEAR(world.render(0.5).level() / near, 0.1F, 0.01F);
    SoundWorld::set(hum, "distance", 1000);
    world.render(0.1);
    EXPECT_LT(world.render(0.5).level(), QUIET) << "clamped to the end of its range, where it is silent";
    hum.stop(true);

    FMOD::Event &high = world.play("High");
    const float open = world.render(0.5).at(8820);
    SoundWorld::set(high, "distance", 40);
    world.render(0.1);
    EXPECT_LT(world.render(0.5).at(8820), 0.1F * open);
}

TEST(SoundLowpass, LoudnessFallsByThreeDecibelsAtTheCutOffThatACurveNames)
{
    for (const float hz : {300.0F, 1000.0F, 3000.0F, 5000.0F})
    {
        SoundWorld world;
        world.tone("tone.wav", hz, 1);
        world.load("group sfx\nevent Tone\n mode loop\n layer a\n sample tone.wav\n parameter muffled 0 1\n"
                   " lowpass 0:22000 1:" +
                   std::to_string(hz) + "\n");
        FMOD::Event &tone = world.play("Tone");
        world.render(0.1);
        const float open = world.render(0.5).at(hz);
        SoundWorld::set(tone, "muffled", 1);
        world.render(0.1);
        EXPECT_NEAR(20 * std::log10(world.render(0.5).at(hz) / open), -3, 0.7) << hz;
    }
}

TEST_F(SoundPlaying, OneRoomGoesOverIntoAnother)
{
    FMOD_REVERB_PROPERTIES outside, hall;
    hall.Room = hall.Reverb = 0;
    hall.DecayTime = 3;
    FMOD::Event &hum = world.play("Hum");
    hum.set3DOcclusion(1, 0);
    const auto inside = [&](float share)
    {
        port::setReverbZones(*world.system, outside, hall, share);
        return world.render(2).part(1.5, 0.5).level();
    };
    EXPECT_LT(inside(0), QUIET);
    const float half = inside(0.5F), whole = inside(1);
    EXPECT_NEAR(half / whole, 0.5F, 0.1F);
    // The hall as the first of two goes on where it sounds.
    port::setReverbZones(*world.system, hall, outside, 0);
    EXPECT_NEAR(world.render(0.1).level() / whole, 1, 0.3F);
}

TEST_F(SoundPlaying, ALayerIsHeldBackByItsDelay)
{
    world.load("group sfx\nevent Late\n layer a\n sample hum.wav\n delay 0.5\n");
    world.play("Late");
    EXPECT_EQ(world.render(0.5).level(), 0);
    EXPECT_GT(world.render(0.1).level(), 0.1F);
}

TEST_F(SoundPlaying, AnEventPlaysOnceOrUntilItIsStoppedAndFades)
{
    FMOD::Event &once = world.play("Short");
    FMOD::Event &hum = world.play("Hum");
    world.render(0.25);
    EXPECT_TRUE(SoundWorld::plays(once));
    world.render(0.1);
    EXPECT_FALSE(SoundWorld::plays(once));
    world.render(2);
    EXPECT_TRUE(SoundWorld::plays(hum));
    const float full = world.render(0.2).level();
    hum.stop();
    const Heard fading = world.render(0.2);
    EXPECT_NEAR(fading.part(0.09, 0.02).level(), full / 2, full / 5);
    world.update();
    EXPECT_FALSE(SoundWorld::plays(hum));
    world.render(0.05);
    EXPECT_EQ(world.render(0.2).level(), 0);
}

TEST_F(SoundPlaying, NothingClicksAtStartStopPauseLoopOrANewStart)
{
    FMOD::Event &plain = world.play("Plain");
    Heard all = world.render(1.2);
    const float undisturbed = all.part(0.2, 0.7).largestStep();
    plain.setPaused(true);
    all += world.render(0.21);
    plain.setPaused(false);
    all += world.render(0.3);
    plain.start();
    all += world.render(0.3);
    plain.stop(true);
    all += world.render(0.1);
    plain.start();
    all += world.render(0.33);
    plain.release();
    all += world.render(0.2);
    EXPECT_LT(all.largestStep(), 1.3F * undisturbed);
    EXPECT_EQ(all.part(all.stereo.size() / 2.0 / SoundWorld::RATE - 0.1, 0.1).level(), 0);
}

TEST_F(SoundPlaying, APausedEventStandsStillAndGoesOnWhereItWas)
{
    FMOD::Event &once = world.play("Short");
    world.render(0.15);
    once.setPaused(true);
    world.render(0.05);
    EXPECT_EQ(world.render(2).level(), 0);
    EXPECT_TRUE(SoundWorld::plays(once));
    once.setPaused(false);
    EXPECT_GT(world.render(0.1).level(), 0.1F);
    world.render(0.1);
    EXPECT_FALSE(SoundWorld::plays(once));
}

TEST_F(SoundPlaying, CategoriesCountWithThoseBelowThem)
{
    world.play("Plain");
    FMOD::EventCategory *category = nullptr;
    ASSERT_EQ(world.system->getCategory("sfx", &category), FMOD_OK);
    world.render(0.1);
    const float full = world.render(0.3).level();
    category->setVolume(0.25F);
    world.render(0.1);
    EXPECT_NEAR(world.render(0.3).level() / full, 0.25F, 0.01F);
    category->setPaused(true);
    world.render(0.1);
    EXPECT_EQ(world.render(0.1).level(), 0);
}

TEST_F(SoundPlaying, TheGlobalLowPassTakesTheHighEndOfAllThatIsHeard)
{
    world.play("High");
    world.play("Plain");
    world.render(0.1);
    const Heard open = world.render(0.5);
    FMOD::System *lowLevel = nullptr;
    FMOD::DSP *lowpass = nullptr;
    world.system->getSystemObject(&lowLevel);
    ASSERT_EQ(lowLevel->createDSPByType(FMOD_DSP_TYPE_LOWPASS, &lowpass), FMOD_OK);
    lowpass->setParameter(FMOD_DSP_LOWPASS_CUTOFF, 1000);
    lowpass->setBypass(true);
    lowLevel->addDSP(lowpass, nullptr);
    EXPECT_NEAR(world.render(0.5).at(8820), open.at(8820), 0.01F);
    lowpass->setBypass(false);
    world.render(0.3);
    const Heard muffled = world.render(0.5);
    EXPECT_LT(muffled.at(8820), 0.03F * open.at(8820));
    EXPECT_GT(muffled.at(441), 0.8F * open.at(441));
    lowpass->release();
    world.render(0.3);
    EXPECT_NEAR(world.render(0.5).at(8820), open.at(8820), 0.01F);
}

TEST_F(SoundPlaying, APathMovesMufflesAndDampsAndNoLongerHoldsWhenItIsNotToldAgain)
{
    FMOD::Event &hum = world.play("Hum");
    FMOD::Event &high = world.play("High");
    SoundWorld::place(hum, -3, 0, 0);
    SoundWorld::place(high, -3, 0, 0);
    const Heard direct = world.render(0.3);
    EXPECT_GT(direct.left(), direct.right());
    const port::SoundPath door = {{3, 0, 0}, 0.5F, 500, 1};
    Heard through;
    for (int i = 0; i < 40; ++i)
    {
        port::setSoundPath(hum, door);
        port::setSoundPath(high, door);
        through += world.render(SoundWorld::FRAME);
    }
    through = through.part(0.3, 0.3);
    EXPECT_GT(through.right(), 2 * through.left());
    EXPECT_LT(through.at(8820), 0.02F * direct.at(8820));
    EXPECT_NEAR(through.at(441) / direct.at(441), 0.5F, 0.15F);
    world.render(0.5);
    EXPECT_NEAR(world.render(0.3).at(8820), direct.at(8820), 0.1F * direct.at(8820));
}

TEST_F(SoundPlaying, OcclusionTakesTheDirectSoundAndLeavesTheRooms)
{
    FMOD_REVERB_PROPERTIES hall;
    hall.Room = hall.Reverb = 0;
    hall.DecayTime = 3;
    port::setReverbZones(*world.system, hall, hall, 0);
    FMOD::Event &hum = world.play("Hum");
    hum.set3DOcclusion(1, 0);
    EXPECT_GT(world.render(1).level(), 0.01F);
    hum.set3DOcclusion(1, 1);
    world.render(0.1);
    hum.stop(true);
    const float tail = world.render(0.5).level();
    EXPECT_GT(tail, QUIET) << "a hall goes on sounding";
    EXPECT_LT(world.render(5).part(4.5, 0.5).level(), 0.1F * tail);
}

TEST_F(SoundPlaying, RunsWithOneSeedGiveTheSameValues)
{
    const auto run = []
    {
        SoundWorld other;
        other.tone("a.wav", 500, 0.1);
        other.tone("b.ogg", 700, 0.1);
        other.load("group sfx\nevent Step\n mode loop\n layer a\n sample a.wav\n sample b.ogg 2\n volume 0.5 0.4\n"
                   " pitch 0 4\n delay 0 0.2\n parameter distance 0 10\n volume 0:1 10:0\n");
        FMOD_REVERB_PROPERTIES room;
        room.Room = -1000;
        port::setReverbZones(*other.system, room, room, 0.5F);
        SoundWorld::place(other.play("Step"), 1, 2, 3);
        return other.render(3).stereo;
    };
    const std::vector<float> first = run();
    EXPECT_EQ(first, run());
    EXPECT_GT((Heard{first}.level()), 0.01F);
}

TEST_F(SoundPlaying, AfterItsProjectAnEventIsSilentAndKnowsNothingMore)
{
    FMOD::Event &hum = world.play("Hum");
    world.render(0.2);
    world.project->release();
    EXPECT_EQ(world.render(0.3).part(0.1, 0.2).level(), 0);
    EXPECT_EQ(hum.start(), FMOD_ERR_INVALID_HANDLE);
    EXPECT_EQ(hum.release(), FMOD_OK);
    world.update();
    EXPECT_EQ(world.counters().playing, 0);
}

TEST_F(SoundPlaying, TheLowLevelSystemMayBeReleasedAfterItsEventSystem)
{
    FMOD::System *lowLevel = nullptr;
    world.system->getSystemObject(&lowLevel);
    world.end();
    EXPECT_EQ(lowLevel->release(), FMOD_OK);
}

TEST(SoundOverlays, OfSeveralFoldersWithTheSameSampleTheLastOneIsHeard)
{
    SoundWorld world;
    std::filesystem::create_directory(world.path("one"));
    std::filesystem::create_directory(world.path("two"));
    world.tone("hum.wav", 441, 1);
    world.tone("one/hum.wav", 882, 1);
    world.tone("two/hum.wav", 1764, 1);
    port::setAudioOverlays({world.path("one"), world.path("two")});
    world.load("group sfx\nevent Hum\n mode loop\n layer a\n sample hum.wav\n");
    port::setAudioOverlays({});
    world.play("Hum");
    const Heard heard = world.render(0.3);
    EXPECT_GT(heard.at(1764), 10 * heard.at(882));
    EXPECT_GT(heard.at(1764), 10 * heard.at(441));
}
