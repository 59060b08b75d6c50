#include "port/fmod/SoundWorld.h"
#include "support/AllocationCount.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

namespace
{

class SoundVoices : public testing::Test
{
protected:
    SoundVoices()
    {
        world.tone("hum.wav", 441, 1, 1, 0.02F);
        world.sound("halves.wav", twoHalves());
        world.tone("a.wav", 600, 0.1);
        world.tone("b.wav", 900, 0.1);
        world.tone("c.wav", 1200, 0.1);
        world.load("group sfx\n"
                   "event Hum\n caption \"A hum\" 0.2\n voices 64\n mode loop\n layer a\n sample hum.wav\n"
                   " parameter distance 0 100\n volume 0:1 60:0\n"
                   "event Few\n voices 2\n mode loop\n layer a\n sample hum.wav\n"
                   "event Grave\n priority 0\n voices 64\n mode loop\n layer a\n sample hum.wav\n"
                   "event Halves\n layer a\n sample halves.wav\n"
                   "event Round\n mode loop\n layer a\n sample halves.wav\n"
                   "event Dice\n mode loop\n layer a\n sample a.wav\n sample b.wav\n sample c.wav\n");
        EXPECT_TRUE(world.notices.empty());
    }

    std::vector<FMOD::Event *> hums(int count)
    {
        std::vector<FMOD::Event *> all;
        for (int i = 0; i < count; ++i)
        {
            all.push_back(&world.play("Hum"));
            SoundWorld::set(*all.back(), "distance", static_cast<float>(i) * 0.3F);
        }
        return all;
    }

    SoundWorld world;
};

} // namespace

TEST_F(SoundVoices, OfTwoHundredTheLoudestSixtyFourAreHeardAndAllGoOn)
{
    const auto all = hums(200);
    const Heard first = world.render(0.5);
    EXPECT_EQ(world.counters().playing, 200);
    EXPECT_EQ(world.counters().voices, 64);
    EXPECT_LT(first.largestStep(), 1);
    const std::vector<port::HeardEvent> heard = world.heard();
    ASSERT_EQ(heard.size(), 64u);
    EXPECT_EQ(heard.front().event, all.front());
    EXPECT_GT(heard.front().loudness, heard.back().loudness);
    EXPECT_TRUE(heard.front().placed);
    EXPECT_STREQ(heard.front().caption, "A hum");
    EXPECT_EQ(heard.front().leastCaption, 0.2F);

    SoundWorld::set(*all.back(), "distance", 0);
    world.render(0.1);
    EXPECT_EQ(world.counters().voices, 64);
    EXPECT_EQ(world.counters().stolen, 1);
    bool isHeard = false;
    for (const port::HeardEvent &each : world.heard())
        isHeard = isHeard || each.event == all.back();
    EXPECT_TRUE(isHeard);

    for (FMOD::Event *event : all)
        event->release();
    world.render(0.1);
    EXPECT_EQ(world.render(0.1).level(), 0);
    EXPECT_EQ(world.counters().playing, 0);
}

TEST_F(SoundVoices, OfOneEventNoMoreAreHeardThanItAllowsAndEqualsDoNotTakeTurns)
{
    FMOD::Event &one = world.play("Few"), &two = world.play("Few"), &three = world.play("Few");
    one.setVolume(0.5F);
    two.setVolume(0.52F);
    three.setVolume(0.51F);
    Heard all = world.render(0.3);
    EXPECT_EQ(world.counters().voices, 2);
    for (int i = 0; i < 20; ++i)
    {
        one.setVolume(i % 2 == 0 ? 0.52F : 0.5F);
        all += world.render(0.05);
    }
    EXPECT_EQ(world.counters().stolen, 0);
    const float undisturbed = all.part(0.05, 1).largestStep();
    one.setVolume(1);
    all += world.render(0.3);
    EXPECT_EQ(world.counters().stolen, 1);
    EXPECT_EQ(world.counters().voices, 2);
    EXPECT_LT(all.largestStep(), 2.5F * undisturbed) << "twice as loud, and no click";
}

TEST_F(SoundVoices, WhatMattersIsHeardBeforeWhatIsLouder)
{
    hums(64);
    world.play("Grave").setVolume(0.3F);
    world.render(0.1);
    bool isHeard = false;
    for (const port::HeardEvent &each : world.heard())
        isHeard = isHeard || std::string(each.name) == "Grave";
    EXPECT_TRUE(isHeard);
}

TEST_F(SoundVoices, WhatWasNotHeardComesBackWhereItIsByThen)
{
    FMOD::Event &halves = world.play("Halves");
    halves.setVolume(0);
    EXPECT_EQ(world.render(1.2).level(), 0);
    EXPECT_EQ(world.counters().voices, 0);
    halves.setVolume(1);
    const Heard late = world.render(0.3);
    EXPECT_GT(late.at(882), 10 * late.at(441));
    world.render(0.55);
    EXPECT_FALSE(SoundWorld::plays(halves));

    FMOD::Event &round = world.play("Round");
    round.setVolume(0);
    world.render(3.2);
    round.setVolume(1);
    const Heard second = world.render(0.3);
    EXPECT_GT(second.at(882), 10 * second.at(441)) << "a loop, too";
}

TEST_F(SoundVoices, TimePassesForARunThatNobodyHearsWithoutASampleRead)
{
    FMOD::Event &halves = world.play("Halves");
    world.play("Round");
    world.pass(1.2);
    EXPECT_TRUE(SoundWorld::plays(halves));
    EXPECT_EQ(world.counters().devices, 0);
    EXPECT_TRUE(world.counters().silent);
    EXPECT_EQ(world.heard().size(), 2u);
    world.pass(1);
    EXPECT_FALSE(SoundWorld::plays(halves));
    world.pass(1.1);
    const Heard woken = world.render(0.3);
    EXPECT_GT(woken.at(882), 10 * woken.at(441));
    world.pass(0.5);
    EXPECT_GT(world.render(0.3).at(441), 0.1F);
}

TEST_F(SoundVoices, ALayerDrawsAmongItsSamplesAndNeverTheSameTwiceRunning)
{
    world.play("Dice");
    const Heard all = world.render(6);
    const float tones[] = {600, 900, 1200};
    std::set<int> drawn;
    int last = -1, changes = 0;
    for (double at = 0.02; at < 5.9; at += 0.02)
    {
        const Heard piece = all.part(at, 0.02);
        for (int i = 0; i < 3; ++i)
            if (piece.at(tones[i]) > 0.4F)
            {
                drawn.insert(i);
                changes += i != last;
                last = i;
            }
    }
    EXPECT_EQ(drawn.size(), 3u);
    EXPECT_GE(changes, 50) << "each tenth of a second another one";
}

TEST_F(SoundVoices, WhateverIsAskedInWhateverOrderNothingClicks)
{
    constexpr float amplitude = 0.05F;
    constexpr int most = 24;
    world.tone("low.wav", 105, 1, 1, amplitude);
    world.tone("low.ogg", 105, 3, 2, amplitude);
    world.load("group sfx\n"
               "event Loop\n mode loop\n voices 5\n fade 0 0.1\n layer a\n sample low.wav\n"
               "event Once\n voices 5\n layer a\n sample low.wav\n delay 0 0.1\n"
               "event Bed\n mode loop\n voices 3\n layer a\n sample low.ogg\n stream\n");
    std::mt19937 chance(7);
    std::vector<FMOD::Event *> all;
    Heard heard;
    for (int i = 0; i < 900; ++i)
    {
        if (all.size() < most)
            all.push_back(&world.play(i % 5 == 0 ? "Bed" : i % 3 == 0 ? "Loop" : "Once"));
        FMOD::Event &one = *all[chance() % all.size()];
        switch (chance() % 6)
        {
        case 0:
            one.start();
            break;
        case 1:
            one.stop(chance() % 2 == 0);
            break;
        case 2:
            one.setPaused(chance() % 2 == 0);
            break;
        case 3:
            one.setVolume(static_cast<float>(chance() % 3) / 2);
            break;
        case 4:
            std::swap(*std::find(all.begin(), all.end(), &one), all.back());
            all.back()->release();
            all.pop_back();
            break;
        default:
            break;
        }
        heard += world.render(SoundWorld::FRAME);
        ASSERT_LE(world.counters().voices, 13);
    }
    // All voices in step, each gliding through its whole loudness in a frame, stay below half of one voice's jump.
    EXPECT_LT(heard.largestStep(), amplitude / 2);
    EXPECT_GT(heard.level(), amplitude);
}

TEST_F(SoundVoices, AFrameTakesNoMemory)
{
    const auto all = hums(500);
    world.render(1);
    std::vector<float> frame;
    std::vector<port::HeardEvent> heard;
    int count = 0;
    const auto step = [&]
    {
        ++count;
        const port::SoundPath path = {{static_cast<float>(count), 0, 0}, 0.8F, 2000, 1};
        for (std::size_t i = 0; i < all.size(); ++i)
        {
            SoundWorld::place(*all[i], static_cast<float>(i) * 0.1F, 0, static_cast<float>(count) * 0.1F);
            SoundWorld::set(*all[i], "distance", static_cast<float>((i * 7 + static_cast<std::size_t>(count)) % 90));
            port::setSoundPath(*all[i], path);
        }
        world.system->update();
        port::listHeard(*world.system, heard);
        port::renderAudio(*world.system, SoundWorld::FRAME, frame);
    };
    allocationsOf(step, 5);
    EXPECT_EQ(allocationsOf(step, 60), 0u);
}
